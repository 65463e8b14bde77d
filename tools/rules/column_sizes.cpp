#include "rules/column_sizes.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string>
#include <string_view>

#include "rules/delimited_writer.h"
#include "rules/json_writer.h"
#include "rules/side_words.h"
#include "rules/size_count.h"

namespace korv::tools {

namespace {

std::size_t bytes_of_number(std::uint64_t number) {
    std::size_t digits = 1;
    for (; number >= 10; number /= 10) {
        ++digits;
    }
    return digits;
}

/// The size of what append_shortest makes of a number.
std::size_t bytes_of_number(double number) {
    std::array<char, 32> digits;
    const char* const last = std::to_chars(digits.data(), digits.data() + digits.size(), number + 0.0).ptr;
    return static_cast<std::size_t>(last - digits.data());
}

/// What a writer writes before any rule.
std::uint64_t bytes_of_header(RuleFormat format, const RuleBook& book) {
    std::uint64_t bytes = 0;
    rule_writer(format, book, {}, counting_sink(bytes))->finish();
    return bytes;
}

}  // namespace

/// Counts the cells and members of a rule. Each has a separator behind it; the last one is the line end.
class ColumnSizes::Columns {
public:
    Columns(const NumberedRule& rule, ColumnSizes& sizes) : rule_(rule), sizes_(sizes) {}

    template <typename Value>
    void one(std::string_view name, const Value& value) {
        add(name, value(rule_));
    }

    template <typename Value>
    void range(std::string_view name, std::string_view name_of_most, const Value& value) {
        const auto [low, high] = value(rule_);
        add(name, low);
        add(name_of_most, high);
    }

    template <typename Value>
    void side(std::string_view name, const Value& value) {
        const SideBytes& bytes = sizes_.bytes_of(value(rule_));
        add(name, bytes.csv, bytes.tsv, bytes.jsonl);
    }

private:
    void add(std::string_view name, std::size_t csv, std::size_t tsv, std::size_t jsonl) {
        ColumnBytes& bytes = sizes_.bytes_;
        bytes.csv += csv + 1;
        bytes.tsv += tsv + 1;
        bytes.jsonl += std::string_view("\"\":,").size() + name.size() + jsonl;
    }

    void add(std::string_view name, std::string_view word) {
        add(name, word.size(), word.size(), word.size() + 2);
    }

    void add(std::string_view name, std::uint64_t number) {
        const std::size_t digits = bytes_of_number(number);
        add(name, digits, digits, digits);
    }

    void add(std::string_view name, Count number) { add(name, std::uint64_t{number}); }

    void add(std::string_view name, double number) {
        if (std::isnan(number)) {
            add(name, 0, 0, std::string_view("null").size());
            return;
        }
        if (number != last_) {  // most numbers come twice, as both ends of their range
            digits_ = bytes_of_number(number);
            last_ = number;
        }
        add(name, digits_, digits_, std::isinf(number) ? digits_ + 2 : digits_);
    }

    const NumberedRule& rule_;
    ColumnSizes& sizes_;
    double last_ = std::nan("");  // equal to none
    std::size_t digits_ = 0;      ///< of `last_`
};

ColumnSizes::ColumnSizes(const RuleBook& book)
    : book_(book),
      further_(further_measures(book)),
      sides_(book.itemsets.size() * 2),
      bytes_{bytes_of_header(RuleFormat::csv, book), bytes_of_header(RuleFormat::tsv, book),
             bytes_of_header(RuleFormat::jsonl, book)} {}

void ColumnSizes::add(const FoundRule& rule) {
    for_each_column(further_, book_, Columns({++id_, rule, book_}, *this));
    // Braces and the line end, but no comma behind the last member.
    bytes_.jsonl += std::string_view("{}\n").size() - 1;
}

const ColumnSizes::SideBytes& ColumnSizes::bytes_of(Side side) {
    SideBytes& bytes = sides_[std::size_t{side.itemset()} * 2 + (side.is_negated() ? 1 : 0)];
    if (bytes.csv == 0) {
        const std::string text = side_text(side, book_, {});
        bytes = {static_cast<std::uint32_t>(csv_cell(text).size()),
                 static_cast<std::uint32_t>(tsv_cell(text).size()),
                 static_cast<std::uint32_t>(json_side(side, book_).size())};
    }
    return bytes;
}

}  // namespace korv::tools
