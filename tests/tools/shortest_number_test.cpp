#include "common/shortest_number.h"

#include <gtest/gtest.h>

#include <limits>

namespace korv::tools {

namespace {

template <typename Number>
std::string shortest(Number number) {
    std::string text = ">";
    append_shortest(number, text);
    return text;
}

TEST(AppendShortest, ReadsBackEqualInAsFewDigitsAsPossible) {
    EXPECT_EQ(shortest(0.1), ">0.1");
    EXPECT_EQ(shortest(1.0 / 3), ">0.3333333333333333");
    EXPECT_EQ(shortest(1.0), ">1");
    EXPECT_EQ(shortest(-1e-7), ">-1e-07");
    EXPECT_EQ(shortest(std::uint64_t{18446744073709551615U}), ">18446744073709551615");
}

TEST(AppendShortest, HasNoSignFor0AndAWordForInfinity) {
    EXPECT_EQ(shortest(-0.0), ">0");
    EXPECT_EQ(shortest(std::numeric_limits<double>::infinity()), ">inf");
    EXPECT_EQ(shortest(-std::numeric_limits<double>::infinity()), ">-inf");
}

}  // namespace

}  // namespace korv::tools
