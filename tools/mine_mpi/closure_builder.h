#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/itemset.h"
#include "mine/ranked_items.h"

namespace korv::tools {

/// How much a closure takes: see EncodedClosure.
struct ClosureSizes {
    std::uint32_t bytes;  ///< encoded
    std::uint32_t items;
    std::uint32_t text_bytes;
    std::uint32_t rare_bytes;
};

/// Makes closures of ranks.
class ClosureBuilder {
public:
    /// `items` must outlive it. Items in less than `least_frequent` transactions count as rare.
    ClosureBuilder(const RankedItems& items, Count least_frequent);

    /// Adds a rank, which is not there yet. Fastest where ranks come in the order of their first items.
    void add(Rank rank) {
        const OfRank& of = of_ranks_[rank];
        first_items_[ranks_++] = of.first_item;
        text_bytes_ += of.text_bytes;
        rare_bytes_ += of.rare_bytes;
        hash_ ^= of.hash;
        if (of.has_other_items) {
            add_other_items(rank);
        }
    }

    /// A number that is the same for the same ranks, whatever their order, and as good as random: a Zobrist
    /// hash.
    std::uint32_t hash() const { return hash_; }

    /// Appends the closure of the ranks that were added, as append_encoded writes it, and begins the next
    /// one.
    ClosureSizes finish(std::string& bytes);

private:
    /// What a rank adds to a closure.
    struct OfRank {
        Item first_item;
        std::uint32_t text_bytes;
        std::uint32_t rare_bytes;
        std::uint32_t hash;
        bool has_other_items;
    };

    void add_other_items(Rank rank);

    const std::vector<Itemset>& items_;  ///< by rank
    std::vector<OfRank> of_ranks_;       ///< by rank
    Itemset first_items_;                ///< of the ranks that were added; with room for all
    std::size_t ranks_ = 0;              ///< so many were added
    Itemset other_items_;
    Itemset closure_;  ///< set and used in one call
    std::uint32_t text_bytes_ = 0;
    std::uint32_t rare_bytes_ = 0;
    std::uint32_t hash_ = 0;
};

}  // namespace korv::tools
