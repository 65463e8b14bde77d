#include "itemset_lookup.h"

#include <gtest/gtest.h>

#include "itemset_tables.h"

namespace korv {
namespace {

TEST(ItemsetLookup, FindsEachItemsetOfATable) {
    const ItemsetTable table = test::table_of({{1}, {1, 2}, {}, {2, 1000000}});
    const ItemsetLookup lookup(table);
    for (std::uint32_t position = 0; position < table.size(); ++position) {
        EXPECT_EQ(lookup.find(table[position]), position);
    }
}

TEST(ItemsetLookup, DoesNotFindOthers) {
    const ItemsetTable table = test::table_of({{1}, {1, 2}});
    const ItemsetLookup lookup(table);
    EXPECT_EQ(lookup.find(Itemset{2}), std::nullopt);
    EXPECT_EQ(lookup.find(Itemset{}), std::nullopt);
    EXPECT_EQ(lookup.find(Itemset{1, 2, 3}), std::nullopt);
}

TEST(ItemsetLookup, OfAnEmptyTableFindsNothing) {
    const ItemsetTable table;
    EXPECT_EQ(ItemsetLookup(table).find(Itemset{1}), std::nullopt);
}

}  // namespace
}  // namespace korv
