#include "rules/json_writer.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/shortest_number.h"
#include "common/utf8.h"
#include "rules/json_values.h"
#include "rules/rule_columns.h"
#include "rules/side_words.h"

namespace korv::tools {

namespace {

/// Adds the members of a rule to its object.
class Members {
public:
    Members(const NumberedRule& rule, SideTexts& sides, JsonWriter& json)
        : rule_(rule), sides_(sides), json_(json) {}

    template <typename Value>
    void one(std::string_view name, const Value& value) {
        add_key(name, json_);
        add(value(rule_));
    }

    template <typename Value>
    void range(std::string_view name, std::string_view name_of_most, const Value& value) {
        const auto [low, high] = value(rule_);
        add_key(name, json_);
        add(low);
        add_key(name_of_most, json_);
        add(high);
    }

    template <typename Value>
    void side(std::string_view name, const Value& value) {
        add_key(name, json_);
        add_raw(sides_.of(value(rule_)), rapidjson::kObjectType, json_);
    }

private:
    void add(std::string_view word) { add_string(word, json_); }
    void add(std::uint64_t number) { json_.Uint64(number); }
    void add(Count number) { json_.Uint(number); }

    void add(double number) {
        if (std::isnan(number)) {
            json_.Null();
            return;
        }
        if (number != last_) {  // most numbers come twice, as both ends of their range
            digits_.clear();
            append_shortest(number, digits_);
            last_ = number;
        }
        if (std::isinf(number)) {
            add_string(digits_, json_);
        } else {
            add_raw(digits_, rapidjson::kNumberType, json_);
        }
    }

    double last_ = std::numeric_limits<double>::quiet_NaN();  // equal to none
    std::string digits_;                                      ///< of `last_`
    const NumberedRule& rule_;
    SideTexts& sides_;
    JsonWriter& json_;
};

class JsonLinesWriter final : public RuleWriter {
public:
    JsonLinesWriter(const RuleBook& book, TextSink sink)
        : book_(book),
          further_(further_measures(book)),
          sides_([this](Side side, std::string& text) { text += json_side(side, book_); }),
          sink_(std::move(sink)) {}

    void write(const FoundRule& rule) override {
        json_.Reset(text_);
        json_.StartObject();
        for_each_column(further_, book_, Members({++id_, rule, book_}, sides_, json_));
        json_.EndObject();
        text_.Put('\n');
        constexpr std::size_t most_kept = 1 << 16;
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
    const std::vector<FurtherMeasure> further_;
    SideTexts sides_;
    TextSink sink_;
    rapidjson::StringBuffer text_;
    JsonWriter json_{text_};
    std::uint64_t id_ = 0;
};

}  // namespace

std::unique_ptr<RuleWriter> json_writer(const RuleBook& book, TextSink sink) {
    return std::make_unique<JsonLinesWriter>(book, std::move(sink));
}

std::string json_side(Side side, const RuleBook& book) {
    const ItemSpan items = book.itemsets[side.itemset()];
    rapidjson::StringBuffer text;
    JsonWriter json(text);
    json.StartObject();
    add_key(side.is_negated() ? "none" : "any", json);
    json.StartArray();
    for (const Item item : items) {
        add_string(valid_utf8(book.names.name(item)), json);
    }
    json.EndArray();
    add_key("items", json);
    json.StartArray();
    for (const Item item : items) {
        json.Uint(item);
    }
    json.EndArray();
    json.EndObject();
    return {text.GetString(), text.GetSize()};
}

}  // namespace korv::tools
