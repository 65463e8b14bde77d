#include "mine/threshold.h"

#include <gtest/gtest.h>

#include "tools/complaint.h"

namespace korv::tools {
namespace {

Count min_support(const Threshold& threshold, Count transactions) {
    return in_transactions(threshold, "--min-support", 1, transactions);
}

std::string complaint(const Threshold& threshold, Count transactions) {
    return complaint_of([&] { min_support(threshold, transactions); });
}

TEST(ParseThreshold, TakesACount) {
    EXPECT_EQ(parse_threshold("100"), (Threshold{100.0, false}));
}

TEST(ParseThreshold, TakesAPercentage) {
    EXPECT_EQ(parse_threshold("2.5%"), (Threshold{2.5, true}));
}

TEST(ParseThreshold, TakesNothingElse) {
    for (const char* const text :
         {"", "%", "x", "2.5", "-1", "-1%", "100x", "1e99999%", "nan%", "inf%", "4294967296"}) {
        EXPECT_FALSE(parse_threshold(text)) << text;
    }
}

TEST(ParseThresholds, TakesOneOrSeveral) {
    EXPECT_EQ(parse_thresholds("7"), (std::vector<Threshold>{{7, false}}));
    EXPECT_EQ(parse_thresholds("50%,20%,7"), (std::vector<Threshold>{{50, true}, {20, true}, {7, false}}));
}

TEST(ParseThresholds, TakesNothingWithAGap) {
    for (const char* const text : {"", ",", "5,", ",5", "5,,6", "5,x"}) {
        EXPECT_FALSE(parse_thresholds(text)) << text;
    }
}

TEST(ThresholdText, IsAsItWasGiven) {
    EXPECT_EQ(text_of({100, false}), "100");
    EXPECT_EQ(text_of({2.5, true}), "2.5%");
    EXPECT_EQ(text_of({50, true}), "50%");
}

TEST(InTransactions, OfACountIsThatCount) {
    EXPECT_EQ(min_support({100, false}, 100), 100U);
    EXPECT_EQ(min_support({1, false}, 100), 1U);
    EXPECT_EQ(in_transactions({0, false}, "--min-joint", 0, 100), 0U);
}

TEST(InTransactions, OfAPercentageIsRoundedUp) {
    EXPECT_EQ(min_support({2.5, true}, 8124), 204U);  // of 203.1
    EXPECT_EQ(min_support({50, true}, 3), 2U);
    EXPECT_EQ(min_support({0.001, true}, 10), 1U);
    EXPECT_EQ(min_support({100, true}, 3), 3U);
}

TEST(InTransactions, OfAPercentageWithoutABinaryFormIsNotRoundedUpByOne) {
    EXPECT_EQ(min_support({0.7, true}, 1000), 7U);
    EXPECT_EQ(min_support({1.1, true}, 1000), 11U);
    EXPECT_EQ(min_support({5.5, true}, 200), 11U);
    EXPECT_EQ(min_support({17.8, true}, 100'000'000), 17'800'000U);
    EXPECT_EQ(min_support({0.9, true}, 2'000'000'000), 18'000'000U);
}

TEST(InTransactions, OfAPercentageHasALeastNumber) {
    EXPECT_EQ(min_support({1, true, 3}, 93), 3U);
    EXPECT_EQ(min_support({1, true, 3}, 300), 3U);
    EXPECT_EQ(min_support({1, true, 3}, 301), 4U);
    EXPECT_EQ(min_support({1, true, 3}, 2), 2U);  // all of them
    EXPECT_EQ(text_of({1, true, 3}), "1% (at least 3)");
}

TEST(InTransactions, MustBeInRange) {
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

}  // namespace
}  // namespace korv::tools
