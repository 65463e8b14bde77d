#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "itemset_table.h"

namespace korv {

/// Bounds on the support of an itemset, in transactions.
struct SupportBounds {
    Count lower = 0;
    Count upper = 0;
};

/// Remembers the bounds of itemsets: a hash table with open addressing.
///
/// Invariant: the memory is bounded. A cache that holds as many items as it may forgets everything and begins
/// again.
class BoundsCache {
public:
    /// `most_items`: how many items all itemsets together may have before they are forgotten.
    explicit BoundsCache(std::size_t most_items = default_most_items);

    /// The bounds of `itemset`, and true when it was not there: the bounds are then for the caller to set.
    /// Valid until the next call. O(items), on average.
    std::pair<SupportBounds&, bool> try_emplace(ItemSpan itemset);

private:
    /// 64 MiB of items.
    static constexpr std::size_t default_most_items = std::size_t{1} << 24;
    static constexpr std::size_t first_slots = 1024;
    static constexpr std::uint32_t free = 0xFFFFFFFF;

    struct Slot {
        std::uint32_t position = free;  ///< of the itemset
        std::uint32_t hash = 0;
    };

    Slot& slot_of(ItemSpan itemset, std::uint32_t hash);
    void make_room();

    std::size_t most_items_;
    ItemsetTable itemsets_;
    std::vector<SupportBounds> bounds_;  ///< of each itemset
    std::vector<Slot> slots_;            ///< a power of 2, at most half of them taken
};

}  // namespace korv
