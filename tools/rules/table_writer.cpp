#include "rules/table_writer.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "rules/aligned_table.h"
#include "rules/number_words.h"
#include "rules/rule_columns.h"
#include "rules/side_words.h"

namespace korv::tools {

namespace {

constexpr SideStyle style_of_sides = {.is_printable = true, .most_items = 6, .most_columns = 40};
constexpr std::string_view arrow = " => ";

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

/// A column of numbers.
struct NumberColumn {
    Measure measure;
    CellOfNumber cell;
};

/// The columns of what can be told. Support, which is told as a count, always is.
std::vector<NumberColumn> columns_of(const RuleBook& book) {
    std::vector<NumberColumn> columns = {{Measure::confidence, share_cell},
                                         {Measure::lift, lift_cell},
                                         {Measure::support, nullptr},
                                         {Measure::leverage, leverage_cell}};
    for (const FurtherMeasure& each : further_measures(book)) {
        columns.push_back({each.measure, measure_text});
    }
    std::erase_if(columns, [&book](const NumberColumn& column) {
        return column.measure != Measure::support && !book.known.tells(column.measure);
    });
    return columns;
}

std::vector<std::string> titles_of(const std::vector<NumberColumn>& columns, const RuleBook& book) {
    std::vector<std::string> titles;
    for (const NumberColumn& column : columns) {
        titles.emplace_back(name_of(column.measure));
    }
    if (book.holdout != nullptr) {
        titles.insert(titles.end(), {"holdout", "holdout_p"});
    }
    return titles;
}

class TableWriter final : public RuleWriter {
public:
    TableWriter(const RuleBook& book, const TerminalStyle& style, TextSink sink)
        : book_(book),
          columns_(columns_of(book)),
          sides_([this](Side side, std::string& text) { text += side_text(side, book_, style_of_sides); }),
          table_("rule", titles_of(columns_, book), style, std::move(sink)) {}

    void write(const FoundRule& rule) override {
        ++id_;
        AlignedTable::Row row;
        row.text.append(sides_.of(rule.premise)).append(arrow);
        row.plain_bytes = bytes_less_blanks(row.text);
        row.text += sides_.of(rule.conclusion);
        row.numbers = numbers(rule);
        table_.add(std::move(row));
    }

    void finish() override { table_.finish(); }

private:
    std::vector<std::string> numbers(const FoundRule& rule) const {
        std::vector<std::string> numbers;
        for (const auto& [measure, cell] : columns_) {
            if (measure == Measure::support) {
                numbers.push_back(count_text(range_of(rule, &Contingency::both)));
                continue;
            }
            const auto [low, high] = bounds_of(measure, rule, book_.transactions);
            numbers.push_back(range_text(cell(low), cell(high)));
        }
        if (const HoldoutCounts* const holdout = book_.holdout_of(id_)) {
            numbers.push_back(holdout_text(*holdout));
            numbers.push_back(measure_text(holdout->surprise));
        }
        return numbers;
    }

    const RuleBook book_;
    const std::vector<NumberColumn> columns_;
    SideTexts sides_;
    AlignedTable table_;
    std::uint64_t id_ = 0;
};

}  // namespace

std::unique_ptr<RuleWriter> table_writer(const RuleBook& book, const TerminalStyle& style, TextSink sink) {
    return std::make_unique<TableWriter>(book, style, std::move(sink));
}

}  // namespace korv::tools
