#include "rules/delimited_writer.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "common/shortest_number.h"
#include "rules/rule_columns.h"
#include "rules/side_words.h"

namespace korv::tools {

namespace {

/// Whether a spreadsheet would take the cell for a formula, or whether it looks as if that had been
/// prevented.
bool needs_apostrophe(std::string_view cell) {
    const std::size_t first = cell.find_first_not_of('\'');
    return first != std::string_view::npos &&
           std::string_view("=+-@\t\r\n").find(cell[first]) != std::string_view::npos;
}

std::string guarded(std::string_view cell) {
    return (needs_apostrophe(cell) ? "'" : "") + std::string(cell);
}

using CellOfSide = std::string (*)(std::string_view side);

/// Appends cells to a row, each with a separator behind it.
class Row {
public:
    Row(const NumberedRule& rule, SideTexts& sides, char separator, std::string& text)
        : rule_(rule), sides_(sides), separator_(separator), text_(text) {}

    template <typename Value>
    void one(std::string_view /*name*/, const Value& value) {
        add(value(rule_));
    }

    template <typename Value>
    void range(std::string_view /*name*/, std::string_view /*name_of_most*/, const Value& value) {
        const auto [low, high] = value(rule_);
        const std::size_t begin = text_.size();
        add(low);
        if (low == high) {
            text_.append(text_, begin);  // which is faster than making it twice
        } else {
            add(high);
        }
    }

    template <typename Value>
    void side(std::string_view /*name*/, const Value& value) {
        add(std::string_view(sides_.of(value(rule_))));
    }

private:
    void add(std::string_view word) {
        text_ += word;
        text_ += separator_;
    }

    void add(std::uint64_t number) {
        append_shortest(number, text_);
        text_ += separator_;
    }

    void add(Count number) { add(std::uint64_t{number}); }

    void add(double number) {
        if (!std::isnan(number)) {
            append_shortest(number, text_);
        }
        text_ += separator_;
    }

    const NumberedRule& rule_;
    SideTexts& sides_;
    char separator_;
    std::string& text_;
};

/// Appends the names of the columns in the same way.
class Header {
public:
    Header(char separator, std::string& text) : separator_(separator), text_(text) {}

    template <typename Value>
    void one(std::string_view name, const Value& /*value*/) {
        add(name);
    }

    template <typename Value>
    void range(std::string_view name, std::string_view name_of_most, const Value& /*value*/) {
        add(name);
        add(name_of_most);
    }

    template <typename Value>
    void side(std::string_view name, const Value& /*value*/) {
        add(name);
    }

private:
    void add(std::string_view name) {
        text_ += name;
        text_ += separator_;
    }

    char separator_;
    std::string& text_;
};

class DelimitedWriter final : public RuleWriter {
public:
    DelimitedWriter(const RuleBook& book, TextSink sink, char separator, CellOfSide cell)
        : book_(book),
          further_(further_measures(book)),
          separator_(separator),
          sides_([this, cell](Side side, std::string& text) { text += cell(side_text(side, book_, {})); }),
          sink_(std::move(sink)) {
        for_each_column(further_, book_, Header(separator_, text_));
        end_line();
    }

    void write(const FoundRule& rule) override {
        for_each_column(further_, book_, Row({++id_, rule, book_}, sides_, separator_, text_));
        end_line();
        constexpr std::size_t most_kept = 1 << 16;
        if (text_.size() >= most_kept) {
            finish();
        }
    }

    void finish() override {
        sink_(text_);
        text_.clear();
    }

private:
    /// The last cell has its separator already.
    void end_line() { text_.back() = '\n'; }

    const RuleBook book_;
    const std::vector<FurtherMeasure> further_;
    const char separator_;
    SideTexts sides_;
    TextSink sink_;
    std::string text_;
    std::uint64_t id_ = 0;
};

}  // namespace

std::unique_ptr<RuleWriter> csv_writer(const RuleBook& book, TextSink sink) {
    return std::make_unique<DelimitedWriter>(book, std::move(sink), ',', csv_cell);
}

std::unique_ptr<RuleWriter> tsv_writer(const RuleBook& book, TextSink sink) {
    return std::make_unique<DelimitedWriter>(book, std::move(sink), '\t', tsv_cell);
}

std::string csv_cell(std::string_view side) {
    std::string cell = guarded(side);
    if (cell.find_first_of(",\"\r\n") == std::string::npos) {
        return cell;
    }
    std::string quoted = "\"";
    for (const char each : cell) {
        quoted += each;
        if (each == '"') {
            quoted += '"';
        }
    }
    return quoted + '"';
}

std::string tsv_cell(std::string_view side) {
    std::string cell;
    for (const char each : side) {
        switch (each) {
            case '\t':
                cell += "\\t";
                break;
            case '\n':
                cell += "\\n";
                break;
            case '\r':
                cell += "\\r";
                break;
            case '\\':
                cell += "\\\\";
                break;
            default:
                cell += each;
        }
    }
    return guarded(cell);
}

}  // namespace korv::tools
