#include "rules/measures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace korv::tools {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double undefined = std::numeric_limits<double>::quiet_NaN();

std::vector<Measure> all_measures() {
    std::vector<Measure> measures;
    for (std::size_t i = 0; i < number_of_measures; ++i) {
        measures.push_back(static_cast<Measure>(i));
    }
    return measures;
}

using Values = std::map<Measure, double>;

void expect_values(const Contingency& table, Count transactions, const Values& expected) {
    for (const auto& [measure, value] : expected) {
        const double found = value_of(measure, table, transactions);
        if (std::isnan(value)) {
            EXPECT_TRUE(std::isnan(found)) << name_of(measure) << " is " << found;
        } else {
            EXPECT_DOUBLE_EQ(found, value) << name_of(measure);
        }
    }
}

TEST(Measures, AreThoseOfATableAboveChance) {
    // both 3, only premise 1, only conclusion 2, neither 4
    const Values expected = {
        {Measure::support, 0.3},
        {Measure::coverage, 0.4},
        {Measure::prevalence, 0.5},
        {Measure::confidence, 0.75},
        {Measure::recall, 0.6},
        {Measure::lift, 1.5},
        {Measure::leverage, 0.1},
        {Measure::added_value, 0.25},
        {Measure::conviction, 2},
        {Measure::certainty, 0.5},
        {Measure::zhang, 5.0 / 9},
        {Measure::phi, 10 / std::sqrt(600)},
        {Measure::kappa, 0.4},
        {Measure::yule_q, 5.0 / 7},
        {Measure::odds_ratio, 6},
        {Measure::relative_risk, 2.25},
        {Measure::jaccard, 0.5},
        {Measure::cosine, 3 / std::sqrt(20)},
        {Measure::kulczynski, 0.675},
        {Measure::imbalance, 1.0 / 6},
        {Measure::laplace, 4.0 / 6},
        {Measure::chi2, 5.0 / 3},
        {Measure::p, -std::log10(55.0 / 210)},
    };
    ASSERT_EQ(expected.size(), number_of_measures);
    expect_values({4, 5, 3}, 10, expected);
}

TEST(Measures, AreThoseOfATableBelowChance) {
    // both 1, only premise 3, only conclusion 4, neither 2
    const Values expected = {
        {Measure::support, 0.1},
        {Measure::coverage, 0.4},
        {Measure::prevalence, 0.5},
        {Measure::confidence, 0.25},
        {Measure::recall, 0.2},
        {Measure::lift, 0.5},
        {Measure::leverage, -0.1},
        {Measure::added_value, -0.25},
        {Measure::conviction, 2.0 / 3},
        {Measure::certainty, -0.5},
        {Measure::zhang, -0.625},
        {Measure::phi, -10 / std::sqrt(600)},
        {Measure::kappa, -0.4},
        {Measure::yule_q, -5.0 / 7},
        {Measure::odds_ratio, 1.0 / 6},
        {Measure::relative_risk, 0.375},
        {Measure::jaccard, 0.125},
        {Measure::cosine, 1 / std::sqrt(20)},
        {Measure::kulczynski, 0.225},
        {Measure::imbalance, 0.125},
        {Measure::laplace, 2.0 / 6},
        {Measure::chi2, 5.0 / 3},
        {Measure::p, -std::log1p(-5.0 / 210) / std::log(10.0)},
    };
    ASSERT_EQ(expected.size(), number_of_measures);
    expect_values({4, 5, 1}, 10, expected);
}

TEST(Measures, AreThoseOfARuleWithoutException) {
    expect_values({4, 5, 4}, 10,
                  {{Measure::confidence, 1},
                   {Measure::conviction, infinity},
                   {Measure::certainty, 1},
                   {Measure::zhang, 20.0 / 24},
                   {Measure::yule_q, 1},
                   {Measure::odds_ratio, infinity},
                   {Measure::relative_risk, 6},
                   {Measure::p, -std::log10(5.0 / 210)}});
}

TEST(Measures, AreThoseOfEqualSides) {
    expect_values({4, 4, 4}, 10,
                  {{Measure::phi, 1},
                   {Measure::kappa, 1},
                   {Measure::relative_risk, infinity},
                   {Measure::jaccard, 1},
                   {Measure::cosine, 1},
                   {Measure::kulczynski, 1},
                   {Measure::imbalance, 0},
                   {Measure::chi2, 10},
                   {Measure::p, std::log10(210)}});
}

TEST(Measures, AreThoseOfIndependentSides) {
    expect_values({4, 5, 2}, 10,
                  {{Measure::lift, 1},
                   {Measure::leverage, 0},
                   {Measure::added_value, 0},
                   {Measure::conviction, 1},
                   {Measure::certainty, 0},
                   {Measure::zhang, 0},
                   {Measure::phi, 0},
                   {Measure::kappa, 0},
                   {Measure::yule_q, 0},
                   {Measure::odds_ratio, 1},
                   {Measure::relative_risk, 1},
                   {Measure::chi2, 0}});
}

TEST(Measures, OfAPremiseThatNeverHoldsAreMostlyUndefined) {
    expect_values({0, 5, 0}, 10,
                  {{Measure::support, 0},
                   {Measure::coverage, 0},
                   {Measure::confidence, undefined},
                   {Measure::recall, 0},
                   {Measure::lift, undefined},
                   {Measure::leverage, 0},
                   {Measure::added_value, undefined},
                   {Measure::conviction, undefined},
                   {Measure::certainty, undefined},
                   {Measure::zhang, undefined},
                   {Measure::phi, undefined},
                   {Measure::kappa, 0},
                   {Measure::yule_q, undefined},
                   {Measure::odds_ratio, undefined},
                   {Measure::relative_risk, undefined},
                   {Measure::jaccard, 0},
                   {Measure::cosine, undefined},
                   {Measure::kulczynski, undefined},
                   {Measure::imbalance, 1},
                   {Measure::laplace, 0.5},
                   {Measure::chi2, undefined},
                   {Measure::p, 0}});
}

TEST(Measures, OfAPremiseThatAlwaysHoldsSayNothing) {
    expect_values({10, 5, 5}, 10,
                  {{Measure::lift, 1},
                   {Measure::leverage, 0},
                   {Measure::conviction, 1},
                   {Measure::certainty, 0},
                   {Measure::zhang, undefined},
                   {Measure::phi, undefined},
                   {Measure::relative_risk, undefined},
                   {Measure::chi2, undefined},
                   {Measure::p, 0}});
}

TEST(Measures, OfAConclusionThatAlwaysHoldsSayNothing) {
    expect_values({5, 10, 5}, 10,
                  {{Measure::lift, 1},
                   {Measure::conviction, undefined},
                   {Measure::certainty, 0},
                   {Measure::relative_risk, 1},
                   {Measure::odds_ratio, undefined},
                   {Measure::p, 0}});
}

TEST(Measures, TellChanceFromAlmostChanceInLargeDatabases) {
    // 3,999,999,999 = 3 * 1,333,333,333 transactions; both sides hold in a third of them.
    constexpr Count third = 1'333'333'333;
    constexpr Count transactions = 3 * third;
    constexpr Count by_chance = 444'444'444;  // a ninth, rounded down

    EXPECT_LT(value_of(Measure::lift, {third, third, by_chance}, transactions), 1);
    EXPECT_GT(value_of(Measure::lift, {third, third, by_chance + 1}, transactions), 1);
    EXPECT_LT(value_of(Measure::leverage, {third, third, by_chance}, transactions), 0);
    EXPECT_EQ(value_of(Measure::lift, {third, transactions, third}, transactions), 1);
    EXPECT_EQ(value_of(Measure::leverage, {third, transactions, third}, transactions), 0);
    // 4,294,967,294^2 and 4,294,967,295 * 4,294,967,293 differ by 1, and are one number as doubles.
    EXPECT_LT(value_of(Measure::lift, {4'294'967'294, 4'294'967'294, 4'294'967'293}, 4'294'967'295), 1);
}

/// All ways to choose `some` of `all`: rows of Pascal's triangle.
std::vector<std::vector<std::uint64_t>> binomials(std::size_t last_row) {
    std::vector<std::vector<std::uint64_t>> rows = {{1}};
    while (rows.size() <= last_row) {
        const auto& above = rows.back();
        std::vector<std::uint64_t> row = {1};
        for (std::size_t i = 1; i < above.size(); ++i) {
            row.push_back(above[i - 1] + above[i]);
        }
        row.push_back(1);
        rows.push_back(row);
    }
    return rows;
}

TEST(FishersTest, IsTheSumOfTheExactProbabilities) {
    constexpr Count transactions = 60;
    const auto ways = binomials(transactions);
    for (Count x = 0; x <= transactions; ++x) {
        for (Count y = 0; y <= transactions; ++y) {
            const Count least = x + y > transactions ? x + y - transactions : 0;
            std::uint64_t sum = 0;
            for (Count a = std::min(x, y) + 1; a-- > least;) {
                sum += ways[y][a] * ways[transactions - y][x - a];
                const std::uint64_t fewer = ways[transactions][x] - sum;
                const double expected =
                    fewer < sum
                        ? -std::log1p(-static_cast<double>(fewer) /
                                      static_cast<double>(ways[transactions][x])) /
                              std::log(10.0)
                        : -std::log10(static_cast<double>(sum) / static_cast<double>(ways[transactions][x]));
                ASSERT_NEAR(value_of(Measure::p, {x, y, a}, transactions), expected, 1e-12 * expected)
                    << "x " << x << " y " << y << " a " << a;
            }
        }
    }
}

TEST(FishersTest, IsExactInLargeTables) {
    // Sums of fractions of whole numbers.
    struct Case {
        Count transactions;
        Contingency table;
        double expected;
    };
    const std::vector<Case> cases = {
        {1000, {500, 500, 500}, 299.43182715186373},
        {10000, {5000, 5000, 5000}, 3008.2018858439346},
        {10000, {4000, 3000, 2900}, 1411.4982857055684},
        {20000, {100, 100, 100}, 272.0253293319545},
        {20000, {10000, 10000, 5100}, 2.611956316120086},
        {20000, {10000, 10000, 4900}, 0.0009725992217188995},
        {50000, {1, 49999, 1}, 8.685976498119553e-06},
        {9835, {513, 2513, 286}, 49.903519393832426},
        {30000, {15000, 15000, 14000}, 5841.176541309325},
    };
    for (const Case& each : cases) {
        EXPECT_NEAR(value_of(Measure::p, each.table, each.transactions), each.expected, 1e-11)
            << each.transactions;
    }
}

TEST(FishersTest, IsNeverBelowZero) {
    EXPECT_GE(value_of(Measure::p, {1, 4'294'967'294, 1}, 4'294'967'295), 0);
    EXPECT_EQ(value_of(Measure::p, {3, 10, 3}, 10), 0);
    EXPECT_FALSE(std::signbit(value_of(Measure::p, {0, 0, 0}, 10)));
}

TEST(FishersTest, IsTheSameInBothDirections) {
    for (Count a = 0; a <= 300; ++a) {
        EXPECT_EQ(value_of(Measure::p, {300, 700, a}, 2000), value_of(Measure::p, {700, 300, a}, 2000));
    }
}

TEST(FishersTest, EndsSoonInTheLargestDatabases) {
    EXPECT_NEAR(value_of(Measure::p, {2'000'000'000, 2'000'000'000, 1'000'000'000}, 4'000'000'000),
                std::log10(2), 1e-4);
}

FoundRule rule_of(const Contingency& low, const Contingency& high) {
    return {Side(0, false), Side(1, false), low, high, Form::R111};
}

TEST(MeasureBounds, AreTheValueWhereItIsKnown) {
    const MeasureBounds bounds = bounds_of(Measure::confidence, rule_of({4, 5, 3}, {4, 5, 3}), 10);
    EXPECT_EQ(bounds.low, 0.75);
    EXPECT_EQ(bounds.high, 0.75);
}

TEST(MeasureBounds, AreTheValuesAtTheEnds) {
    const MeasureBounds bounds = bounds_of(Measure::confidence, rule_of({4, 5, 1}, {4, 7, 3}), 10);
    EXPECT_EQ(bounds.low, 0.25);
    EXPECT_EQ(bounds.high, 0.75);
}

TEST(MeasureBounds, HoldTheTurnBetweenTheEnds) {
    // y from 3 to 8, a from 1 to 6, of 10: independent at none of them; 60 y = 6 * 10 a nearest at a = 3, y =
    // 5
    const MeasureBounds chi2 = bounds_of(Measure::chi2, rule_of({6, 3, 1}, {6, 8, 6}), 10);
    EXPECT_EQ(chi2.low, 0);
    EXPECT_DOUBLE_EQ(chi2.high, 10 * 144.0 / (24 * 16));
    const MeasureBounds imbalance = bounds_of(Measure::imbalance, rule_of({6, 3, 1}, {6, 8, 6}), 10);
    EXPECT_EQ(imbalance.low, 0);
    EXPECT_EQ(imbalance.high, 0.375);
}

TEST(MeasureBounds, AreThoseOfTheDefinedValues) {
    // y from 0 to 3: where it is 0, there is no lift.
    const MeasureBounds lift = bounds_of(Measure::lift, rule_of({5, 0, 0}, {5, 3, 3}), 10);
    EXPECT_EQ(lift.low, 2);
    EXPECT_EQ(lift.high, 2);
    EXPECT_TRUE(std::isnan(bounds_of(Measure::lift, rule_of({0, 1, 0}, {0, 3, 0}), 10).low));
    EXPECT_TRUE(std::isnan(bounds_of(Measure::lift, rule_of({0, 1, 0}, {0, 3, 0}), 10).high));
}

/// A pair of itemsets in `transactions`: how many hold an item of either, of the first, of the second.
struct Pair {
    Count transactions;
    Count either;
    Count first;
};

/// One of the eight rules of a pair.
struct Kind {
    bool negates_first;
    bool negates_second;
    bool is_turned_round;
};

/// The table of a rule, counted cell by cell.
Contingency table_of(const Pair& pair, const Kind& kind, Count second) {
    const Count both = pair.first + second - pair.either;
    const std::array<std::array<Count, 2>, 2> cells = {{
        {both, pair.first - both},
        {second - both, pair.transactions - pair.either},
    }};
    const auto i = static_cast<std::size_t>(kind.negates_first);
    const auto j = static_cast<std::size_t>(kind.negates_second);
    const Count a = cells.at(i).at(j);
    const Count first = a + cells.at(i).at(1 - j);
    const Count other = a + cells.at(1 - i).at(j);
    return kind.is_turned_round ? Contingency{other, first, a} : Contingency{first, other, a};
}

/// The eight rules of every pair in at most so many transactions.
template <typename Visit>
void for_each_rule(Count most_transactions, Visit visit) {
    for (Count n = 0; n <= most_transactions; ++n) {
        for (Count either = 0; either <= n; ++either) {
            for (Count first = 0; first <= either; ++first) {
                for (unsigned bits = 0; bits < 8; ++bits) {
                    const Kind kind = {(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0};
                    visit(Pair{n, either, first}, kind);
                }
            }
        }
    }
}

/// Widens bounds by a value, if it is one.
void include(MeasureBounds& bounds, double value) {
    if (!std::isnan(value)) {
        bounds.low = std::isnan(bounds.low) ? value : std::min(bounds.low, value);
        bounds.high = std::isnan(bounds.high) ? value : std::max(bounds.high, value);
    }
}

bool is_close(double found, double expected) {
    constexpr double relative_error = 1e-12;
    if (std::isnan(expected) || std::isinf(expected)) {
        return std::isnan(expected) ? std::isnan(found) : found == expected;
    }
    return std::abs(found - expected) <= relative_error * std::max(1.0, std::abs(expected));
}

/// Compares the bounds of a measure, from one support of the second itemset to each larger one, with the
/// values at all of them. Returns how many intervals there were.
std::size_t compare_intervals(Measure measure, const Pair& pair, const Kind& kind, Count low) {
    MeasureBounds expected = {undefined, undefined};
    for (Count high = low; high <= pair.either; ++high) {
        include(expected, value_of(measure, table_of(pair, kind, high), pair.transactions));
        const FoundRule rule = rule_of(table_of(pair, kind, low), table_of(pair, kind, high));
        const MeasureBounds found = bounds_of(measure, rule, pair.transactions);
        EXPECT_TRUE(is_close(found.low, expected.low) && is_close(found.high, expected.high))
            << name_of(measure) << " of " << pair.transactions << " transactions, " << pair.either
            << " with either, " << pair.first << " with the first, " << low << " to " << high
            << " with the second; negated " << kind.negates_first << kind.negates_second << ", turned round "
            << kind.is_turned_round << ": found " << found.low << " to " << found.high << ", expected "
            << expected.low << " to " << expected.high;
    }
    return pair.either + 1 - low;
}

TEST(MeasureBounds, AreThoseOfAllTablesOfAllSmallDatabases) {
    constexpr Count most_transactions = 12;
    std::size_t intervals = 0;
    for_each_rule(most_transactions, [&](const Pair& pair, const Kind& kind) {
        for (const Measure measure : all_measures()) {
            for (Count low = pair.either - pair.first; low <= pair.either; ++low) {
                intervals += compare_intervals(measure, pair, kind, low);
            }
        }
    });
    EXPECT_GT(intervals, 1'000'000U);
    EXPECT_FALSE(HasFailure());
}

TEST(MeasureBounds, AreThoseOfAllTablesOfRandomLargerDatabases) {
    std::mt19937 random(1);
    const auto up_to = [&](Count most) { return static_cast<Count>(random() % (std::size_t{most} + 1)); };
    for (int i = 0; i < 2000; ++i) {
        const Count transactions = up_to(300);
        const Count either = up_to(transactions);
        const Pair pair = {transactions, either, up_to(either)};
        const Kind kind = {up_to(1) == 1, up_to(1) == 1, up_to(1) == 1};
        const Count low = pair.either - up_to(pair.first);
        for (const Measure measure : all_measures()) {
            compare_intervals(measure, pair, kind, low);
        }
        ASSERT_FALSE(HasFailure());
    }
}

TEST(MeasureNames, AreReadBack) {
    for (const Measure measure : all_measures()) {
        EXPECT_EQ(measure_named(name_of(measure)), measure);
    }
    EXPECT_EQ(name_of(Measure::added_value), "added_value");
    EXPECT_EQ(names_of_measures().size(), number_of_measures);
    EXPECT_EQ(names_of_measures()[7], "added_value");
    EXPECT_EQ(measure_named("Lift"), std::nullopt);
    EXPECT_EQ(measure_named(""), std::nullopt);
}

TEST(HelpOnMeasures, HasAnAlignedLineForEachMeasure) {
    std::istringstream text{std::string(help_on_measures())};
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
        EXPECT_LE(line.size(), 140U) << line;
        lines.push_back(line);
    }
    ASSERT_EQ(lines.size(), number_of_measures + 3);
    EXPECT_TRUE(lines[2].empty());
    const std::size_t formula = lines[3].find("a/n");
    const std::size_t explanation = lines[3].find("the share");
    for (std::size_t i = 0; i < number_of_measures; ++i) {
        const std::string& line = lines[i + 3];
        EXPECT_TRUE(line.starts_with(std::string(name_of(static_cast<Measure>(i))) + "  ")) << line;
        EXPECT_EQ(line.substr(formula - 2, 2), "  ") << line;
        EXPECT_NE(line[formula], ' ') << line;
        EXPECT_EQ(line.substr(explanation - 2, 2), "  ") << line;
        EXPECT_NE(line[explanation], ' ') << line;
    }
}

}  // namespace

}  // namespace korv::tools
