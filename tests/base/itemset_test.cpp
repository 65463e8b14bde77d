#include "base/itemset.h"

#include <gtest/gtest.h>

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

TEST(Itemset, ItemsAreUnsigned32BitNumbers) {
    EXPECT_EQ(intersection({1, 4294967295U}, {4294967295U}), Itemset{4294967295U});
    EXPECT_EQ(sizeof(Item), 4U);
    EXPECT_EQ(sizeof(Count), 4U);
}

}  // namespace
}  // namespace korv
