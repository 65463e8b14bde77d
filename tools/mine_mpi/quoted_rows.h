#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace korv::tools {

/// How rows of cells are written (see csv.h).
struct RowForm {
    char separator = ',';
    bool weighted = false;  ///< see take_weight
};

/// What tells where rows begin in a text that begins behind a line end, perhaps within a quoted cell.
struct QuotedRows {
    std::optional<std::size_t> first_row;  ///< where the first row begins; nothing when none does
    bool ends_in_quotes = false;           ///< whether the text ends within a quoted cell
};

/// Looks for quoted cells, which can hold line ends. `begins_in_quotes`: whether the text begins in one. What
/// is behind a closing quote, but for a separator or a line end, is passed over: whoever reads the row
/// refuses it. O(text).
QuotedRows find_quoted_rows(std::string_view text, bool begins_in_quotes, const RowForm& form);

}  // namespace korv::tools
