#include "app/time_stamp.h"

#include <gtest/gtest.h>
#include <sys/time.h>

namespace korv {
namespace {

TEST(TimeStamp, AddsMillionthsToTheSeconds) {
    EXPECT_EQ(to_seconds({1, 500'000}), 1.5);
    EXPECT_EQ(to_seconds({7, 0}), 7.0);
    EXPECT_EQ(to_seconds({0, 1}), 1e-6);
}

TEST(TimeStamp, KeepsTheFractionOfTodaysSeconds) {
    EXPECT_EQ(to_seconds({1'700'000'001, 250'000}), 1'700'000'001.25);
}

TEST(TimeStamp, TellsTenMillisecondsApart) {
    EXPECT_NEAR(to_seconds({1'700'000'001, 10'000}) - to_seconds({1'700'000'001, 0}), 0.01, 1e-6);
}

TEST(TimeStamp, IsTheWallClock) {
    timeval before{};
    timeval after{};
    gettimeofday(&before, nullptr);
    const double stamp = time_stamp();
    gettimeofday(&after, nullptr);
    EXPECT_LE(to_seconds(before), stamp);
    EXPECT_LE(stamp, to_seconds(after));
}

}  // namespace
}  // namespace korv
