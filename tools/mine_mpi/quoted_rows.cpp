#include "mine_mpi/quoted_rows.h"

#include <algorithm>
#include <string>

namespace korv::tools {

namespace {

constexpr std::string_view blanks = " \t";

/// Goes through a text cell by cell.
class Scan {
public:
    Scan(std::string_view text, const RowForm& form)
        : text_(text), form_(form), ends_of_cell_({form.separator, '\n'}) {}

    QuotedRows run(bool begins_in_quotes) {
        if (begins_in_quotes) {
            if (!leave_quotes()) {
                return {std::nullopt, true};
            }
            leave_cell();
        } else {
            begin_row();
        }
        while (position_ < text_.size()) {
            skip_blanks();
            if (position_ < text_.size() && text_[position_] == '"') {
                ++position_;
                if (!leave_quotes()) {
                    return {first_row_, true};
                }
            }
            leave_cell();
        }
        return {first_row_, false};
    }

private:
    void begin_row() {
        if (!first_row_ && position_ < text_.size()) {
            first_row_ = position_;
        }
        if (form_.weighted) {
            const std::size_t end = std::min(text_.find('\n', position_), text_.size());
            position_ = std::min(text_.find_first_not_of(blanks, position_), end);
            position_ = std::min(text_.find_first_of(blanks, position_), end);
        }
    }

    void skip_blanks() {
        const auto is_blank = [this](char c) { return (c == ' ' || c == '\t') && c != form_.separator; };
        while (position_ < text_.size() && is_blank(text_[position_])) {
            ++position_;
        }
    }

    /// Goes behind the closing quote. False where there is none.
    bool leave_quotes() {
        std::size_t quote = text_.find('"', position_);
        while (quote != std::string_view::npos && text_.substr(quote + 1).starts_with('"')) {
            quote = text_.find('"', quote + 2);
        }
        position_ = std::min(quote, text_.size() - 1) + 1;
        return quote != std::string_view::npos;
    }

    /// Goes behind the separator or the line end.
    void leave_cell() {
        const std::size_t end = text_.find_first_of(ends_of_cell_, position_);
        const bool ends_row = end != std::string_view::npos && text_[end] == '\n';
        position_ = end == std::string_view::npos ? text_.size() : end + 1;
        if (ends_row) {
            begin_row();
        }
    }

    std::string_view text_;
    const RowForm& form_;
    std::string ends_of_cell_;
    std::size_t position_ = 0;
    std::optional<std::size_t> first_row_;
};

}  // namespace

QuotedRows find_quoted_rows(std::string_view text, bool begins_in_quotes, const RowForm& form) {
    if (text.empty()) {
        return {std::nullopt, begins_in_quotes};
    }
    if (text.find('"') == std::string_view::npos) {
        return {begins_in_quotes ? std::nullopt : std::optional<std::size_t>(0), begins_in_quotes};
    }
    return Scan(text, form).run(begins_in_quotes);
}

}  // namespace korv::tools
