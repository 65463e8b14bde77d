#include "base/itemset.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace korv {
namespace {

TEST(Itemset, ContainsItself) {
    EXPECT_TRUE(is_contained(Itemset{1, 2}, Itemset{1, 2}));
}

TEST(Itemset, ContainsTheEmptyItemset) {
    EXPECT_TRUE(is_contained(Itemset{}, Itemset{1}));
    EXPECT_TRUE(is_contained(Itemset{}, Itemset{}));
    EXPECT_FALSE(is_contained(Itemset{1}, Itemset{}));
}

TEST(Itemset, ContainmentCountsRepeatedItems) {
    EXPECT_TRUE(is_contained(Itemset{2, 2}, Itemset{1, 2, 2}));
    EXPECT_FALSE(is_contained(Itemset{2, 2}, Itemset{1, 2, 3}));
}

TEST(Itemset, IntersectionKeepsCommonItemsAscending) {
    EXPECT_EQ(intersection({1, 3, 5, 7}, {2, 3, 7, 9}), (Itemset{3, 7}));
    EXPECT_EQ(intersection({1, 3}, {2, 4}), Itemset{});
}

TEST(Itemset, IntersectionKeepsARepeatedItemAsOftenAsBothHoldIt) {
    EXPECT_EQ(intersection({2, 2, 2}, {1, 2, 2}), (Itemset{2, 2}));
}

TEST(Itemset, IntersectsWhenOneItemIsCommon) {
    EXPECT_TRUE(intersects({1, 3, 9}, {2, 9}));
    EXPECT_FALSE(intersects({1, 3}, {2, 4}));
    EXPECT_FALSE(intersects({}, {1}));
}

TEST(Itemset, DifferenceDropsEachItemAsOftenAsTheOtherHoldsIt) {
    EXPECT_EQ(difference({1, 2, 2}, {2}), (Itemset{1, 2}));
    EXPECT_EQ(difference({1, 2, 3}, {2, 4}), (Itemset{1, 3}));
    EXPECT_EQ(difference({1, 2}, {1, 2}), Itemset{});
}

TEST(Itemset, BeginningHoldsTheFirstItemsInFields) {
    // Item and 1 in each of four fields of 16 bits, the first item highest.
    EXPECT_EQ(beginning(Itemset{}, 16), 0U);
    EXPECT_EQ(beginning(Itemset{0}, 16), 0x0001'0000'0000'0000U);
    EXPECT_EQ(beginning(Itemset{1, 2, 3, 4, 5}, 16), 0x0002'0003'0004'0005U);
}

TEST(Itemset, BeginningEndsWithTheFirstItemThatDoesNotFit) {
    EXPECT_EQ(beginning(Itemset{1, 65534, 2}, 16), 0x0002'FFFF'0000'0000U);
    EXPECT_EQ(beginning(Itemset{1, 4294967295U, 9}, 16), 0x0002'FFFF'0000'0000U);
}

TEST(Itemset, BeginningsAreInTheOrderOfTheItemsetsWhereTheyDiffer) {
    const std::vector<Itemset> ascending = {{},  {0},    {0, 0}, {0, 1},        {0, 1, 9},  {1},
                                            {2}, {2, 2}, {2, 3}, {2, 70000, 1}, {70000, 5}, {80000}};
    for (const unsigned item_bits : {2U, 5U, 16U, 32U}) {
        std::vector<std::uint64_t> beginnings;
        for (const Itemset& itemset : ascending) {
            beginnings.push_back(beginning(itemset, item_bits));
        }
        EXPECT_TRUE(std::ranges::is_sorted(beginnings)) << item_bits << " bits";
    }
}

TEST(Itemset, ItemsAreUnsigned32BitNumbers) {
    EXPECT_EQ(intersection({1, 4294967295U}, {4294967295U}), Itemset{4294967295U});
    EXPECT_EQ(sizeof(Item), 4U);
    EXPECT_EQ(sizeof(Count), 4U);
}

}  // namespace
}  // namespace korv
