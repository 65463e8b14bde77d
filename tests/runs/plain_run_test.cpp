// Whole runs by index and by plain walks give the same bytes, whatever the classes.

#include <gtest/gtest.h>

#include <algorithm>

#include "support/compared_runs.h"
#include "support/random_classes.h"

namespace korv {
namespace {

void expect_same_files(const std::map<Itemset, data>& classes, std::mt19937& random) {
    if (!classes.empty()) {
        test::expect_same_files(classes, test::random_settings(random));
    }
}

TEST(PlainRun, GivesTheSameFilesForContradictoryClasses) {
    constexpr std::uint32_t seed = 1;
    std::mt19937 random(seed);
    for (int round = 0; round < 10'000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        ASSERT_NO_FATAL_FAILURE(expect_same_files(test::contradictory_classes(random), random));
    }
}

TEST(PlainRun, GivesTheSameFilesForSomeClassesOfADatabase) {
    constexpr std::uint32_t seed = 2;
    std::mt19937 random(seed);
    for (int round = 0; round < 5'000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const std::vector<Itemset> transactions = test::random_transactions(7, 12, random);
        ASSERT_NO_FATAL_FAILURE(expect_same_files(test::some_classes(transactions, 7, 10, random), random));
    }
}

TEST(PlainRun, GivesTheSameFilesForManyClasses) {
    constexpr std::uint32_t seed = 4;
    std::mt19937 random(seed);
    std::size_t most = 0;
    for (int round = 0; round < 5; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const std::vector<Itemset> transactions = test::random_transactions(14, 200, random);
        const auto classes = test::some_classes(transactions, 14, 2000, random);
        most = std::max(most, classes.size());
        ASSERT_NO_FATAL_FAILURE(expect_same_files(classes, random));
    }
    EXPECT_GT(most, 512U);  // many words of a bitmap
}

TEST(PlainRun, GivesTheSameFilesForClassesOfManyItems) {
    std::mt19937 random(5);
    ASSERT_NO_FATAL_FAILURE(expect_same_files(test::sparse_classes(4500, 700, random), random));
}

}  // namespace
}  // namespace korv
