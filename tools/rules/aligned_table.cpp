#include "rules/aligned_table.h"

#include <algorithm>
#include <utility>

#include "rules/display_text.h"

namespace korv::tools {

namespace {

constexpr std::string_view gap = "  ";
constexpr std::string_view bold = "\x1B[1m";
constexpr std::string_view not_bold = "\x1B[22m";
/// Texts in a narrower column are hard to read.
constexpr std::size_t narrowest_text = 24;

/// Where what is no blank begins behind the first `letters` bytes that are no blanks; the size of the text
/// where it has no more of them.
std::size_t end_of(std::size_t letters, std::string_view text) {
    std::size_t end = 0;
    for (; end < text.size() && (letters > 0 || text[end] == ' '); ++end) {
        letters -= text[end] == ' ' ? 0U : 1U;
    }
    return end;
}

/// The lines of a text, those behind the first one a little to the right.
std::vector<std::string> lines_of(const std::string& text, std::size_t width) {
    constexpr std::size_t indent = 2;
    if (display_width(text) <= width) {
        return {text};
    }
    std::vector<std::string> lines = wrapped(text, width - indent);
    for (std::size_t i = 1; i < lines.size(); ++i) {
        lines[i].insert(0, indent, ' ');
    }
    return lines;
}

}  // namespace

AlignedTable::AlignedTable(std::string_view title, std::vector<std::string> titles,
                           const TerminalStyle& style, TextSink sink)
    : title_(title), titles_(std::move(titles)), style_(style), sink_(std::move(sink)) {
    for (const std::string& each : titles_) {
        widths_.push_back(each.size());
    }
}

void AlignedTable::add(Row row) {
    rows_.push_back({std::move(row), {}});
    constexpr std::size_t most_kept = 1000;
    if (rows_.size() == most_kept) {
        flush();
    }
}

/// Writes the rows that were kept.
void AlignedTable::flush() {
    if (rows_.empty()) {
        return;
    }
    const std::size_t room = widen_columns();
    if (room >= narrowest_text) {
        fit_texts(room);
    }
    text_.clear();
    for (const Laid& laid : rows_) {
        if (room >= narrowest_text) {
            add_line_header();
            add_row(laid);
        } else {
            add_block(laid.row);
        }
    }
    rows_.clear();
    sink_(text_);
}

/// Makes the columns as wide as the rows need. Returns how many are left for the texts.
std::size_t AlignedTable::widen_columns() {
    number_width_ = std::max(number_width_, std::to_string(id_ + rows_.size()).size());
    std::size_t taken = number_width_ + gap.size();
    for (std::size_t i = 0; i < widths_.size(); ++i) {
        for (const Laid& laid : rows_) {
            widths_[i] = std::max(widths_[i], laid.row.numbers[i].size());
        }
        taken += gap.size() + widths_[i];
    }
    return style_.width - std::min(taken, style_.width);
}

/// The widest line of a text that has so many columns, but the column is never narrower than before.
void AlignedTable::fit_texts(std::size_t room) {
    text_width_ = std::min(std::max(text_width_, title_.size()), room);
    for (Laid& laid : rows_) {
        laid.lines = lines_of(laid.row.text, room);
        for (const std::string& line : laid.lines) {
            text_width_ = std::max(text_width_, display_width(line));
        }
    }
}

void AlignedTable::add_line_header() {
    if (has_header_) {
        return;
    }
    has_header_ = true;
    std::string line = right_aligned("#", number_width_);
    line.append(gap).append(left_aligned(title_, text_width_));
    add_cells(titles_, line);
    text_ += style_.has_color ? std::string(bold) + line + std::string(not_bold) : line;
    text_ += '\n';
}

void AlignedTable::add_row(const Laid& laid) {
    std::size_t plain_bytes = laid.row.plain_bytes;
    for (std::size_t i = 0; i < laid.lines.size(); ++i) {
        text_ +=
            i == 0 ? right_aligned(std::to_string(++id_), number_width_) : std::string(number_width_, ' ');
        text_ += gap;
        add_text_line(laid.lines[i], plain_bytes);
        if (i == 0) {
            text_.append(text_width_ - std::min(display_width(laid.lines[i]), text_width_), ' ');
            add_cells(laid.row.numbers, text_);
        }
        text_ += '\n';
    }
}

/// Adds a line of a text, of which the first `plain_bytes` bytes that are no blanks are not bold. Takes them
/// off.
void AlignedTable::add_text_line(std::string_view line, std::size_t& plain_bytes) {
    const std::size_t end = end_of(plain_bytes, line);
    plain_bytes -= bytes_less_blanks(line.substr(0, end));
    if (!style_.has_color || end == line.size()) {
        text_ += line;
        return;
    }
    text_.append(line.substr(0, end)).append(bold).append(line.substr(end)).append(not_bold);
}

void AlignedTable::add_cells(const std::vector<std::string>& cells, std::string& line) const {
    for (std::size_t i = 0; i < cells.size(); ++i) {
        line.append(gap).append(right_aligned(cells[i], widths_[i]));
    }
}

/// A text where the terminal is too narrow for a table: its numbers, with their names, stand below it.
void AlignedTable::add_block(const Row& row) {
    constexpr std::size_t least_width = 20;
    const std::string number = right_aligned(std::to_string(++id_), number_width_) + std::string(gap);
    const std::string indent(number.size(), ' ');
    const std::size_t width = std::max(style_.width, indent.size() + least_width) - indent.size();
    std::size_t plain_bytes = row.plain_bytes;
    const std::string* before = &number;
    for (const std::string& line : lines_of(row.text, width)) {
        text_ += *before;
        add_text_line(line, plain_bytes);
        text_ += '\n';
        before = &indent;
    }
    std::string numbers;
    for (std::size_t i = 0; i < titles_.size(); ++i) {
        numbers += (i == 0 ? "" : ", ") + titles_[i] + " " + row.numbers[i];
    }
    for (const std::string& line : wrapped(numbers, width)) {
        text_.append(indent).append(line).append("\n");
    }
}

std::size_t bytes_less_blanks(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, [](char each) { return each != ' '; }));
}

}  // namespace korv::tools
