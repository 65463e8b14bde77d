#include "common/csv.h"

#include <algorithm>

#include "common/error.h"

namespace korv::tools {

bool CsvReader::next(std::vector<CsvCell>& row) {
    row.clear();
    undoubled_.clear();
    line_position_ = position_;
    if (position_ == input_.text.size()) {
        return false;
    }
    skip_blanks();
    if (skip_line_end()) {
        return true;
    }
    for (;;) {
        row.push_back(read_cell());
        if (skip_line_end()) {
            return true;
        }
        ++position_;  // the separator
    }
}

/// Whether a line end or the end of the input is next.
bool CsvReader::at_line_end() const {
    const std::string& text = input_.text;
    if (position_ == text.size() || text[position_] == '\n') {
        return true;
    }
    return text[position_] == '\r' && (position_ + 1 == text.size() || text[position_ + 1] == '\n');
}

/// Returns true when there was a line end, or the end of the input.
bool CsvReader::skip_line_end() {
    if (!at_line_end()) {
        return false;
    }
    const std::string& text = input_.text;
    position_ += position_ < text.size() && text[position_] == '\r' ? 1 : 0;
    position_ += position_ < text.size() ? 1 : 0;
    return true;
}

void CsvReader::skip_blanks() {
    const auto is_blank = [this](char c) { return (c == ' ' || c == '\t') && c != separator_; };
    while (position_ < input_.text.size() && is_blank(input_.text[position_])) {
        ++position_;
    }
}

/// Reads up to the next separator or line end.
CsvCell CsvReader::read_cell() {
    skip_blanks();
    const std::string_view text = input_.text;
    const std::size_t begin = position_;
    if (begin < text.size() && text[begin] == '"') {
        return read_quoted_cell();
    }
    std::size_t end = begin;
    while (end < text.size() && text[end] != separator_ && text[end] != '\n') {
        ++end;
    }
    const bool is_last = end == text.size() || text[end] == '\n';
    end -= is_last && end > begin && text[end - 1] == '\r' ? 1 : 0;
    position_ = end;
    while (end > begin && (text[end - 1] == ' ' || text[end - 1] == '\t')) {
        --end;
    }
    return {text.substr(begin, end - begin), begin};
}

CsvCell CsvReader::read_quoted_cell() {
    const std::string_view text = input_.text;
    CsvCell cell = {{}, position_};
    const std::size_t end = closing_quote(cell);
    const std::string_view quoted = text.substr(position_ + 1, end - position_ - 1);
    cell.text = quoted.find('"') == std::string_view::npos ? quoted : undoubled(quoted);
    position_ = end + 1;
    skip_blanks();
    if (!at_line_end() && text[position_] != separator_) {
        throw FormError(input_error(input_.name, place_of(input_, position_),
                                    shown(text.substr(position_, 1)),
                                    "a separator or a line end behind the closing quote"));
    }
    return cell;
}

/// The position of the quote that closes a cell.
std::size_t CsvReader::closing_quote(const CsvCell& cell) const {
    const std::string_view text = input_.text;
    std::size_t quote = text.find('"', cell.position + 1);
    while (quote != std::string_view::npos && text.substr(quote + 1).starts_with('"')) {
        quote = text.find('"', quote + 2);
    }
    if (quote == std::string_view::npos) {
        throw FormError(input_error(input_.name, place_of(input_, cell.position),
                                    "a quote that is not closed", "a closing quote"));
    }
    return quote;
}

/// A copy with one quote for each two.
std::string_view CsvReader::undoubled(std::string_view quoted) {
    std::string& copy = undoubled_.emplace_back();
    copy.reserve(quoted.size());
    for (std::size_t begin = 0; begin < quoted.size();) {
        const std::size_t quote = std::min(quoted.find('"', begin), quoted.size() - 1);
        copy += quoted.substr(begin, quote + 1 - begin);
        begin = quoted[quote] == '"' ? quote + 2 : quote + 1;
    }
    return copy;
}

}  // namespace korv::tools
