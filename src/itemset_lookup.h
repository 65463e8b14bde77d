#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "itemset_table.h"

namespace korv {

/// Finds the position of an itemset in a table of distinct itemsets: a hash table with open addressing.
class ItemsetLookup {
public:
    /// The table must outlive the lookup unchanged.
    explicit ItemsetLookup(const ItemsetTable& itemsets);

    /// The position of `itemset`, if it is in the table. O(items), on average.
    std::optional<std::uint32_t> find(ItemSpan itemset) const;

private:
    static constexpr std::uint32_t free = 0xFFFFFFFF;

    static std::uint64_t hash(ItemSpan itemset);

    const ItemsetTable& itemsets_;
    std::vector<std::uint32_t> slots_;  ///< positions; a power of 2, at most half of them taken
};

}  // namespace korv
