#include "common/csv.h"

#include <string_view>

#include "common/error.h"

namespace korv::tools {

bool CsvReader::next(std::vector<CsvCell>& row) {
    row.clear();
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
    const std::string_view rest = std::string_view(input_.text).substr(position_);
    return rest.empty() || rest.starts_with('\n') || rest.starts_with("\r\n") || rest == "\r";
}

/// Returns true when there was a line end, or the end of the input.
bool CsvReader::skip_line_end() {
    if (!at_line_end()) {
        return false;
    }
    const std::size_t end = input_.text.find('\n', position_);
    position_ = end == std::string::npos ? input_.text.size() : end + 1;
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
    if (position_ < input_.text.size() && input_.text[position_] == '"') {
        return read_quoted_cell();
    }
    CsvCell cell = {"", position_};
    while (!at_line_end() && input_.text[position_] != separator_) {
        cell.text += input_.text[position_++];
    }
    cell.text.erase(cell.text.find_last_not_of(" \t") + 1);
    return cell;
}

CsvCell CsvReader::read_quoted_cell() {
    const std::string& text = input_.text;
    CsvCell cell = {"", position_++};
    for (;;) {
        const std::size_t quote = text.find('"', position_);
        if (quote == std::string::npos) {
            throw input_error(input_.name, place_of(text, cell.position), "a quote that is not closed",
                              "a closing quote");
        }
        cell.text.append(text, position_, quote - position_);
        position_ = quote + 1;
        if (position_ == text.size() || text[position_] != '"') {
            break;
        }
        cell.text += text[position_++];
    }
    skip_blanks();
    if (!at_line_end() && text[position_] != separator_) {
        throw input_error(input_.name, place_of(text, position_), shown(text.substr(position_, 1)),
                          "a separator or a line end behind the closing quote");
    }
    return cell;
}

}  // namespace korv::tools
