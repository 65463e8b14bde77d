#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "common/text_input.h"
#include "mine/database.h"

namespace korv::tools {

/// That numbers are to be cut into bins.
struct BinRule {
    std::string column;  ///< its name; empty for all columns that hold nothing but numbers
    std::size_t bins;    ///< at least 1
};

/// Reads a table: a line with the names of the columns, then one transaction a line. A cell is an item,
/// "column=value"; an empty cell is none. A blank line is an empty transaction.
///
/// A column that a rule asks for is cut into bins of about as many cells each (quantiles; equal numbers are
/// never parted), "column=smallest..largest". A rule for a column goes before one for all.
///
/// Items are numbered from 1: column after column, its values in the order in which they first come up, its
/// bins from the smallest. Throws Error, with the place, at what is no such file, when a rule names a column
/// that there is not or that holds something but numbers, and when there is no item at all.
Database read_table(const TextInput& input, char separator, const std::vector<BinRule>& rules);

}  // namespace korv::tools
