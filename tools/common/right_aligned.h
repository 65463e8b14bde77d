#pragma once

#include <string>
#include <vector>

namespace korv::tools {

/// Rows of cells as lines of text, with three blanks between columns, whose cells end below each other. All
/// rows have the same number of cells.
std::string right_aligned(const std::vector<std::vector<std::string>>& rows);

}  // namespace korv::tools
