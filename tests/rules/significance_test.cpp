#include "rules/significance.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "rules/fisher.h"
#include "rules/made_rules.h"

namespace korv::tools {
namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

/// How many rules of so many items there can be: each item is in the premise, in the conclusion or in
/// neither, and each side is plain or negated.
std::size_t rules_of(std::size_t items, std::size_t size) {
    std::size_t places = 1;
    for (std::size_t i = 0; i < items; ++i) {
        places *= 3;
    }
    std::size_t rules = 0;
    for (std::size_t code = 0; code < places; ++code) {
        std::size_t in_premise = 0;
        std::size_t in_conclusion = 0;
        std::size_t rest = code;
        for (std::size_t i = 0; i < items; ++i, rest /= 3) {
            in_premise += rest % 3 == 1 ? 1U : 0U;
            in_conclusion += rest % 3 == 2 ? 1U : 0U;
        }
        if (in_premise > 0 && in_conclusion > 0 && in_premise + in_conclusion == size) {
            rules += 4;
        }
    }
    return rules;
}

TEST(SignificanceLevels, DivideAlphaAmongSizesAndAmongTheRulesOfASize) {
    // Of three items there are 4 * 6 rules of one item on each side, and 4 * 6 of one and two.
    const SignificanceLevels levels(0.05, 3, 3);
    EXPECT_NEAR(levels.needed(2), -std::log10(0.05 / 2 / 24), 1e-13);
    EXPECT_NEAR(levels.needed(3), -std::log10(0.05 / 2 / 24), 1e-13);
}

TEST(SignificanceLevels, CountEveryRuleThatCouldBeWritten) {
    for (std::size_t items = 2; items <= 9; ++items) {
        const SignificanceLevels levels(0.01, items, 6);
        for (std::size_t size = 2; size <= std::min<std::size_t>(6, items); ++size) {
            const double level = 0.01 / 5 / static_cast<double>(rules_of(items, size));
            EXPECT_NEAR(levels.needed(size), -std::log10(level), 1e-12) << items << " items, size " << size;
        }
    }
}

TEST(SignificanceLevels, AreThoseOfAnySizeWhereNoneIsTheLargest) {
    const SignificanceLevels any(0.05, 5, 0);
    const SignificanceLevels five(0.05, 5, 5);
    for (std::size_t size = 2; size <= 5; ++size) {
        EXPECT_EQ(any.needed(size), five.needed(size));
    }
}

TEST(SignificanceLevels, LetNoRulePassThatCannotBe) {
    const SignificanceLevels levels(1, 5, 3);
    EXPECT_EQ(levels.needed(0), infinite);
    EXPECT_EQ(levels.needed(1), infinite);
    EXPECT_LT(levels.needed(3), infinite);
    EXPECT_EQ(levels.needed(4), infinite);
    EXPECT_EQ(SignificanceLevels(1, 2, 6).needed(3), infinite);
    EXPECT_EQ(SignificanceLevels(1, 1, 0).needed(2), infinite);
    EXPECT_EQ(SignificanceLevels(1, 0, 0).needed(2), infinite);
    EXPECT_EQ(SignificanceLevels(1, 9, 1).needed(2), infinite);
}

TEST(SignificanceLevels, DoNotOverflow) {
    // 4 C(100000, 50000) (2^50000 - 2) is about 10^(0.60 + 30100.39 + 15051.50).
    const SignificanceLevels levels(0.05, 100'000, 0);
    const double choices = (std::lgamma(100'001.0) - 2 * std::lgamma(50'001.0)) / std::log(10.0);
    const double expected =
        -std::log10(0.05) + std::log10(99'999.0) + std::log10(4.0) + choices + 50'000 * std::log10(2.0);
    EXPECT_NEAR(levels.needed(50'000), expected, 1e-6);
}

TEST(IsEnough, TakesEqualNumbersThatRoundingParts) {
    EXPECT_TRUE(is_enough(3, 3));
    EXPECT_TRUE(is_enough(0.3, 0.1 + 0.2));
    EXPECT_FALSE(is_enough(2.999'999, 3));
    EXPECT_TRUE(is_enough(0, 0));
    EXPECT_FALSE(is_enough(1e6, infinite));
}

/// Columns 1 2 and 4 5, and item 6 in no column, in 10 transactions.
SignificanceTest test_at(double alpha, std::size_t items = 6) {
    const ItemNames names({{1, "a=1"}, {2, "a=2"}, {4, "b=1"}, {5, "b=2"}, {6, "c"}});
    Database database;
    database.items = {{1, {0, 1}}, {2, {2, 3}}, {4, {0, 2}}, {5, {4, 5}}, {6, {0}}};
    database.lines = 10;
    database.transactions = 10;
    return {SignificanceLevels(alpha, items, 2), ColumnFacts(names, database), 10};
}

TEST(SignificanceTest, CannotJudgeRulesWithValuesOfAColumnOnBothSides) {
    const SignificanceTest test = test_at(0.05);
    const auto is_open = [&test](const Itemset& premise, const Itemset& conclusion) {
        return test.is_open_to({premise, false}, {conclusion, true});
    };
    EXPECT_FALSE(is_open({1}, {2}));
    EXPECT_FALSE(is_open({1, 4}, {2, 6}));
    EXPECT_TRUE(is_open({1, 2}, {4, 5}));
    EXPECT_TRUE(is_open({1, 6}, {4}));
    EXPECT_TRUE(is_open({6}, {7}));
}

TEST(SignificanceTest, TakesTheLevelInclusively) {
    // Of 10 transactions the premise and the conclusion hold for the same 3, which is one of C(10, 3) = 120
    // ways; among 2 items there are 4 * 2 rules.
    MadeRules rules({});
    const FoundRule rule = known_rule(rules.any({1}), rules.any({4}), {3, 3, 3});
    EXPECT_TRUE(test_at(8.0 / 120, 2).passes(rule, 2));
    EXPECT_FALSE(test_at(7.99 / 120, 2).passes(rule, 2));
    EXPECT_FALSE(test_at(8.0 / 120, 3).passes(rule, 2));
}

TEST(SignificanceTest, LooksAtTheWorseEndOfBounds) {
    MadeRules rules({});
    FoundRule rule = known_rule(rules.any({1}), rules.any({4}), {3, 3, 3});
    rule.at_high = {4, 3, 3};  // 4 of 120 ways
    EXPECT_FALSE(test_at(8.0 / 120, 2).passes(rule, 2));
    EXPECT_TRUE(test_at(4 * 8.0 / 120, 2).passes(rule, 2));
    std::swap(rule.at_low, rule.at_high);
    EXPECT_FALSE(test_at(8.0 / 120, 2).passes(rule, 2));
}

/// How the counts of a rule change when one transaction more meets a side whose support is open.
struct Change {
    int premise;
    int conclusion;
    int both;
};

TEST(SignificanceTest, NeedsNoTableBetweenTheEndsOfBounds) {
    // Whatever the two signs and the open side are, each step changes the counts in one of these ways.
    const std::vector<Change> ways = {{0, 1, 1}, {0, 1, 0}, {1, 0, 1}, {1, 0, 0}};
    constexpr int transactions = 14;
    const auto is_table = [](int x, int y, int a) {
        return a >= 0 && a <= x && a <= y && x + y - a <= transactions;
    };
    for (const Change& way : ways) {
        for (int x = 0; x <= transactions; ++x) {
            for (int y = 0; y <= transactions; ++y) {
                for (int a = 0; a <= transactions; ++a) {
                    const int x2 = x + way.premise;
                    const int y2 = y + way.conclusion;
                    const int a2 = a + way.both;
                    if (!is_table(x, y, a) || !is_table(x2, y2, a2)) {
                        continue;
                    }
                    const auto surprise_of = [](int premise, int conclusion, int both) {
                        return surprise(Tail::more,
                                        {static_cast<Count>(premise), static_cast<Count>(conclusion),
                                         static_cast<Count>(both)},
                                        transactions);
                    };
                    // More in common is more surprising; a larger side that has no more in common is less.
                    const double change = surprise_of(x2, y2, a2) - surprise_of(x, y, a);
                    ASSERT_GE(way.both == 1 ? change : -change, -1e-12) << x << " " << y << " " << a;
                }
            }
        }
    }
}

}  // namespace
}  // namespace korv::tools
