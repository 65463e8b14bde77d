#include "mine/partners.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace korv::tools {
namespace {

/// Items in so many transactions each, of which the first `frequent` are frequent. Together, they have 100
/// lines.
RankedItems items_of(const std::vector<Count>& supports, Rank frequent) {
    static const std::vector<Transaction> lines(100);
    RankedItems items;
    items.items.resize(supports.size());
    items.supports = supports;
    items.frequent = frequent;
    items.transactions = {lines};
    return items;
}

TEST(Partners, AreThoseOfWhichAnItemIsInAnEighthOfTheTransactions) {
    const RankedItems items = items_of({16, 80, 8}, 2);
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
    const RankedItems items = items_of({1'600'000'000, 1'600'000'000}, 2);
    Partners partners(items);
    partners.add(1, 0, 199'999'999);
    EXPECT_TRUE(partners.of(0).empty());
    partners.add(0, 1, 1'000'000'000);
    EXPECT_EQ(partners.of(0).size(), 1U);
}

TEST(Partners, AreGivenUpWhereThereAreMoreThanLines) {
    const RankedItems items = items_of(std::vector<Count>(20, 1), 20);
    Partners partners(items);
    std::size_t told = 0;
    for (Rank rank = 0; rank < 20; ++rank) {
        for (Rank below = 0; below < rank; ++below) {
            partners.add(rank, below, 1);
            told += 2;
            ASSERT_EQ(partners.is_complete(), told <= 100);
        }
    }
}

std::vector<Rank> open_of(PartnerSearch& search, const Partners& partners, const std::vector<Rank>& itemset) {
    std::vector<Rank> open;
    search.for_each_open(partners, itemset, [&](Rank rank) { open.push_back(rank); });
    std::ranges::sort(open);
    return open;
}

TEST(PartnerSearch, FindsItemsWhoseTransactionsMayAllHoldAPartner) {
    const RankedItems items = items_of({8, 8, 8}, 3);
    Partners partners(items);
    partners.add(2, 0, 4);
    partners.add(1, 0, 3);
    PartnerSearch search(items);
    EXPECT_EQ(open_of(search, partners, {2, 1}), std::vector<Rank>{});  // 7 of 8
    Partners more(items);
    more.add(2, 0, 4);
    more.add(1, 0, 4);
    EXPECT_EQ(open_of(search, more, {2, 1}), std::vector<Rank>{0});
    EXPECT_EQ(open_of(search, partners, {2, 1}), std::vector<Rank>{});
}

TEST(PartnerSearch, LeavesUpToAnEighthToEachItemThatIsNoPartner) {
    const RankedItems items = items_of({16, 16, 40, 40}, 4);
    Partners partners(items);
    partners.add(3, 0, 13);
    partners.add(3, 1, 14);
    partners.add(2, 1, 1);  // less than an eighth of 16
    PartnerSearch search(items);
    EXPECT_EQ(open_of(search, partners, {3, 2}), std::vector<Rank>{1});  // 14 + 2 of 16, and 13 + 2
    EXPECT_EQ(open_of(search, partners, {3}), std::vector<Rank>{});
}

}  // namespace
}  // namespace korv::tools
