#include "rules/exclusion_search.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>

#include "common/error.h"
#include "tools/complaint.h"
#include "tools/random_database.h"

namespace korv::tools {
namespace {

using Items = std::vector<Itemset>;

class FindExclusions : public ::testing::Test {
protected:
    FindExclusions() { request.min_support = {1, false}; }

    ExclusionResult found(const Database& database) const {
        const ItemNames item_names(names);
        Itemset items;
        for (const Database::ItemColumn& column : database.items) {
            items.push_back(column.item);
        }
        const ItemChoice choice(request.patterns, items, item_names);
        return find_exclusions(
            database, item_names, ColumnFacts(item_names, database), choice, request, exclusions,
            [](ExclusionPhase, const ExclusionAccounting&, std::uint64_t, std::uint64_t) {});
    }

    Items items(const Database& database) const {
        Items all;
        for (const Exclusion& each : found(database).exclusions) {
            all.emplace_back(each.items().begin(), each.items().end());
        }
        return all;
    }

    RuleRequest request;
    ExclusionRequest exclusions;
    std::map<Item, std::string> names;
};

/// Items 10 and 11, each in three transactions, never together: 1 of the 20 ways to choose three of six.
const Transactions three_and_three = {0b01, 0b01, 0b01, 0b10, 0b10, 0b10};

TEST_F(FindExclusions, CountsWhatIsTogetherAndWhatIsExpected) {
    const ExclusionResult result = found(database_of(three_and_three));
    ASSERT_EQ(result.exclusions.size(), 1U);
    const Exclusion& pair = result.exclusions.front();
    EXPECT_EQ(Itemset(pair.items().begin(), pair.items().end()), (Itemset{10, 11}));
    EXPECT_EQ(pair.counts[0], 3U);
    EXPECT_EQ(pair.counts[1], 3U);
    EXPECT_EQ(pair.together, 0U);
    EXPECT_EQ(pair.covered, 6U);
    EXPECT_EQ(pair.expected(6), 1.5);
    EXPECT_DOUBLE_EQ(pair.p, std::log10(20));
}

TEST_F(FindExclusions, KeepsWhatIsAsLikelyAsAlpha) {
    exclusions.alpha = 0.05;
    EXPECT_EQ(items(database_of(three_and_three)), (Items{{10, 11}}));
    exclusions.alpha = 0.0499;
    EXPECT_EQ(found(database_of(three_and_three)).accounting[ExclusionStep::uncertain], 1U);
    EXPECT_EQ(items(database_of(three_and_three)), Items{});
}

TEST_F(FindExclusions, DividesAlphaByTheNumberOfPairs) {
    // With a third item there are three pairs, so that 1/20 is too much for 0.1 and enough for 0.15.
    const Database database = database_of({0b101, 0b01, 0b01, 0b110, 0b10, 0b10});
    exclusions.alpha = 0.1;
    EXPECT_EQ(items(database), Items{});
    exclusions.alpha = 0.15;
    EXPECT_EQ(items(database), (Items{{10, 11}}));
}

TEST_F(FindExclusions, KeepsAllBelowChanceForAnAlphaOf1) {
    // Together in 1, with 4 * 4 / 10 expected; 4 * 5 / 10 are chance.
    exclusions.alpha = 1;
    EXPECT_EQ(items(database_of({0b11, 0b01, 0b01, 0b01, 0b10, 0b10, 0b10, 0, 0, 0})), (Items{{10, 11}}));
    const ExclusionResult chance = found(database_of({0b11, 0b11, 0b01, 0b01, 0b10, 0b10, 0b10, 0, 0, 0}));
    EXPECT_TRUE(chance.exclusions.empty());
    EXPECT_EQ(chance.accounting[ExclusionStep::chance], 1U);
}

TEST_F(FindExclusions, TakesItemsThatReachTheMinimumSupport) {
    exclusions.alpha = 1;
    request.min_support = {3, false};
    EXPECT_EQ(items(database_of({0b001, 0b001, 0b001, 0b010, 0b010, 0b010, 0b100, 0b100})),
              (Items{{10, 11}}));
    request.min_support = {4, false};
    const ExclusionResult none = found(database_of(three_and_three));
    EXPECT_EQ(none.accounting.items, 0U);
    EXPECT_EQ(none.accounting.pairs, 0U);
}

TEST_F(FindExclusions, RefusesAMinimumSupportAboveTheNumberOfTransactions) {
    request.min_support = {7, false};
    EXPECT_EQ(complaint_of([&] { found(database_of(three_and_three)); }),
              "--min-support: found 7 transactions; expected at least 1 and at most 6, the number of "
              "transactions in the input");
}

TEST_F(FindExclusions, LinesCountAsOftenAsTheirWeightSays) {
    request.min_support = {2, false};
    const ExclusionResult result = found(database_of({0b01, 0b10, 0b11, 0}, {40, 30, 2, 8}));
    ASSERT_EQ(result.exclusions.size(), 1U);
    const Exclusion& pair = result.exclusions.front();
    EXPECT_EQ(pair.counts[0], 42U);
    EXPECT_EQ(pair.counts[1], 32U);
    EXPECT_EQ(pair.together, 2U);
    EXPECT_EQ(pair.covered, 72U);
    EXPECT_EQ(pair.expected(80), 16.8);
}

TEST_F(FindExclusions, LeavesOutValuesOfOneColumn) {
    names = {{10, "sex=male"}, {11, "sex=female"}};
    const ExclusionResult result = found(database_of(three_and_three));
    EXPECT_TRUE(result.exclusions.empty());
    EXPECT_EQ(result.accounting[ExclusionStep::columns], 1U);
}

TEST_F(FindExclusions, DoesNotDivideAlphaByValuesOfOneColumn) {
    // Two of the three pairs are looked at, one of them is 1 of 20.
    names = {{10, "sex=male"}, {12, "sex=female"}, {11, "tall"}};
    exclusions.alpha = 0.1;
    EXPECT_EQ(items(database_of({0b001, 0b001, 0b001, 0b110, 0b010, 0b010})), (Items{{10, 11}}));
}

TEST_F(FindExclusions, LooksAtValuesOfAColumnOfWhichALineHasTwo) {
    names = {{10, "tag=a"}, {11, "tag=b"}, {12, "tag=c"}};
    exclusions.alpha = 1;
    const ExclusionResult result = found(database_of({0b101, 0b01, 0b01, 0b10, 0b10, 0b10}));
    EXPECT_EQ(result.accounting[ExclusionStep::columns], 0U);
    EXPECT_EQ(result.exclusions.size(), 2U);
}

/// Each two of three items meet in 8 of 30 transactions, all three never: 16 * 8 / 30 are expected.
Database triangle() {
    Transactions transactions;
    for (int i = 0; i < 8; ++i) {
        transactions.insert(transactions.end(), {0b011, 0b101, 0b110});
    }
    transactions.insert(transactions.end(), 6, 0);
    return database_of(transactions);
}

TEST_F(FindExclusions, FindsThreeItemsOfWhichEachTwoMeet) {
    const ExclusionResult result = found(triangle());
    ASSERT_EQ(result.exclusions.size(), 1U);
    const Exclusion& triple = result.exclusions.front();
    EXPECT_EQ(Itemset(triple.items().begin(), triple.items().end()), (Itemset{10, 11, 12}));
    EXPECT_EQ(triple.together, 0U);
    EXPECT_EQ(triple.covered, 24U);
    EXPECT_EQ(triple.expected_times_all, 16U * 8U);
    // 14 of 30 transactions lack the third item, and all 8 with the first two are among these:
    // 3,003 of 5,852,925 ways to choose 8.
    EXPECT_NEAR(triple.p, std::log10(5'852'925.0 / 3'003), 1e-12);
    EXPECT_EQ(result.accounting.triples, 1U);
}

TEST_F(FindExclusions, LooksAtNoTripleWhereTwoItemsMeetTooSeldom) {
    request.min_support = {9, false};
    EXPECT_EQ(found(triangle()).accounting.triples, 0U);
}

TEST_F(FindExclusions, LooksAtNoTripleWhenPairsAreAskedFor) {
    exclusions.max_items = 2;
    EXPECT_EQ(found(triangle()).accounting.triples, 0U);
    EXPECT_EQ(items(triangle()), Items{});
}

TEST_F(FindExclusions, TellsOfATripleTheLeastSurprisingWay) {
    // Counts 12, 8 and 8 of 20; together 4, 4 and 3, and all three in 1. The ways: 12 with 3, 8 with 4
    // (twice).
    Transactions transactions = {0b111};
    transactions.insert(transactions.end(), 3, 0b011);
    transactions.insert(transactions.end(), 3, 0b101);
    transactions.insert(transactions.end(), 2, 0b110);
    transactions.insert(transactions.end(), 5, 0b001);
    transactions.insert(transactions.end(), 2, 0b010);
    transactions.insert(transactions.end(), 2, 0b100);
    transactions.insert(transactions.end(), 2, 0);
    exclusions.alpha = 1;
    request.min_support = {3, false};
    const ExclusionResult result = found(database_of(transactions));
    const auto triple = std::ranges::find(result.exclusions, 3U, &Exclusion::size);
    ASSERT_NE(triple, result.exclusions.end());
    EXPECT_EQ(triple->expected_times_all, 8U * 4U);
    EXPECT_EQ(triple->covered, 18U);
    // At most 1 of the 4 among the 8: (C(12,4) + 8 C(12,3)) / C(20,4) = (495 + 1,760) / 4,845; with 12 and 3
    // it is (C(8,3) + 12 C(8,2)) / C(20,3) = (56 + 336) / 1,140, which is less likely.
    EXPECT_NEAR(triple->p, std::log10(4845.0 / 2255), 1e-12);
}

TEST_F(FindExclusions, PutsTheMostSurprisingFirst) {
    // 10 and 11 exclude each other; 12 and 13, which are rarer, do too.
    Transactions transactions;
    transactions.insert(transactions.end(), 10, 0b0001);
    transactions.insert(transactions.end(), 10, 0b0010);
    transactions.insert(transactions.end(), 6, 0b0100);
    transactions.insert(transactions.end(), 6, 0b1000);
    exclusions.alpha = 1;
    const Items all = items(database_of(transactions));
    // Of 32: 10 and 10, four times 10 and 6 by their items, 6 and 6.
    EXPECT_EQ(all, (Items{{10, 11}, {10, 12}, {10, 13}, {11, 12}, {11, 13}, {12, 13}}));
}

TEST_F(FindExclusions, KeepsTheFirstOnesAndCountsTheOthers) {
    Transactions transactions;
    for (unsigned item = 0; item < 12; ++item) {
        transactions.insert(transactions.end(), 3 + item, 1U << item);
    }
    exclusions.alpha = 1;
    const Database database = database_of(transactions);
    Items first = items(database);
    EXPECT_EQ(first.size(), 66U);
    first.resize(5);
    request.top = 5;
    EXPECT_EQ(items(database), first);
    EXPECT_EQ(found(database).accounting[ExclusionStep::top], 61U);
    EXPECT_EQ(found(database).accounting.left(), 5U);
}

TEST_F(FindExclusions, KeepsThoseWithTheItemsAskedForWithoutOtherProbabilities) {
    Transactions transactions;
    transactions.insert(transactions.end(), 10, 0b001);
    transactions.insert(transactions.end(), 10, 0b010);
    transactions.insert(transactions.end(), 10, 0b100);
    const Database database = database_of(transactions);
    EXPECT_EQ(items(database).size(), 3U);
    request.patterns = {{"--with", "#10", PatternPlace::either, true}};
    EXPECT_EQ(items(database), (Items{{10, 11}, {10, 12}}));
    request.patterns.push_back({"--without", "#12", PatternPlace::either, false});
    EXPECT_EQ(items(database), (Items{{10, 11}}));
    EXPECT_EQ(found(database).accounting[ExclusionStep::items], 2U);
}

TEST_F(FindExclusions, TellsHowFarItIs) {
    const Database database = triangle();
    const ItemNames no_names;
    std::vector<std::pair<ExclusionPhase, std::uint64_t>> told;
    find_exclusions(
        database, no_names, {}, {}, request, exclusions,
        [&told](ExclusionPhase phase, const ExclusionAccounting&, std::uint64_t done, std::uint64_t all) {
            EXPECT_LE(done, all);
            told.emplace_back(phase, done);
        });
    ASSERT_EQ(told.size(), 6U);
    EXPECT_EQ(told[2], std::pair(ExclusionPhase::pairs, std::uint64_t{3}));
    EXPECT_EQ(told[5], std::pair(ExclusionPhase::triples, std::uint64_t{1}));
}

TEST_F(FindExclusions, FindsNothingWhereThereIsNothing) {
    EXPECT_EQ(items(Database{}), Items{});
}

}  // namespace
}  // namespace korv::tools
