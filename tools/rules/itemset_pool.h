#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/itemset.h"
#include "base/itemset_table.h"

namespace korv::tools {

/// The number of an itemset in an ItemsetPool.
using ItemsetId = std::uint32_t;

/// Distinct itemsets, numbered from 0 in the order in which they came: a hash table with open addressing.
class ItemsetPool {
public:
    /// The number of `itemset` (ascending, each item once), which gets the next number when it is new.
    /// O(items), on average. Throws Error beyond 2^31 itemsets.
    ItemsetId intern(ItemSpan itemset);

    /// The number of `itemset` (ascending, each item once); nothing when it is not there. Costs as much.
    std::optional<ItemsetId> find(ItemSpan itemset) const;

    /// Valid until the next itemset is new.
    ItemSpan operator[](ItemsetId id) const { return itemsets_[id]; }

    std::size_t size() const { return itemsets_.size(); }

private:
    static constexpr ItemsetId no_itemset = 0xFFFFFFFF;
    static constexpr std::size_t first_slots = 1024;

    struct Slot {
        ItemsetId id = no_itemset;
        std::uint32_t hash = 0;
    };

    std::size_t slot_of(ItemSpan itemset, std::uint32_t hash) const;
    void grow();

    ItemsetTable itemsets_;
    std::vector<Slot> slots_;  ///< a power of 2, at most half of them taken
};

}  // namespace korv::tools
