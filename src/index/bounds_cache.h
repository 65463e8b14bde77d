#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "base/itemset_table.h"
#include "base/support_bounds.h"

namespace korv {

/// Remembers the bounds of itemsets: a hash table with open addressing.
///
/// Invariant: the memory is bounded. A cache that takes as much as it may forgets everything and begins
/// again.
class BoundsCache {
public:
    /// `most_bytes`: how much the itemsets and what is known of them may take, about, before they are
    /// forgotten.
    explicit BoundsCache(std::size_t most_bytes = default_most_bytes);

    /// The bounds of `itemset`, and true when it was not there: the bounds are then for the caller to set.
    /// Valid until the next call. O(items), on average.
    std::pair<SupportBounds&, bool> try_emplace(ItemSpan itemset);

private:
    static constexpr std::size_t default_most_bytes = std::size_t{64} << 20;
    /// Of an itemset without items: its slots, its bounds and its place in the table.
    static constexpr std::size_t bytes_of_an_itemset = 40;
    static constexpr std::size_t first_slots = 1024;
    static constexpr std::uint32_t no_position = 0xFFFFFFFF;

    struct Slot {
        std::uint32_t position = no_position;  ///< of the itemset
        std::uint32_t hash = 0;
    };

    Slot& slot_of(ItemSpan itemset, std::uint32_t hash);
    void make_room();
    std::size_t bytes() const {
        return itemsets_.items() * sizeof(Item) + itemsets_.size() * bytes_of_an_itemset;
    }

    std::size_t most_bytes_;
    ItemsetTable itemsets_;
    std::vector<SupportBounds> bounds_;  ///< of each itemset
    std::vector<Slot> slots_;            ///< a power of 2, at most half of them taken
};

}  // namespace korv
