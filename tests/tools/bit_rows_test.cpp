#include "mine/bit_rows.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

/// Row 0 holds lines 0, 1 and 70, row 1 lines 1 and 2.
BitRows rows_of_71_lines() {
    BitRows rows;
    rows.reset(2, 71);
    for (const std::size_t line : std::initializer_list<std::size_t>{0, 1, 70}) {
        rows.insert(0, line);
    }
    for (const std::size_t line : std::initializer_list<std::size_t>{1, 2}) {
        rows.insert(1, line);
    }
    return rows;
}

TEST(BitRows, CountsLines) {
    const BitRows rows = rows_of_71_lines();
    EXPECT_EQ(rows.words(), 2U);
    EXPECT_EQ(rows.both(rows[0], rows[0]), 3U);
    EXPECT_EQ(rows.both(rows[0], rows[1]), 1U);
    EXPECT_EQ(rows.without(rows[0], rows[1]), 2U);
}

TEST(BitRows, AddsWeightsUp) {
    BitRows rows = rows_of_71_lines();
    std::vector<Count> weights(71, 1);
    weights[0] = 5;
    weights[1] = 1'000'000'000;
    weights[70] = 6;
    rows.set_weights(weights);
    EXPECT_EQ(rows.both(rows[0], rows[0]), 1'000'000'011U);
    EXPECT_EQ(rows.both(rows[0], rows[1]), 1'000'000'000U);
    EXPECT_EQ(rows.without(rows[0], rows[1]), 11U);
    EXPECT_EQ(rows.without(rows[1], rows[0]), 1U);
}

TEST(BitRows, ForgetsLinesAndWeightsWhenItIsReset) {
    BitRows rows = rows_of_71_lines();
    rows.set_weights(std::vector<Count>(71, 9));
    rows.reset(1, 3);
    EXPECT_EQ(rows.words(), 1U);
    EXPECT_EQ(rows.both(rows[0], rows[0]), 0U);
    rows.insert(0, 2);
    EXPECT_EQ(rows.both(rows[0], rows[0]), 1U);
}

}  // namespace
}  // namespace korv::tools
