#include "rules/recount.h"

#include <gtest/gtest.h>

#include <random>

#include "rules/contingency_printing.h"
#include "tools/random_database.h"

namespace korv::tools {

namespace {

/// Items 10 to 12.
const Transactions five = {0b001, 0b011, 0b110, 0b100, 0b000};

TEST(Recount, CountsBothSidesAndWhatMeetsBoth) {
    const Database database = database_of(five);
    Recount recount(database);
    const Itemset one = {10, 11};
    const Itemset other = {12};

    EXPECT_EQ(recount.count({one, false}, {other, false}), (Contingency{3, 2, 1}));
    EXPECT_EQ(recount.count({one, true}, {other, false}), (Contingency{2, 2, 1}));
    EXPECT_EQ(recount.count({one, false}, {other, true}), (Contingency{3, 3, 2}));
    EXPECT_EQ(recount.count({one, true}, {other, true}), (Contingency{2, 3, 1}));
}

TEST(Recount, LinesCountAsOftenAsTheirWeightSays) {
    const Database database = database_of(five, {10, 1, 100, 1000, 10000});
    Recount recount(database);
    const Itemset one = {10, 11};
    const Itemset other = {12};

    EXPECT_EQ(recount.count({one, false}, {other, false}), (Contingency{111, 1100, 100}));
    EXPECT_EQ(recount.count({one, true}, {other, true}), (Contingency{11000, 10011, 10000}));
}

TEST(Recount, ItemsThatTheDatabaseLacksAreInNoLine) {
    const Database database = database_of(five);
    Recount recount(database);
    const Itemset one = {9, 10, 99};
    const Itemset none = {11 + 20};

    EXPECT_EQ(recount.count({one, false}, {none, true}), (Contingency{2, 5, 2}));
}

TEST(Recount, CountsAsSetsOfItemsTellInRandomDatabases) {
    std::mt19937 random(50);
    for (int i = 0; i < 2000; ++i) {
        const Transactions transactions =
            random_transactions(8, 60, static_cast<std::uint32_t>(2 + random() % 4), random);
        std::vector<Count> weights;
        for (std::size_t line = 0; i % 2 == 0 && line < transactions.size(); ++line) {
            weights.push_back(1 + static_cast<Count>(random() % 5));
        }
        const Database database = database_of(transactions, weights);
        Recount recount(database);
        for (int rule = 0; rule < 20; ++rule) {
            const Set premise = static_cast<Set>(random() % 256);
            const Set conclusion = static_cast<Set>(random() % 256) & ~premise;
            Itemset premise_items;
            Itemset conclusion_items;
            for (Item item = 0; item < 8; ++item) {
                if ((premise >> item & 1U) != 0) {
                    premise_items.push_back(10 + item);
                }
                if ((conclusion >> item & 1U) != 0) {
                    conclusion_items.push_back(10 + item);
                }
            }
            const bool is_premise_negated = random() % 2 == 0;
            const bool is_conclusion_negated = random() % 2 == 0;
            Contingency expected = {0, 0, 0};
            for (std::size_t line = 0; line < transactions.size(); ++line) {
                const Count weight = weights.empty() ? 1 : weights[line];
                const bool x = ((transactions[line] & premise) == 0) == is_premise_negated;
                const bool y = ((transactions[line] & conclusion) == 0) == is_conclusion_negated;
                expected.premise += x ? weight : 0;
                expected.conclusion += y ? weight : 0;
                expected.both += x && y ? weight : 0;
            }

            ASSERT_EQ(
                recount.count({premise_items, is_premise_negated}, {conclusion_items, is_conclusion_negated}),
                expected)
                << "round " << i;
        }
    }
}

TEST(Recount, ManyItemsInFewLinesEachAreCountedToo) {
    // The line k holds the items 2 k and 2 k + 1.
    Database database;
    database.lines = 500;
    database.transactions = 500;
    for (Item item = 0; item < 1000; ++item) {
        database.items.push_back({item, {item / 2}});
    }
    Recount recount(database);
    const Itemset one = {0, 3, 998};  // in the lines 0, 1 and 499
    const Itemset other = {1, 2, 7};  // in the lines 0, 1 and 3

    EXPECT_EQ(recount.count({one, false}, {other, false}), (Contingency{3, 3, 2}));
    EXPECT_EQ(recount.count({one, false}, {other, true}), (Contingency{3, 497, 1}));
    EXPECT_EQ(recount.count({one, true}, {other, true}), (Contingency{497, 497, 496}));
}

}  // namespace
}  // namespace korv::tools
