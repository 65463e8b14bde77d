#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
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

}  // namespace korv::tools
