#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace korv::tools {

/// A line of a summary: a number, what it counts, and the option that undoes it, or no text.
struct SummaryLine {
    std::uint64_t number;
    std::string what;
    std::string option;
};

/// The lines with their numbers, of at least so many columns, and options below each other.
std::string aligned(const std::vector<SummaryLine>& lines, std::size_t number_width);

/// "1 rule", "2,201 rules".
std::string counted(std::uint64_t number, const std::string& noun, const std::string& ending = "s");

/// "--min-lift 0 keeps them", or "it is kept without --where" for the options "without --where". `number`: of
/// what is kept.
std::string keeps(const std::string& options, std::uint64_t number);

}  // namespace korv::tools
