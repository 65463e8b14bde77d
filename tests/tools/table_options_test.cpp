#include "mine/table_options.h"

#include <gtest/gtest.h>

#include "tools/complaint.h"

namespace korv::tools {
namespace {

using Points = std::vector<std::string>;

std::string complaint(const TableOptions& options) {
    return complaint_of([&] { check_rules(options); });
}

TEST(ParseBinRule, TakesANumberForAllColumnsOrForOne) {
    const auto for_all = parse_bin_rule("4");
    ASSERT_TRUE(for_all);
    EXPECT_EQ(for_all->column, "");
    EXPECT_EQ(for_all->bins, 4U);
    const auto for_one = parse_bin_rule("a=b=10");
    ASSERT_TRUE(for_one);
    EXPECT_EQ(for_one->column, "a=b");
    EXPECT_EQ(for_one->bins, 10U);
    EXPECT_EQ(for_one->points, Points{});
}

TEST(ParseBinRule, TakesPointsForOneColumnAsTheyAreTyped) {
    const auto rule = parse_bin_rule("age=-1.50,2,3e1");
    ASSERT_TRUE(rule);
    EXPECT_EQ(rule->column, "age");
    EXPECT_EQ(rule->points, (Points{"-1.50", "2", "3e1"}));
}

TEST(ParseBinRule, TellsASinglePointByTheCommaBehindIt) {
    const auto rule = parse_bin_rule("age=18,");
    ASSERT_TRUE(rule);
    EXPECT_EQ(rule->points, (Points{"18"}));
}

TEST(ParseBinRule, TakesNothingElse) {
    for (const char* const text :
         {"", "0", "age", "age=", "age=0", "=4", "age=x", "-1", "10,20", "age=,", "age=10,,20", "age=,10",
          "age=10,20,,", "age=20,10", "age=10,10", "age=10,x", "age=1,inf", "age=1,nan", "age=1.5"}) {
        EXPECT_FALSE(parse_bin_rule(text)) << text;
    }
}

TEST(ParseSplitRule, TakesAColumnAndASeparatorOfAnyLength) {
    const auto rule = parse_split_rule("spoken languages=; ");
    ASSERT_TRUE(rule);
    EXPECT_EQ(rule->column, "spoken languages");
    EXPECT_EQ(rule->separator, "; ");
    EXPECT_EQ(parse_split_rule("a=tab")->separator, "\t");
}

TEST(ParseSplitRule, TakesEqualsSignsInTheColumnAndForTheSeparator) {
    EXPECT_EQ(parse_split_rule("a=b=;")->column, "a=b");
    EXPECT_EQ(parse_split_rule("a==")->column, "a");
    EXPECT_EQ(parse_split_rule("a==")->separator, "=");
}

TEST(ParseSplitRule, TakesNothingElse) {
    for (const char* const text : {"", "=", "a", "a=", "=;", ";"}) {
        EXPECT_FALSE(parse_split_rule(text)) << text;
    }
}

TEST(CheckRules, FindsNothingWrongWithOneRuleForEachColumnAndOneForAll) {
    EXPECT_EQ(complaint({.bins = {{"", 2}, {"a", 3}}, .splits = {{"b", ";"}}, .weight_column = "n"}), "");
}

TEST(CheckRules, ReportsASecondRuleForAColumn) {
    EXPECT_EQ(complaint({.bins = {{"a", 2}, {"a", 3}}}),
              "--bins: found a second rule for the column \"a\"; expected one at most");
    EXPECT_EQ(complaint({.bins = {{"", 2}, {"", 2}}}),
              "--bins: found a second rule for all columns; expected one at most");
    EXPECT_EQ(complaint({.bins = {{"a", 2}}, .splits = {{"a", ";"}}}),
              "--split: found a second rule for the column \"a\"; expected one at most");
    EXPECT_EQ(complaint({.splits = {{"a", ";"}}, .weight_column = "a"}),
              "--weight: found a second rule for the column \"a\"; expected one at most");
}

TEST(CheckRules, ReportsBinsForAllColumnsOfFlags) {
    EXPECT_EQ(complaint({.bins = {{"a", 2}}, .only_true = true}), "");
    EXPECT_EQ(
        complaint({.bins = {{"", 2}}, .only_true = true}),
        "--bins: found a rule for all columns, and --only-true; expected one of the two, or the name of a "
        "column in --bins");
}

}  // namespace
}  // namespace korv::tools
