#include "rules/exclusion_writer.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/quantity.h"
#include "common/shortest_number.h"
#include "common/utf8.h"
#include "rules/aligned_table.h"
#include "rules/delimited_writer.h"
#include "rules/display_text.h"
#include "rules/found_rule.h"
#include "rules/json_values.h"
#include "rules/number_words.h"
#include "rules/rule_columns.h"
#include "rules/side_words.h"

namespace korv::tools {

namespace {

/// Text is passed on in pieces of about this size.
constexpr std::size_t most_kept = 1 << 16;

/// One of the rules that the two items of a pair make.
struct PairRule {
    std::string_view column;
    std::size_t premise;  ///< 0 or 1: which item is the premise; the other one is the conclusion
    bool is_premise_negated;
};

constexpr std::array<PairRule, 4> pair_rules = {{
    {"a_not_b", 0, false},
    {"b_not_a", 1, false},
    {"not_a_b", 0, true},
    {"not_b_a", 1, true},
}};

/// How often the conclusion holds where the premise does: if the one item, then not the other, or the other
/// way round.
double confidence(const Exclusion& pair, const PairRule& rule, Count transactions) {
    const Count premise = pair.counts[rule.premise];
    const Count conclusion = pair.counts[1 - rule.premise];
    return rule.is_premise_negated
               ? static_cast<double>(conclusion - pair.together) / (transactions - premise)
               : static_cast<double>(premise - pair.together) / premise;
}

/// Says items as sides of rules.
class ItemTexts {
public:
    ItemTexts(const RuleBook& book, const SideStyle& style) : book_(book), style_(style) {}

    std::string of(Item item, bool is_negated = false) const {
        return side_text({*book_.itemsets.find(ItemSpan(&item, 1)), is_negated}, book_, style_);
    }

    /// All items of an exclusion: "a and b"; of three with a comma between the first two, or else a word.
    std::string joined(const Exclusion& exclusion, std::string_view first_of_three) const {
        std::string text;
        for (std::size_t i = 0; i < exclusion.size; ++i) {
            const bool is_last = i + 1 == exclusion.size;
            text += i == 0 ? "" : is_last ? " and " : first_of_three;
            text += of(exclusion.numbers[i]);
        }
        return text;
    }

private:
    const RuleBook& book_;
    const SideStyle style_;
};

/// "in no transaction", "in 1 transaction", "in 3 transactions".
std::string in_transactions(Count number) {
    const std::string count = number == 0 ? "no" : with_commas(number);
    return "in " + count + (number < 2 ? " transaction" : " transactions");
}

class WordsOfExclusions final : public ExclusionWriter {
public:
    WordsOfExclusions(RuleBook book, double min_confidence, std::size_t width, TextSink sink)
        : book_(std::move(book)),
          items_(book_, {.is_printable = true}),
          min_confidence_(min_confidence),
          width_(width),
          sink_(std::move(sink)) {}

    void write(const Exclusion& exclusion) override {
        const std::string number = std::to_string(++id_) + ". ";
        const std::string indent(number.size(), ' ');
        std::string text = id_ == 1 ? "" : "\n";
        append_paragraph(number, indent, sentence(exclusion), width_, text);
        append_paragraph(indent, indent, rules(exclusion), width_, text);
        sink_(text);
    }

    void finish() override {}

private:
    std::string sentence(const Exclusion& exclusion) const {
        const double expected = exclusion.expected(book_.transactions);
        return items_.joined(exclusion, ", ") + what_they_do(exclusion, expected) +
               in_transactions(exclusion.together) + ", " + measure_text(expected) +
               " expected; one of them is in " +
               percent_text(static_cast<double>(exclusion.covered) / book_.transactions);
    }

    static std::string what_they_do(const Exclusion& exclusion, double expected) {
        constexpr double largest_share_to_exclude = 0.25;
        if (exclusion.size > 2) {
            return " are seldom together, though each two of them are: all three ";
        }
        return exclusion.together <= largest_share_to_exclude * expected ? " exclude each other: together "
                                                                         : " avoid each other: together ";
    }

    std::string rules(const Exclusion& exclusion) const {
        std::string text;
        for (const PairRule& rule : pair_rules) {
            if (exclusion.size != 2 || confidence(exclusion, rule, book_.transactions) < min_confidence_) {
                continue;
            }
            text += (text.empty() ? "" : ", ") +
                    items_.of(exclusion.numbers[rule.premise], rule.is_premise_negated) + " => " +
                    items_.of(exclusion.numbers[1 - rule.premise], !rule.is_premise_negated) + " (" +
                    distinct_text(confidence(exclusion, rule, book_.transactions), 3) + ")";
        }
        return text;
    }

    const RuleBook book_;
    const ItemTexts items_;
    const double min_confidence_;
    const std::size_t width_;
    TextSink sink_;
    std::uint64_t id_ = 0;
};

class TableOfExclusions final : public ExclusionWriter {
public:
    TableOfExclusions(RuleBook book, const TerminalStyle& style, TextSink sink)
        : book_(std::move(book)),
          items_(book_, {.is_printable = true, .most_columns = 40}),
          table_("seldom together", {"together", "expected", "covered", "p"}, style, std::move(sink)) {}

    void write(const Exclusion& exclusion) override {
        const std::string text = items_.joined(exclusion, ", ");
        const double covered = static_cast<double>(exclusion.covered) / book_.transactions;
        table_.add({text,
                    bytes_less_blanks(text),
                    {with_commas(exclusion.together), measure_text(exclusion.expected(book_.transactions)),
                     distinct_text(covered, 3), measure_text(exclusion.p)}});
    }

    void finish() override { table_.finish(); }

private:
    const RuleBook book_;
    const ItemTexts items_;
    AlignedTable table_;
};

/// The columns behind the names and the numbers of the items. Calls columns.one(name, value) with a count, or
/// with a number where there is one.
template <typename Columns>
void for_each_number(const Exclusion& exclusion, Count transactions, Columns&& columns) {
    columns.one("size", std::uint64_t{exclusion.size});
    columns.one("together", std::uint64_t{exclusion.together});
    columns.one("expected", std::optional(exclusion.expected(transactions)));
    columns.one("covered", std::uint64_t{exclusion.covered});
    columns.one("transactions", std::uint64_t{transactions});
    columns.one("p", std::optional(exclusion.p));
    for (const PairRule& rule : pair_rules) {
        columns.one(rule.column, exclusion.size == 2
                                     ? std::optional(confidence(exclusion, rule, transactions))
                                     : std::nullopt);
    }
}

using CellOfText = std::string (*)(std::string_view text);

/// Appends cells to a row, each with a separator before it.
class Cells {
public:
    Cells(char separator, std::string& text) : separator_(separator), text_(text) {}

    void one(std::string_view /*name*/, std::uint64_t number) {
        text_ += separator_;
        append_shortest(number, text_);
    }

    void one(std::string_view /*name*/, std::optional<double> number) {
        text_ += separator_;
        if (number) {
            append_shortest(*number, text_);
        }
    }

private:
    char separator_;
    std::string& text_;
};

/// Appends the names of the columns in the same way.
class CellNames {
public:
    CellNames(char separator, std::string& text) : separator_(separator), text_(text) {}

    template <typename Value>
    void one(std::string_view name, const Value& /*value*/) {
        text_ += separator_;
        text_ += name;
    }

private:
    char separator_;
    std::string& text_;
};

class DelimitedExclusions final : public ExclusionWriter {
public:
    DelimitedExclusions(RuleBook book, TextSink sink, char separator, CellOfText cell)
        : book_(std::move(book)),
          items_(book_, {}),
          separator_(separator),
          cell_(cell),
          sink_(std::move(sink)) {
        text_.append("id").append(1, separator).append("items").append(1, separator).append("numbers");
        for_each_number({}, 1, CellNames(separator, text_));
        text_ += '\n';
    }

    void write(const Exclusion& exclusion) override {
        append_shortest(++id_, text_);
        text_.append(1, separator_).append(cell_(items_.joined(exclusion, " and "))).append(1, separator_);
        for (std::size_t i = 0; i < exclusion.size; ++i) {
            text_ += i == 0 ? "" : " ";
            append_shortest(std::uint64_t{exclusion.numbers[i]}, text_);
        }
        for_each_number(exclusion, book_.transactions, Cells(separator_, text_));
        text_ += '\n';
        if (text_.size() >= most_kept) {
            finish();
        }
    }

    void finish() override {
        sink_(text_);
        text_.clear();
    }

private:
    const RuleBook book_;
    const ItemTexts items_;
    const char separator_;
    const CellOfText cell_;
    TextSink sink_;
    std::string text_;
    std::uint64_t id_ = 0;
};

/// Adds members to an object.
class Members {
public:
    explicit Members(JsonWriter& json) : json_(json) {}

    void one(std::string_view name, std::uint64_t number) {
        add_key(name, json_);
        json_.Uint64(number);
    }

    void one(std::string_view name, std::optional<double> number) {
        add_key(name, json_);
        if (!number) {
            json_.Null();
            return;
        }
        std::string digits;
        append_shortest(*number, digits);
        add_raw(digits, rapidjson::kNumberType, json_);
    }

private:
    JsonWriter& json_;
};

class JsonExclusions final : public ExclusionWriter {
public:
    JsonExclusions(RuleBook book, TextSink sink) : book_(std::move(book)), sink_(std::move(sink)) {}

    void write(const Exclusion& exclusion) override {
        JsonWriter json(text_);
        json.StartObject();
        Members members(json);
        members.one("id", ++id_);
        add_key("items", json);
        json.StartArray();
        for (const Item item : exclusion.items()) {
            add_string(valid_utf8(book_.names.name(item)), json);
        }
        json.EndArray();
        add_key("numbers", json);
        json.StartArray();
        for (const Item item : exclusion.items()) {
            json.Uint(item);
        }
        json.EndArray();
        for_each_number(exclusion, book_.transactions, members);
        json.EndObject();
        text_.Put('\n');
        if (text_.GetSize() >= most_kept) {
            finish();
        }
    }

    void finish() override {
        sink_({text_.GetString(), text_.GetSize()});
        text_.Clear();
    }

private:
    const RuleBook book_;
    TextSink sink_;
    rapidjson::StringBuffer text_;
    std::uint64_t id_ = 0;
};

}  // namespace

std::unique_ptr<ExclusionWriter> exclusion_writer(RuleFormat format, const RuleBook& book,
                                                  double min_confidence, const TerminalStyle& style,
                                                  TextSink sink) {
    switch (format) {
        case RuleFormat::words:
            return std::make_unique<WordsOfExclusions>(book, min_confidence, style.width, std::move(sink));
        case RuleFormat::table:
            return std::make_unique<TableOfExclusions>(book, style, std::move(sink));
        case RuleFormat::csv:
            return std::make_unique<DelimitedExclusions>(book, std::move(sink), ',', csv_cell);
        case RuleFormat::tsv:
            return std::make_unique<DelimitedExclusions>(book, std::move(sink), '\t', tsv_cell);
        case RuleFormat::jsonl:
            return std::make_unique<JsonExclusions>(book, std::move(sink));
        case RuleFormat::sqlite:
        case RuleFormat::dot:
        case RuleFormat::html:
            break;
    }
    throw std::invalid_argument("not written one by one");
}

}  // namespace korv::tools
