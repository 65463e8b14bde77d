#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace korv::tools {

/// A number in a column, as it is written.
struct NumberText {
    std::string_view text;
    double number;        ///< finite
    std::uint64_t cells;  ///< that have this text, at least one
};

/// How numbers are cut into bins.
struct Bins {
    std::vector<std::string> labels;    ///< of the bins that hold a number, from the smallest
    std::vector<std::uint32_t> bin_of;  ///< the bin of each number, in the order in which they were given
};

/// Cuts numbers into at most `bins` bins with about as many cells each (quantiles); equal numbers share a
/// bin. A label is "smallest..largest" of the bin, or the number where it holds only one, in the spelling
/// that is given first. O(n log n).
Bins quantile_bins(const std::vector<NumberText>& numbers, std::size_t bins);

/// Cuts numbers at points, ascending numbers as they are typed. A point belongs to the bin that begins at it:
/// labels are "..<10", "10..<20" and "20..". O(n log n).
Bins point_bins(const std::vector<NumberText>& numbers, const std::vector<std::string>& points);

}  // namespace korv::tools
