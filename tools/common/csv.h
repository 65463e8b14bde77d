#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "common/text_input.h"

namespace korv::tools {

struct CsvCell {
    std::string text;
    std::size_t position;  ///< of its first byte in the input, for messages
};

/// Reads comma-separated values as RFC 4180 defines them, with any separator: cells in double quotes may hold
/// separators, line ends and doubled quotes. Blanks around a cell are ignored. Lines end with LF or CR LF.
class CsvReader {
public:
    /// `input` must outlive the reader.
    CsvReader(const TextInput& input, char separator) : input_(input), separator_(separator) {}

    /// Replaces `row` by the cells of the next line; a blank line has none. Returns false at the end. Throws
    /// Error, with the place, for a quote that is not closed and for text behind a closing quote.
    bool next(std::vector<CsvCell>& row);

private:
    bool at_line_end() const;
    bool skip_line_end();
    void skip_blanks();
    CsvCell read_cell();
    CsvCell read_quoted_cell();

    const TextInput& input_;
    char separator_;
    std::size_t position_ = 0;
};

}  // namespace korv::tools
