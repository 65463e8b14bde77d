#include "rules/table_writer.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "rules/display_text.h"
#include "rules/number_words.h"
#include "rules/rule_columns.h"
#include "rules/side_words.h"

namespace korv::tools {

namespace {

constexpr SideStyle style_of_sides = {.is_printable = true, .most_items = 6, .most_columns = 40};
constexpr std::string_view arrow = " => ";
constexpr std::string_view gap = "  ";
constexpr std::string_view bold = "\x1B[1m";
constexpr std::string_view not_bold = "\x1B[22m";
/// Rules in a narrower column are hard to read.
constexpr std::size_t narrowest_rule = 24;

std::size_t blanks_less(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, [](char each) { return each != ' '; }));
}

/// Where what is no blank begins behind the first `letters` bytes that are no blanks; the size of the text
/// where it has no more of them.
std::size_t end_of(std::size_t letters, std::string_view text) {
    std::size_t end = 0;
    for (; end < text.size() && (letters > 0 || text[end] == ' '); ++end) {
        letters -= text[end] == ' ' ? 0U : 1U;
    }
    return end;
}

struct Row {
    std::string rule;
    std::size_t premise_letters = 0;   ///< bytes of the premise and the arrow, without blanks
    std::vector<std::string> numbers;  ///< by column
    std::vector<std::string> lines;    ///< of the rule, in a table
};

std::string share_cell(double share) {
    return std::isnan(share) ? measure_text(share) : distinct_text(share, 3);
}

std::string lift_cell(double lift) {
    return lift < 999.5 ? distinct_text(lift, 2) : measure_text(lift);
}

std::string leverage_cell(double leverage) {
    return std::isnan(leverage) ? measure_text(leverage) : distinct_text(leverage, 4);
}

using CellOfNumber = std::string (*)(double number);

class TableWriter final : public RuleWriter {
public:
    TableWriter(const RuleBook& book, const TerminalStyle& style, TextSink sink)
        : book_(book),
          further_(further_measures(book)),
          style_(style),
          sides_([this](Side side, std::string& text) { text += side_text(side, book_, style_of_sides); }),
          sink_(std::move(sink)) {
        for (const Measure each : {Measure::confidence, Measure::lift, Measure::support, Measure::leverage}) {
            titles_.emplace_back(name_of(each));
        }
        for (const FurtherMeasure& each : further_) {
            titles_.push_back(each.name);
        }
        for (const std::string& title : titles_) {
            widths_.push_back(title.size());
        }
    }

    void write(const FoundRule& rule) override {
        Row row;
        row.rule.append(sides_.of(rule.premise)).append(arrow);
        row.premise_letters = blanks_less(row.rule);
        row.rule += sides_.of(rule.conclusion);
        row.numbers = numbers(rule);
        rows_.push_back(std::move(row));
        constexpr std::size_t most_kept = 1000;
        if (rows_.size() == most_kept) {
            flush();
        }
    }

    void finish() override { flush(); }

private:
    std::vector<std::string> numbers(const FoundRule& rule) const {
        const auto cell = [&](Measure measure, CellOfNumber text) {
            const auto [low, high] = bounds_of(measure, rule, book_.transactions);
            return range_text(text(low), text(high));
        };
        std::vector<std::string> numbers = {
            cell(Measure::confidence, share_cell), cell(Measure::lift, lift_cell),
            count_text(range_of(rule, &Contingency::both)), cell(Measure::leverage, leverage_cell)};
        for (const FurtherMeasure& each : further_) {
            numbers.push_back(cell(each.measure, measure_text));
        }
        return numbers;
    }

    /// Writes the rows that were kept.
    void flush() {
        if (rows_.empty()) {
            return;
        }
        const std::size_t room = widen_columns();
        if (room >= narrowest_rule) {
            fit_rules(room);
        }
        text_.clear();
        for (const Row& row : rows_) {
            if (room >= narrowest_rule) {
                add_line_header();
                add_row(row);
            } else {
                add_block(row);
            }
        }
        rows_.clear();
        sink_(text_);
    }

    /// Makes the columns as wide as the rows need. Returns how many are left for the rules.
    std::size_t widen_columns() {
        number_width_ = std::max(number_width_, std::to_string(id_ + rows_.size()).size());
        std::size_t taken = number_width_ + gap.size();
        for (std::size_t i = 0; i < widths_.size(); ++i) {
            for (const Row& row : rows_) {
                widths_[i] = std::max(widths_[i], row.numbers[i].size());
            }
            taken += gap.size() + widths_[i];
        }
        return style_.width - std::min(taken, style_.width);
    }

    /// The widest line of a rule that has so many columns, but the column is never narrower than before.
    void fit_rules(std::size_t room) {
        rule_width_ = std::min(std::max(rule_width_, title_of_rules.size()), room);
        for (Row& row : rows_) {
            row.lines = rule_lines(row.rule, room);
            for (const std::string& line : row.lines) {
                rule_width_ = std::max(rule_width_, display_width(line));
            }
        }
    }

    void add_line_header() {
        if (has_header_) {
            return;
        }
        has_header_ = true;
        std::string line = right_aligned("#", number_width_);
        line.append(gap).append(left_aligned(title_of_rules, rule_width_));
        add_cells(titles_, line);
        text_ += style_.has_color ? std::string(bold) + line + std::string(not_bold) : line;
        text_ += '\n';
    }

    void add_row(const Row& row) {
        std::size_t letters = row.premise_letters;
        for (std::size_t i = 0; i < row.lines.size(); ++i) {
            text_ += i == 0 ? right_aligned(std::to_string(++id_), number_width_)
                            : std::string(number_width_, ' ');
            text_ += gap;
            add_rule_line(row.lines[i], letters);
            if (i == 0) {
                text_.append(rule_width_ - std::min(display_width(row.lines[i]), rule_width_), ' ');
                add_cells(row.numbers, text_);
            }
            text_ += '\n';
        }
    }

    /// The lines of a rule, those behind the first one a little to the right.
    static std::vector<std::string> rule_lines(const std::string& rule, std::size_t width) {
        constexpr std::size_t indent = 2;
        if (display_width(rule) <= width) {
            return {rule};
        }
        std::vector<std::string> lines = wrapped(rule, width - indent);
        for (std::size_t i = 1; i < lines.size(); ++i) {
            lines[i].insert(0, indent, ' ');
        }
        return lines;
    }

    /// Adds a line of a rule, of which the first `letters` bytes that are no blanks belong to the premise or
    /// the arrow. Takes them off.
    void add_rule_line(std::string_view line, std::size_t& letters) {
        const std::size_t end = end_of(letters, line);
        letters -= blanks_less(line.substr(0, end));
        if (!style_.has_color || end == line.size()) {
            text_ += line;
            return;
        }
        text_.append(line.substr(0, end)).append(bold).append(line.substr(end)).append(not_bold);
    }

    void add_cells(const std::vector<std::string>& cells, std::string& line) const {
        for (std::size_t i = 0; i < cells.size(); ++i) {
            line.append(gap).append(right_aligned(cells[i], widths_[i]));
        }
    }

    /// A rule where the terminal is too narrow for a table: its numbers, with their names, stand below it.
    void add_block(const Row& row) {
        constexpr std::size_t least_width = 20;
        const std::string number = right_aligned(std::to_string(++id_), number_width_) + std::string(gap);
        const std::string indent(number.size(), ' ');
        const std::size_t width = std::max(style_.width, indent.size() + least_width) - indent.size();
        std::size_t letters = row.premise_letters;
        const std::string* before = &number;
        for (const std::string& line : rule_lines(row.rule, width)) {
            text_ += *before;
            add_rule_line(line, letters);
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

    static constexpr std::string_view title_of_rules = "rule";

    const RuleBook book_;
    const std::vector<FurtherMeasure> further_;
    const TerminalStyle style_;
    SideTexts sides_;
    TextSink sink_;
    std::vector<std::string> titles_;  ///< of the columns of numbers
    std::vector<std::size_t> widths_;  ///< of the same columns
    std::size_t number_width_ = 1;
    std::size_t rule_width_ = 0;
    bool has_header_ = false;
    std::vector<Row> rows_;
    std::string text_;
    std::uint64_t id_ = 0;
};

}  // namespace

std::unique_ptr<RuleWriter> table_writer(const RuleBook& book, const TerminalStyle& style, TextSink sink) {
    return std::make_unique<TableWriter>(book, style, std::move(sink));
}

}  // namespace korv::tools
