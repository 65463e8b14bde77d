#include "rules/number_words.h"

#include <gtest/gtest.h>

#include <limits>

namespace korv::tools {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double undefined = std::numeric_limits<double>::quiet_NaN();

TEST(PercentText, HasADecimalWhereItMatters) {
    EXPECT_EQ(percent_text(0.7319), "73 %");
    EXPECT_EQ(percent_text(0.0512), "5.1 %");
    EXPECT_EQ(percent_text(0.0996), "10 %");
    EXPECT_EQ(percent_text(0.994), "99 %");
    EXPECT_EQ(percent_text(0.9957), "99.6 %");
}

TEST(PercentText, SaysAllAndNothingOnlyOfThem) {
    EXPECT_EQ(percent_text(1), "100 %");
    EXPECT_EQ(percent_text(0.99999), "over 99.9 %");
    EXPECT_EQ(percent_text(0), "0 %");
    EXPECT_EQ(percent_text(0.00001), "under 0.1 %");
}

TEST(MeasureText, HasFewDigits) {
    EXPECT_EQ(measure_text(2.26574), "2.27");
    EXPECT_EQ(measure_text(0.08731), "0.087");
    EXPECT_EQ(measure_text(-0.5), "-0.500");
    EXPECT_EQ(measure_text(12.34), "12.3");
    EXPECT_EQ(measure_text(123.4), "123");
    EXPECT_EQ(measure_text(1234.5), "1,235");
    EXPECT_EQ(measure_text(-1234.5), "-1,235");
    EXPECT_EQ(measure_text(0.00012345), "0.00012");
    EXPECT_EQ(measure_text(0), "0.000");
}

TEST(MeasureText, OfWhatIsNoFiniteNumber) {
    EXPECT_EQ(measure_text(infinity), "inf");
    EXPECT_EQ(measure_text(-infinity), "-inf");
    EXPECT_EQ(measure_text(undefined), "-");
    EXPECT_EQ(measure_text(1e300), "1e+300");
}

TEST(MeasureText, Says0And1OnlyOfThem) {
    EXPECT_EQ(measure_text(1), "1.00");
    EXPECT_EQ(measure_text(0.9999997), ">0.999");
    EXPECT_EQ(measure_text(1.0000003), "<1.01");
    EXPECT_EQ(measure_text(-0.9999997), "<-0.999");
    EXPECT_EQ(measure_text(0.0000003), "3e-07");
}

TEST(DistinctText, Says1OnlyOf1) {
    EXPECT_EQ(distinct_text(1, 3), "1.000");
    EXPECT_EQ(distinct_text(0.9999, 3), ">0.999");
    EXPECT_EQ(distinct_text(0.9994, 3), "0.999");
    EXPECT_EQ(distinct_text(1.0004, 3), "<1.001");
    EXPECT_EQ(distinct_text(1.0006, 3), "1.001");
    EXPECT_EQ(distinct_text(0.7319, 3), "0.732");
}

TEST(DistinctText, SaysMinus1OnlyOfMinus1) {
    EXPECT_EQ(distinct_text(-1, 2), "-1.00");
    EXPECT_EQ(distinct_text(-0.999, 2), "<-0.99");
    EXPECT_EQ(distinct_text(-1.001, 2), ">-1.01");
}

TEST(DistinctText, Says0OnlyOf0) {
    EXPECT_EQ(distinct_text(0, 4), "0.0000");
    EXPECT_EQ(distinct_text(-0.0, 4), "0.0000");
    EXPECT_EQ(distinct_text(0.00004, 4), "4e-05");
    EXPECT_EQ(distinct_text(-0.000012345, 4), "-1.2e-05");
    EXPECT_EQ(distinct_text(0.00006, 4), "0.0001");
    EXPECT_EQ(distinct_text(0.004, 2), "0.004");
}

TEST(RangeText, IsOneNumberWhereItsEndsReadTheSame) {
    EXPECT_EQ(range_text("1", "2"), "1 to 2");
    EXPECT_EQ(range_text("2", "2"), "2");
    EXPECT_EQ(count_text({1234, 1234}), "1,234");
    EXPECT_EQ(count_text({330, 1234}), "330 to 1,234");
}

}  // namespace

}  // namespace korv::tools
