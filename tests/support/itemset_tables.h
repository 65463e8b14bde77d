#pragma once

#include <random>
#include <vector>

#include "base/itemset_table.h"

namespace korv::test {

inline ItemsetTable table_of(const std::vector<Itemset>& itemsets) {
    ItemsetTable table;
    for (const Itemset& itemset : itemsets) {
        table.push_back(itemset);
    }
    return table;
}

/// `count` random sets, not empty, of numbers below `items`; larger numbers are more frequent, as an index
/// wants.
std::vector<Itemset> random_itemsets(std::size_t count, Item items, std::mt19937& random);

/// A number for each item below `items`: the rarer it is in `itemsets`, the smaller; from 0, without gaps.
std::vector<Item> numbers_rarest_first(const std::vector<Itemset>& itemsets, Item items);

/// The set of the items' numbers, ascending.
Itemset renumbered(Itemset itemset, const std::vector<Item>& numbers);

/// The items renumbered so that the rarer ones have smaller numbers. A set stays a set.
std::vector<Itemset> rarest_first(const std::vector<Itemset>& itemsets, Item items);

}  // namespace korv::test
