#include "mine/column_bins.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

using Labels = std::vector<std::string>;
using Numbers = std::vector<std::uint32_t>;

TEST(QuantileBins, HaveAsManyCells) {
    const Bins bins = quantile_bins({{"30", 30, 1}, {"10", 10, 1}, {"20", 20, 1}, {"40", 40, 1}}, 2);
    EXPECT_EQ(bins.labels, (Labels{"10..20", "30..40"}));
    EXPECT_EQ(bins.bin_of, (Numbers{1, 0, 0, 1}));
}

TEST(QuantileBins, CountTheCellsOfEachNumber) {
    // Six cells: 1 1 1 1 2 3. The first 2 is the fifth, in the second half.
    const Bins bins = quantile_bins({{"1", 1, 4}, {"2", 2, 1}, {"3", 3, 1}}, 2);
    EXPECT_EQ(bins.labels, (Labels{"1", "2..3"}));
    EXPECT_EQ(bins.bin_of, (Numbers{0, 1, 1}));
}

TEST(QuantileBins, ShareEqualNumbersAndTheirFirstSpelling) {
    const Bins bins = quantile_bins({{"2.0", 2, 1}, {"1", 1, 1}, {"2", 2, 1}, {"1.0", 1, 1}}, 2);
    EXPECT_EQ(bins.labels, (Labels{"1", "2.0"}));
    EXPECT_EQ(bins.bin_of, (Numbers{1, 0, 1, 0}));
}

TEST(QuantileBins, AreNoneOfNoNumbers) {
    EXPECT_EQ(quantile_bins({}, 3).labels, Labels{});
}

TEST(QuantileBins, AreNoMoreThanCellsHoweverManyAreAskedFor) {
    // Twice 2^63 would wrap to 0, the bin of the first number.
    const Bins bins = quantile_bins({{"1", 1, 2}, {"2", 2, 2}}, std::size_t{1} << 63U);
    EXPECT_EQ(bins.labels, (Labels{"1", "2"}));
}

TEST(PointBins, BeginAtTheirPoints) {
    const Bins bins = point_bins(
        {{"20", 20, 1}, {"9.9", 9.9, 1}, {"10", 10, 1}, {"19", 19, 1}, {"99", 99, 1}}, {"10", "20"});
    EXPECT_EQ(bins.labels, (Labels{"..<10", "10..<20", "20.."}));
    EXPECT_EQ(bins.bin_of, (Numbers{2, 0, 1, 1, 2}));
}

TEST(PointBins, AreLeftOutWhereTheyHoldNoNumber) {
    const Bins bins = point_bins({{"35", 35, 1}, {"5", 5, 1}}, {"10", "20", "30"});
    EXPECT_EQ(bins.labels, (Labels{"..<10", "30.."}));
    EXPECT_EQ(bins.bin_of, (Numbers{1, 0}));
}

TEST(PointBins, AreLabelledWithThePointsAsTheyAreTyped) {
    EXPECT_EQ(point_bins({{"1500", 1500, 1}}, {"1e3", "2000.0"}).labels, (Labels{"1e3..<2000.0"}));
}

}  // namespace
}  // namespace korv::tools
