#include "mine/estimate.h"

#include <gtest/gtest.h>

#include "tools/complaint.h"
#include "tools/random_database.h"

namespace korv::tools {
namespace {

// 10 in four transactions, 11 in two, 12 in one; 10 and 11 are together once.
const Database database = database_of({0b001, 0b001, 0b001, 0b011, 0b110});

constexpr std::chrono::duration<double> no_time(0);

TEST(Estimates, AreWhatMiningBringsByFallingSupport) {
    const std::vector<Estimate> found =
        estimates(database, {.min_supports = {{1, false}, {80, true}, {2, false}}});
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0].transactions, 4U);
    EXPECT_EQ(found[0].frequent_items, 1U);
    EXPECT_EQ(found[0].essentials, 1U);
    EXPECT_EQ(found[0].classes, 1U);
    EXPECT_EQ(found[0].file_bytes, std::string("10\t4\t 10,\n").size());
    EXPECT_EQ(found[1].transactions, 2U);
    EXPECT_EQ(found[1].frequent_items, 2U);
    EXPECT_EQ(found[1].classes, 2U);
    EXPECT_EQ(found[2].transactions, 1U);
    EXPECT_EQ(found[2].frequent_items, 3U);
    EXPECT_EQ(found[2].essentials, 4U);
    EXPECT_EQ(found[2].classes, 4U);
    EXPECT_EQ(found[2].file_bytes,
              std::string("10\t4\t 10,\n12\t1\t 12,\n11 12\t2\t 11,\n10 11 12\t5\t 10 11,\n").size());
    EXPECT_TRUE(found[2].is_complete);
}

TEST(Estimates, AreLowerBoundsWhereTheTimeIsNotEnough) {
    const std::vector<Estimate> found =
        estimates(database, {.min_supports = {{2, false}, {1, false}}}, no_time);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_FALSE(found[0].is_complete);
    EXPECT_FALSE(found[1].is_complete);
    EXPECT_LE(found[0].classes, 2U);
    EXPECT_EQ(found[1].classes, found[0].classes);
    EXPECT_EQ(found[1].frequent_items, 3U);
}

TEST(Estimates, AreNoLowerThanThoseOfALargerSupport) {
    // Two classes are allowed: enough at a minimum support of 2, not at 1, nor without a walk at 1 again.
    const std::vector<Estimate> found =
        estimates(database, {.min_supports = {{2, false}, {1, false}, {20, true}}, .max_classes = 2});
    ASSERT_EQ(found.size(), 3U);
    EXPECT_TRUE(found[0].is_complete);
    for (const std::size_t i : {1U, 2U}) {
        EXPECT_FALSE(found[i].is_complete);
        EXPECT_EQ(found[i].classes, 2U);
        EXPECT_GE(found[i].file_bytes, found[0].file_bytes);
    }
}

TEST(Estimates, ComplainOfThresholdsOutOfRange) {
    EXPECT_NE(complaint_of([] { estimates(database, {.min_supports = {{1, false}, {6, false}}}); }), "");
}

TEST(EstimateTable, HasALineForEach) {
    const std::vector<Estimate> rows = {
        {.min_support = {50, true},
         .transactions = 1101,
         .frequent_items = 4,
         .essentials = 5,
         .classes = 4,
         .file_bytes = 62},
        {.min_support = {22, false},
         .transactions = 22,
         .frequent_items = 1010,
         .essentials = 2'000'000,
         .classes = 1'200'000,
         .file_bytes = 67'594'366,
         .is_complete = false},
    };
    EXPECT_EQ(
        estimate_table(rows),
        "min. support   frequent items    essential itemsets               classes          class file\n"
        "  50% (1101)                4                     5                     4            62 bytes\n"
        "          22            1,010   more than 2,000,000   more than 1,200,000   more than 67.6 MB\n");
}

}  // namespace
}  // namespace korv::tools
