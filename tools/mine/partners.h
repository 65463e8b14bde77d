#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "mine/ranked_items.h"

namespace korv::tools {

/// For each frequent item its partners: the items of which it is in a good share of the transactions.
///
/// When an itemset of k items covers an item, then one of the k is in at least a k-th of its transactions.
/// So, for itemsets of at most `least_share` items, whatever is covered is a partner of one of them.
class Partners {
public:
    /// An item is in at least one of so many transactions of its partner.
    static constexpr std::size_t least_share = 8;

    struct Partner {
        Rank rank;
        Count together;  ///< transactions that hold both
    };

    /// Without partners. `items` must outlive them.
    explicit Partners(const RankedItems& items);

    /// The same with at most so many of them.
    Partners(const RankedItems& items, std::size_t most);

    /// Tells in how many transactions two items are together, of which `frequent` is a frequent one. Each
    /// pair is told once.
    void add(Rank frequent, Rank other, Count together);

    /// Whether all partners are kept. They are not, for the sake of memory, where there are more of them than
    /// the items have lines together, or than was said.
    bool is_complete() const { return is_complete_; }

    /// The partners of a frequent item, in the order in which they were told.
    const std::vector<Partner>& of(Rank frequent) const { return partners_[frequent]; }

private:
    void add_if_often(Rank item, Rank partner, Count together);

    const RankedItems& items_;
    std::vector<std::vector<Partner>> partners_;  ///< by rank
    std::size_t size_ = 0;                        ///< of all lists
    std::size_t most_ = 0;                        ///< the largest size of all lists together
    bool is_complete_ = true;
};

/// Finds what an itemset may cover, from what is known of its partners alone.
class PartnerSearch {
public:
    /// `items` must outlive the search.
    explicit PartnerSearch(const RankedItems& items) : items_(items), met_(items.size()) {}

    /// Calls `visit` with each item that the itemset may cover, once, in no certain order; of the items of
    /// the itemset with some. The itemset has at most Partners::least_share items, and all partners are kept.
    template <typename Visit>
    void for_each_open(const Partners& partners, std::span<const Rank> itemset, Visit visit) {
        meet(partners, itemset);
        for (const Rank other : met_ranks_) {
            const Met met = std::exchange(met_[other], {});
            const Count support = items_.supports[other];
            // Each item of which it is no partner is in less than an eighth of its transactions.
            const std::uint64_t most =
                met.together * Partners::least_share + std::uint64_t{support} * (itemset.size() - met.items);
            if (most >= std::uint64_t{support} * Partners::least_share) {
                visit(other);
            }
        }
        met_ranks_.clear();
    }

private:
    /// What partners of an itemset say of an item.
    struct Met {
        std::uint64_t together = 0;  ///< the sum of the transactions of the item with each of them
        std::size_t items = 0;       ///< how many of the itemset it is a partner of
    };

    void meet(const Partners& partners, std::span<const Rank> itemset) {
        for (const Rank rank : itemset) {
            for (const Partners::Partner& partner : partners.of(rank)) {
                Met& met = met_[partner.rank];
                if (met.items == 0) {
                    met_ranks_.push_back(partner.rank);
                }
                met.together += partner.together;
                ++met.items;
            }
        }
    }

    const RankedItems& items_;
    std::vector<Met> met_;         ///< by rank: set and used in one call, otherwise 0
    std::vector<Rank> met_ranks_;  ///< those whose `met_` is not 0
};

}  // namespace korv::tools
