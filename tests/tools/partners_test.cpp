#include "mine/partners.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

/// So many items of which the first `frequent` are frequent, each in `support` transactions.
RankedItems items_of(std::size_t size, Rank frequent, Count support) {
    RankedItems items;
    items.items.resize(size);
    items.supports.assign(size, support);
    items.frequent = frequent;
    return items;
}

TEST(Partners, AreThoseOfWhichAnItemIsInAnEighthOfTheTransactions) {
    RankedItems items = items_of(3, 2, 16);
    items.supports = {16, 80, 8};
    Partners partners(items);
    partners.add(1, 0, 2);  // an eighth of the transactions of 0, less than one of those of 1
    partners.add(0, 2, 1);  // an eighth of those of 2, which is not frequent and so has no partners
    partners.add(1, 2, 0);
    ASSERT_EQ(partners.of(1).size(), 1U);
    EXPECT_EQ(partners.of(1)[0].rank, 0U);
    EXPECT_EQ(partners.of(1)[0].together, 2U);
    ASSERT_EQ(partners.of(0).size(), 1U);
    EXPECT_EQ(partners.of(0)[0].rank, 2U);
}

TEST(Partners, AreNotComputedInThirtyTwoBits) {
    RankedItems items = items_of(2, 2, 1'600'000'000);
    Partners partners(items);
    partners.add(1, 0, 199'999'999);
    EXPECT_TRUE(partners.of(0).empty());
    partners.add(0, 1, 1'000'000'000);
    EXPECT_EQ(partners.of(0).size(), 1U);
}

TEST(Partners, AreGivenUpWhereTheyAreTooMany) {
    const RankedItems items = items_of(600, 600, 1);
    Partners partners(items);
    for (Rank rank = 0; rank < 600; ++rank) {
        for (Rank below = 0; below < rank; ++below) {
            partners.add(rank, below, 1);
        }
    }
    EXPECT_FALSE(partners.is_complete());  // 599 for each item; 256 are kept
}

}  // namespace
}  // namespace korv::tools
