#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "mine/table_options.h"

namespace korv::tools {

/// Whether a name is what a pattern says: `*` stands for any bytes, `?` for one character of UTF-8, anything
/// else for itself. O(pattern * name).
bool matches(std::string_view pattern, std::string_view name);

/// Which columns become items, as ascending positions in the header: those that options.columns name but
/// options.ignored do not, without the weight column and one without a name. `file` is for messages. Throws
/// Error for a pattern that matches no column, for a rule of a column that does not exist or is not read, and
/// when no column is left.
std::vector<std::size_t> chosen_columns(const std::vector<std::string>& header, const TableOptions& options,
                                        const std::string& file);

}  // namespace korv::tools
