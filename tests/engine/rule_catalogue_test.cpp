#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <ostream>
#include <string>

#include "engine/rule_counts.h"

namespace korv {
namespace {

/// One line of the table of forms, as the rules are reported and counted.
struct CatalogueLine {
    std::string label;
    std::string text;
    std::size_t row;
    Form form;
};

// clang-format off
const std::array<CatalogueLine, 24> all_lines = {{
    {"R111", "e1-->(f1-e1)", 1, Form::R111},
    {"R112", "(f1-e1)-->e1", 0, Form::R112},
    {"R121", "e1-->(f2-e1)", 17, Form::R121},
    {"R122", "(f2-e1)-->e1", 16, Form::R122},
    {"R131", "f1-->(f2-f1)", 9, Form::R131},
    {"R132", "(f2-f1)-->f1", 8, Form::R132},
    {"R211", "not(e1)-->not(f1-e1)", 2, Form::R211},
    {"R212", "not(f1-e1)-->not(e1)", 3, Form::R212},
    {"R221", "not(e1)-->not(f2-e1)", 18, Form::R221},
    {"R222", "not(f2-e1)-->not(e1)", 19, Form::R222},
    {"R231", "not(f1)-->not(f2-f1)", 10, Form::R231},
    {"R232", "not(f2-f1)-->not(f1)", 11, Form::R232},
    {"R311", "e1-->not(f1-e1)", 4, Form::R311},
    {"R312", "(f1-e1)-->not(e1)", 7, Form::R312},
    {"R321", "e1-->not(f2-e1)", 20, Form::R321},
    {"R322", "(f2-e1)-->not(e1)", 23, Form::R322},
    {"R331", "f1-->not(f2-f1)", 12, Form::R331},
    {"R332", "(f2-f1)-->not(f1)", 15, Form::R332},
    {"R411", "not(e1)-->(f1-e1)", 6, Form::R411},
    {"R412", "not(f1-e1)-->e1", 5, Form::R412},
    // The two whose last digit does not tell the direction.
    {"R421", "not(f2-e1)-->e1", 21, Form::R421},
    {"R422", "not(e1)-->(f2-e1)", 22, Form::R422},
    {"R431", "not(f1)-->(f2-f1)", 14, Form::R431},
    {"R432", "not(f2-f1)-->f1", 13, Form::R432},
}};
// clang-format on

void PrintTo(const CatalogueLine& line, std::ostream* out) {
    *out << line.label;
}

Count sum_of_all_cells(const RuleCounts& counts) {
    Count sum = 0;
    for (const auto& row : counts.counters) {
        sum = std::accumulate(row.begin(), row.end(), sum);
    }
    return sum;
}

TEST(RuleCatalogue, ListsTheFormsInTheOrderOfTheReport) {
    ASSERT_EQ(rule_catalogue.size(), all_lines.size());
    for (std::size_t i = 0; i < all_lines.size(); ++i) {
        EXPECT_EQ(rule_catalogue[i].label, all_lines[i].label);
        EXPECT_EQ(rule_catalogue[i].form, all_lines[i].form) << all_lines[i].label;
    }
}

TEST(RuleCatalogue, HasFourGroupsOfSixForms) {
    EXPECT_EQ(forms_in_a_group, 6U);
    EXPECT_EQ(rule_catalogue.size(), 4U * 6U);
}

TEST(RuleCatalogue, NamesTheKindsInTheOrderOfTheirColumns) {
    ASSERT_EQ(all_kinds.size(), 3U);
    EXPECT_EQ(static_cast<std::size_t>(Kind::exact), 0U);
    EXPECT_EQ(static_cast<std::size_t>(Kind::appro), 1U);
    EXPECT_EQ(static_cast<std::size_t>(Kind::apped), 2U);
    EXPECT_EQ(kind_name(all_kinds[0]), "exact");
    EXPECT_EQ(kind_name(all_kinds[1]), "appro");
    EXPECT_EQ(kind_name(all_kinds[2]), "apped");
}

class CataloguedForm : public ::testing::TestWithParam<CatalogueLine> {};

TEST_P(CataloguedForm, HasItsTextInTheReport) {
    const CatalogueLine& line = GetParam();
    EXPECT_EQ(rule_catalogue[static_cast<std::size_t>(line.form)].text, line.text);
}

TEST_P(CataloguedForm, HasItsOwnCounterRow) {
    const CatalogueLine& line = GetParam();
    EXPECT_EQ(rule_catalogue[static_cast<std::size_t>(line.form)].counter_row, line.row);
    EXPECT_EQ(counter_row(line.form), line.row);
}

TEST_P(CataloguedForm, IsCountedInItsRowAndTheColumnOfTheKind) {
    const CatalogueLine& line = GetParam();
    for (std::size_t column = 0; column < 3; ++column) {
        RuleCounts counts;
        counts.add(line.form, all_kinds[column]);
        EXPECT_EQ(counts.counters[line.row][column], 1U);
        EXPECT_EQ(sum_of_all_cells(counts), 1U);
    }
}

TEST_P(CataloguedForm, ReadsItsCountFromItsRow) {
    const CatalogueLine& line = GetParam();
    RuleCounts counts;
    counts.counters[line.row] = {5, 6, 7};
    EXPECT_EQ(counts.count(line.form, Kind::exact), 5U);
    EXPECT_EQ(counts.count(line.form, Kind::appro), 6U);
    EXPECT_EQ(counts.count(line.form, Kind::apped), 7U);
}

INSTANTIATE_TEST_SUITE_P(All, CataloguedForm, ::testing::ValuesIn(all_lines),
                         [](const auto& instance) { return instance.param.label; });

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
    counts.add(Form::R111, Kind::exact);
    counts.add(Form::R432, Kind::exact);
    counts.add(Form::R432, Kind::exact);
    counts.add(Form::R112, Kind::appro);
    counts.add(Form::R112, Kind::appro);
    counts.add(Form::R221, Kind::apped);
    EXPECT_EQ(counts.exact_total, 3U);
    EXPECT_EQ(counts.appro_total, 2U);
    EXPECT_EQ(counts.apped_total, 1U);
}

TEST(RuleCounts, TotalIsThatOfTheKind) {
    RuleCounts counts;
    counts.exact_total = 7;
    counts.appro_total = 8;
    counts.apped_total = 9;
    EXPECT_EQ(counts.total(Kind::exact), 7U);
    EXPECT_EQ(counts.total(Kind::appro), 8U);
    EXPECT_EQ(counts.total(Kind::apped), 9U);
}

TEST(RuleCounts, ColumnSumTakesAllRowsOfItsColumn) {
    RuleCounts counts;
    counts.counters.front() = {1, 10, 100};
    counts.counters[12] = {2, 20, 200};
    counts.counters.back() = {4, 40, 400};
    EXPECT_EQ(counts.column_sum(Kind::exact), 7U);
    EXPECT_EQ(counts.column_sum(Kind::appro), 70U);
    EXPECT_EQ(counts.column_sum(Kind::apped), 700U);
}

TEST(RuleCounts, ColumnSumAndTotalNeedNotAgree) {
    RuleCounts counts;
    counts.counters[3][0] = 5;
    counts.exact_total = 2;
    EXPECT_EQ(counts.column_sum(Kind::exact), 5U);
    EXPECT_EQ(counts.total(Kind::exact), 2U);
}

TEST(RuleCounts, CountsWrapAt32Bits) {
    constexpr Count largest = std::numeric_limits<Count>::max();
    RuleCounts counts;
    counts.counters[1][0] = largest;
    counts.exact_total = largest;
    counts.add(Form::R111, Kind::exact);
    EXPECT_EQ(counts.count(Form::R111, Kind::exact), 0U);
    EXPECT_EQ(counts.exact_total, 0U);
}

TEST(RuleCounts, ColumnSumWrapsAt32Bits) {
    RuleCounts counts;
    counts.counters[0][2] = std::numeric_limits<Count>::max();
    counts.counters[1][2] = 3;
    EXPECT_EQ(counts.column_sum(Kind::apped), 2U);
}

}  // namespace
}  // namespace korv
