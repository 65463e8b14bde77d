#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "common/text_input.h"

namespace korv::tools {

struct CsvCell {
    std::string_view text;  ///< in the input, or in the reader where quotes had to be undoubled
    std::size_t position;   ///< of its first byte in the input, which may be a quote; for messages
};

/// Reads comma-separated values as RFC 4180 defines them, with any separator: cells in double quotes may hold
/// separators, line ends and doubled quotes. Blanks around a cell are ignored. Lines end with LF or CR LF.
///
/// The input is read once, from its beginning to its end, and no cell is copied but those with doubled
/// quotes.
class CsvReader {
public:
    /// `input` must outlive the reader and the cells.
    CsvReader(const TextInput& input, char separator) : input_(input), separator_(separator) {}

    /// Replaces `row` by the cells of the next line; a blank line has none. They are valid until the next
    /// call. Returns false at the end. Throws FormError, with the place, for a quote that is not closed and
    /// for text behind a closing quote.
    bool next(std::vector<CsvCell>& row);

    /// Where the line that was read last begins, for messages.
    std::size_t line_position() const { return line_position_; }

    /// Where the next line begins in the input.
    std::size_t position() const { return position_; }

    /// Goes on from a position in the input as if a line began there.
    void move_to(std::size_t position) { position_ = position; }

private:
    bool at_line_end() const;
    bool skip_line_end();
    void skip_blanks();
    CsvCell read_cell();
    CsvCell read_quoted_cell();
    std::size_t closing_quote(const CsvCell& cell) const;
    std::string_view undoubled(std::string_view quoted);

    const TextInput& input_;
    char separator_;
    std::size_t position_ = 0;
    std::size_t line_position_ = 0;
    std::deque<std::string> undoubled_;  ///< texts of the current row, which stay where they are
};

}  // namespace korv::tools
