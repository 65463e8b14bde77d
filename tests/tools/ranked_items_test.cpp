#include "mine/ranked_items.h"

#include <gtest/gtest.h>

#include "tools/random_database.h"

namespace korv::tools {
namespace {

// 10 in three transactions, 11 in two, 12 and 13 in the same one, 14 in four.
const Transactions transactions = {0b11101, 0b10011, 0b10011, 0b10000};

TEST(RankedItems, PutRareOnesBeforeFrequentOnes) {
    const Database database = database_of(transactions);
    const RankedItems ranked = ranked_items(database, 1, 1);
    EXPECT_EQ(ranked.items, (std::vector<Itemset>{{12, 13}, {11}, {10}, {14}}));
    EXPECT_EQ(ranked.supports, (std::vector<Count>{1, 2, 3, 4}));
    EXPECT_EQ(ranked.frequent, 4U);
    EXPECT_EQ(ranked.lines, 4U);
    EXPECT_EQ(std::vector(ranked.transactions[1].begin(), ranked.transactions[1].end()),
              (std::vector<Transaction>{1, 2}));
}

TEST(RankedItems, PutThoseThatAreNotFrequentLast) {
    const Database database = database_of(transactions);
    const RankedItems all = ranked_items(database, 3, 0);
    EXPECT_EQ(all.items, (std::vector<Itemset>{{10}, {14}, {11}, {12, 13}}));
    EXPECT_EQ(all.frequent, 2U);
    const RankedItems some = ranked_items(database, 3, 2);
    EXPECT_EQ(some.items, (std::vector<Itemset>{{10}, {14}, {11}}));
}

TEST(RankedItems, CountTransactionsNotLines) {
    const Database database = database_of(transactions, {1, 1, 1, 7});
    const RankedItems ranked = ranked_items(database, 3, 3);
    EXPECT_EQ(ranked.items, (std::vector<Itemset>{{10}, {14}}));
    EXPECT_EQ(ranked.supports, (std::vector<Count>{3, 10}));
    EXPECT_EQ(ranked.weight(3), 7U);
}

TEST(RankedItems, KeepTheOrderOfEquallyFrequentOnes) {
    const Database database = database_of({0b001, 0b010, 0b100});
    EXPECT_EQ(ranked_items(database, 1, 1).items, (std::vector<Itemset>{{10}, {11}, {12}}));
}

}  // namespace
}  // namespace korv::tools
