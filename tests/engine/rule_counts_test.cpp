#include "engine/rule_counts.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <utility>
#include <vector>

#include "support/collected_rules.h"

namespace korv {
namespace {

using enum Form;
using enum Kind;

Count sum_of_all_cells(const RuleCounts& counts) {
    Count sum = 0;
    for (const auto& row : counts.counters) {
        sum = std::accumulate(row.begin(), row.end(), sum);
    }
    return sum;
}

TEST(RuleCounts, AddCountsEachFormInItsRowAndTheColumnOfTheKind) {
    for (const FormDescription& each : rule_catalogue) {
        for (std::size_t column = 0; column < 3; ++column) {
            RuleCounts counts;
            counts.add(each.form, all_kinds[column]);
            EXPECT_EQ(counts.counters[each.counter_row][column], 1U) << each.label;
            EXPECT_EQ(sum_of_all_cells(counts), 1U) << each.label;
        }
    }
}

TEST(RuleCounts, CountReadsEachFormFromItsRow) {
    for (const FormDescription& each : rule_catalogue) {
        RuleCounts counts;
        counts.counters[each.counter_row] = {5, 6, 7};
        EXPECT_EQ(counts.count(each.form, exact), 5U) << each.label;
        EXPECT_EQ(counts.count(each.form, appro), 6U) << each.label;
        EXPECT_EQ(counts.count(each.form, apped), 7U) << each.label;
    }
}

TEST(RuleCounts, StartAtZero) {
    const RuleCounts counts;
    EXPECT_EQ(counts.counters.size(), 24U);
    EXPECT_EQ(sum_of_all_cells(counts), 0U);
    EXPECT_EQ(counts.exact_total, 0U);
    EXPECT_EQ(counts.appro_total, 0U);
    EXPECT_EQ(counts.apped_total, 0U);
}

TEST(RuleCounts, AddCountsInTheTotalOfTheKind) {
    RuleCounts counts;
    counts.add(R111, exact);
    counts.add(R432, exact);
    counts.add(R432, exact);
    counts.add(R112, appro);
    counts.add(R112, appro);
    counts.add(R221, apped);
    EXPECT_EQ(counts.exact_total, 3U);
    EXPECT_EQ(counts.appro_total, 2U);
    EXPECT_EQ(counts.apped_total, 1U);
}

TEST(RuleCounts, TotalIsThatOfTheKind) {
    RuleCounts counts;
    counts.exact_total = 7;
    counts.appro_total = 8;
    counts.apped_total = 9;
    EXPECT_EQ(counts.total(exact), 7U);
    EXPECT_EQ(counts.total(appro), 8U);
    EXPECT_EQ(counts.total(apped), 9U);
}

TEST(RuleCounts, ColumnSumTakesAllRowsOfItsColumn) {
    RuleCounts counts;
    counts.counters.front() = {1, 10, 100};
    counts.counters[12] = {2, 20, 200};
    counts.counters.back() = {4, 40, 400};
    EXPECT_EQ(counts.column_sum(exact), 7U);
    EXPECT_EQ(counts.column_sum(appro), 70U);
    EXPECT_EQ(counts.column_sum(apped), 700U);
}

TEST(RuleCounts, ColumnSumAndTotalNeedNotAgree) {
    RuleCounts counts;
    counts.counters[3][0] = 5;
    counts.exact_total = 2;
    EXPECT_EQ(counts.column_sum(exact), 5U);
    EXPECT_EQ(counts.total(exact), 2U);
}

TEST(RuleCounts, CountsWrapAt32Bits) {
    constexpr Count largest = std::numeric_limits<Count>::max();
    RuleCounts counts;
    counts.counters[1][0] = largest;
    counts.exact_total = largest;
    counts.add(R111, exact);
    EXPECT_EQ(counts.count(R111, exact), 0U);
    EXPECT_EQ(counts.exact_total, 0U);
}

TEST(RuleCounts, ColumnSumWrapsAt32Bits) {
    RuleCounts counts;
    counts.counters[0][2] = std::numeric_limits<Count>::max();
    counts.counters[1][2] = 3;
    EXPECT_EQ(counts.column_sum(apped), 2U);
}

/// Keeps rules and the itemsets of pairs in the order in which they come.
class Recorded final : public RuleSink {
public:
    void begin(const Pair& pair) override { pairs.emplace_back(&pair, rules.size()); }
    void add(const Rule& rule) override { rules.push_back(rule); }

    std::vector<std::pair<const Pair*, std::size_t>> pairs;  ///< and how many rules came before
    std::vector<Rule> rules;
};

TEST(CountedRules, CountUnderTheFormForTheCounters) {
    RuleCounts counts;
    Recorded next;
    CountedRules(counts, next).add({R212, R111, appro, known(20U), known(0.5)});
    EXPECT_EQ(counts.count(R111, appro), 1U);
    EXPECT_EQ(counts.count(R212, appro), 0U);
    EXPECT_EQ(counts.appro_total, 1U);
    EXPECT_EQ(sum_of_all_cells(counts), 1U);
}

TEST(CountedRules, PassOnPairsAndRulesAsTheyCome) {
    const Itemset base = {1};
    const Itemset difference = {2};
    const Pair first = {PairKind::successor, {}, base, difference, 80, 50, {40, 40}, true};
    const Pair second = {PairKind::essential_and_rest, {}, base, difference, 80, 80, {40, 40}, true};
    const Rule rule = {R212, R111, appro, known(20U), known(0.5)};
    const Rule other = {R112, R112, apped, between(10U, 20U), {}};
    RuleCounts counts;
    Recorded next;
    CountedRules counted(counts, next);
    counted.begin(first);
    counted.add(rule);
    counted.add(other);
    counted.begin(second);
    counted.add(rule);
    EXPECT_EQ(next.rules, (std::vector<Rule>{rule, other, rule}));
    EXPECT_EQ(next.pairs, (std::vector<std::pair<const Pair*, std::size_t>>{{&first, 0}, {&second, 2}}));
    EXPECT_EQ(counts.count(R111, appro), 2U);
    EXPECT_EQ(counts.count(R112, apped), 1U);
}

}  // namespace
}  // namespace korv
