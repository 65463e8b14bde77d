#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "rules/rule_writer.h"

namespace korv::tools {

/// A table for a terminal that fits its width: numbered rows of a text and numbers.
///
///      #  rule                        confidence  lift
///      1  sex=female => survived=yes       0.732  2.27
///
/// Long texts go on in further lines, and where the numbers leave too little room for the texts, they stand
/// below them. The columns are as wide as the first 1,000 rows need, and grow with the next ones. Where a
/// terminal has colour, the header is bold, and so are the ends of texts.
class AlignedTable {
public:
    struct Row {
        std::string text;                  ///< printable
        std::size_t plain_bytes = 0;       ///< how many bytes of it, without blanks, are never bold
        std::vector<std::string> numbers;  ///< by column
    };

    /// `title`: of the texts; `titles`: of the numbers. `sink` gets whole lines.
    AlignedTable(std::string_view title, std::vector<std::string> titles, const TerminalStyle& style,
                 TextSink sink);

    void add(Row row);

    /// Writes what is left. Call this once, last.
    void finish() { flush(); }

private:
    struct Laid {
        Row row;
        std::vector<std::string> lines;  ///< of the text, in a table
    };

    void flush();
    std::size_t widen_columns();
    void fit_texts(std::size_t room);
    void add_line_header();
    void add_row(const Laid& laid);
    void add_text_line(std::string_view line, std::size_t& plain_bytes);
    void add_cells(const std::vector<std::string>& cells, std::string& line) const;
    void add_block(const Row& row);

    const std::string_view title_;
    const std::vector<std::string> titles_;
    const TerminalStyle style_;
    TextSink sink_;
    std::vector<std::size_t> widths_;  ///< of the columns of numbers
    std::size_t number_width_ = 1;
    std::size_t text_width_ = 0;
    bool has_header_ = false;
    std::vector<Laid> rows_;
    std::string text_;
    std::uint64_t id_ = 0;
};

/// The bytes of a text without its blanks.
std::size_t bytes_less_blanks(std::string_view text);

}  // namespace korv::tools
