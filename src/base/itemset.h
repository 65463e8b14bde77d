#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace korv {

/// An item number. 32 bits on every platform; a larger number in a file wraps.
using Item = std::uint32_t;

/// A number of transactions, or of rules. 32 bits on every platform; sums, differences and products wrap.
using Count = std::uint32_t;

/// Items in ascending order. An item may occur more than once: all operations below are those of multisets,
/// so a repeated item counts in sizes, intersections, inclusions and differences.
using Itemset = std::vector<Item>;

/// An itemset in somebody else's storage.
using ItemSpan = std::span<const Item>;

/// Whether `inner` is contained in `outer` (equal itemsets are). O(|inner| + |outer|).
bool is_contained(ItemSpan inner, ItemSpan outer);

/// The items that `a` and `b` have in common, ascending. O(|a| + |b|).
Itemset intersection(const Itemset& a, const Itemset& b);

/// Whether `a` and `b` have an item in common. O(|a| + |b|).
bool intersects(const Itemset& a, const Itemset& b);

/// The items of `a` that are not in `b`, ascending: {1 2 2} without {2} is {1 2}. O(|a| + |b|).
Itemset difference(const Itemset& a, const Itemset& b);

/// The first items of an itemset as one number of `item_bits` for each item. Where the numbers of two
/// itemsets differ, they are in the lexicographic order of the itemsets, so most comparisons need no more;
/// where they do not, nothing is known. `item_bits`: from 2 to 32.
std::uint64_t beginning(ItemSpan itemset, unsigned item_bits);

}  // namespace korv
