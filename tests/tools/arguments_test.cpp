#include "mine/arguments.h"

#include <gtest/gtest.h>

#include "tools/complaint.h"

namespace korv::tools {
namespace {

std::string complaint(const Threshold& threshold, Count transactions) {
    return complaint_of([&] { in_transactions(threshold, transactions); });
}

TEST(ParseThreshold, TakesACount) {
    const auto threshold = parse_threshold("100");
    ASSERT_TRUE(threshold);
    EXPECT_EQ(threshold->value, 100.0);
    EXPECT_FALSE(threshold->is_percentage);
}

TEST(ParseThreshold, TakesAPercentage) {
    const auto threshold = parse_threshold("2.5%");
    ASSERT_TRUE(threshold);
    EXPECT_EQ(threshold->value, 2.5);
    EXPECT_TRUE(threshold->is_percentage);
}

TEST(ParseThreshold, TakesNothingElse) {
    for (const char* const text :
         {"", "%", "x", "2.5", "-1", "-1%", "100x", "1e99999%", "nan%", "inf%", "4294967296"}) {
        EXPECT_FALSE(parse_threshold(text)) << text;
    }
}

TEST(InTransactions, OfACountIsThatCount) {
    EXPECT_EQ(in_transactions({100, false}, 100), 100U);
    EXPECT_EQ(in_transactions({1, false}, 100), 1U);
}

TEST(InTransactions, OfAPercentageIsRoundedUp) {
    EXPECT_EQ(in_transactions({2.5, true}, 8124), 204U);  // of 203.1
    EXPECT_EQ(in_transactions({50, true}, 3), 2U);
    EXPECT_EQ(in_transactions({0.001, true}, 10), 1U);
    EXPECT_EQ(in_transactions({100, true}, 3), 3U);
}

TEST(InTransactions, OfAPercentageWithoutABinaryFormIsNotRoundedUpByOne) {
    EXPECT_EQ(in_transactions({0.7, true}, 1000), 7U);
    EXPECT_EQ(in_transactions({1.1, true}, 1000), 11U);
    EXPECT_EQ(in_transactions({5.5, true}, 200), 11U);
}

TEST(InTransactions, MustBeBetween1AndAll) {
    EXPECT_EQ(complaint({0, false}, 100),
              "--min-support: found 0 transactions; expected at least 1 and at most 100, the number of "
              "transactions in the input");
    EXPECT_EQ(complaint({101, false}, 100),
              "--min-support: found 101 transactions; expected at least 1 and at most 100, the number of "
              "transactions in the input");
    EXPECT_NE(complaint({0, true}, 100), "");
    EXPECT_NE(complaint({101, true}, 100), "");
    EXPECT_NE(complaint({1e300, true}, 100), "");
}

TEST(DefaultNames, StandBesideTheClassFile) {
    EXPECT_EQ(default_names("data/a.classes"), "data/a.names");
    EXPECT_EQ(default_names("a"), "a.names");
    EXPECT_EQ(default_names("-"), "");
}

TEST(NamesPath, IsTheGivenOneOrTheDefault) {
    EXPECT_EQ(names_path("b.txt", Format::basket, "a.classes"), "b.txt");
    EXPECT_EQ(names_path("", Format::table, "a.classes"), "a.names");
    EXPECT_EQ(names_path("", Format::fimi, "a.classes"), "");
}

TEST(NamesPath, CannotBeGivenForItemsWithoutNames) {
    EXPECT_EQ(complaint_of([] { names_path("b.txt", Format::fimi, "a.classes"); }),
              "--names: goes with --format basket or table only; found fimi, whose items have no names");
}

}  // namespace
}  // namespace korv::tools
