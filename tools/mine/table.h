#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "common/text_input.h"
#include "mine/database.h"

namespace korv::tools {

/// A rule that numbers are to be cut into bins.
struct BinRule {
    std::string column;  ///< its name; empty for all columns that hold nothing but numbers
    std::size_t bins;    ///< at least 1
};

/// Reads a table: the first line has the names of the columns, and each other line is a transaction. A cell
/// is an item, "column=value"; an empty cell is none. A blank line is an empty transaction.
///
/// A column for which there is a rule is cut into bins with about the same number of cells (quantiles; equal
/// numbers always share a bin), "column=smallest..largest". A rule for one column takes precedence over a
/// rule for all.
///
/// Items are numbered from 1, column by column: values in the order in which they first occur, bins from the
/// smallest. Throws Error, with the place, when the input does not have this form, when a rule names a column
/// that does not exist or that holds anything but numbers, and when there is no item at all.
Database read_table(const TextInput& input, char separator, const std::vector<BinRule>& rules);

}  // namespace korv::tools
