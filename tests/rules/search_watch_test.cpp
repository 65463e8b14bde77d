#include "rules/search_watch.h"

#include <gtest/gtest.h>

namespace korv::tools {

namespace {

/// The statistics of the program, as they were before, at the end of each test.
class SearchWatchTest : public testing::Test {
protected:
    ~SearchWatchTest() override {
        statistics().phase = Phase::reading;
        statistics().pairs = statistics().expected_pairs = statistics().derived = statistics().kept = 0;
    }

    Accounting accounting_ = [] {
        Accounting accounting;
        accounting.pairs = 5000;
        accounting.derived = 300;
        accounting[Step::size] = 100;
        return accounting;
    }();
    SearchWatch watch_{true};
    SearchProgress progress_ = watch_.progress();
};

TEST_F(SearchWatchTest, KeepsThePhase) {
    progress_.begin(Phase::indexing);
    EXPECT_EQ(statistics().phase, Phase::indexing);
    watch_.begin(Phase::writing);
    EXPECT_EQ(statistics().phase, Phase::writing);
}

TEST_F(SearchWatchTest, ExpectsAsManyPairsOfEachClassAsThereWereUntilNow) {
    progress_.derived(accounting_, 1024, 4096);
    EXPECT_EQ(statistics().pairs, 5000U);
    EXPECT_EQ(statistics().expected_pairs, 20'000U);
    EXPECT_EQ(statistics().derived, 300U);
    EXPECT_EQ(statistics().kept, 200U);
}

TEST_F(SearchWatchTest, ExpectsNoMorePairsAtTheEnd) {
    progress_.derived(accounting_, 4097, 4097);
    EXPECT_EQ(statistics().expected_pairs, 5000U);
}

}  // namespace

}  // namespace korv::tools
