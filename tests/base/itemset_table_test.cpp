#include "base/itemset_table.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace korv {
namespace {

Itemset at(const ItemsetTable& table, std::size_t position) {
    return {table[position].begin(), table[position].end()};
}

TEST(ItemsetTable, KeepsItemsetsInTheirOrder) {
    ItemsetTable table;
    table.push_back(Itemset{1, 2});
    table.push_back(Itemset{});
    table.push_back(Itemset{7});
    EXPECT_EQ(table.size(), 3U);
    EXPECT_EQ(table.items(), 3U);
    EXPECT_EQ(at(table, 0), (Itemset{1, 2}));
    EXPECT_EQ(at(table, 1), Itemset{});
    EXPECT_EQ(at(table, 2), Itemset{7});
}

TEST(ItemsetTable, ItemsOfOneItemsetCanBeChanged) {
    ItemsetTable table;
    table.push_back(Itemset{1, 2});
    table.push_back(Itemset{3, 4});
    std::ranges::fill(table.mutable_items(1), 9);
    EXPECT_EQ(at(table, 0), (Itemset{1, 2}));
    EXPECT_EQ(at(table, 1), (Itemset{9, 9}));
}

TEST(ItemsetTable, BeginsAgainWhenCleared) {
    ItemsetTable table;
    table.push_back(Itemset{1, 2});
    table.clear();
    EXPECT_EQ(table.size(), 0U);
    EXPECT_EQ(table.items(), 0U);
    table.push_back(Itemset{5});
    EXPECT_EQ(at(table, 0), Itemset{5});
}

}  // namespace
}  // namespace korv
