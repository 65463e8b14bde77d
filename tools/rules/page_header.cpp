#include "rules/page_header.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "common/quantity.h"
#include "common/shortest_number.h"
#include "common/utf8.h"
#include "engine/rule_catalogue.h"
#include "mine/threshold.h"
#include "rules/accounting.h"
#include "rules/column_facts.h"
#include "rules/json_values.h"
#include "rules/measures.h"
#include "rules/rule_columns.h"
#include "rules/summary_lines.h"

namespace korv::tools {

namespace {

std::string shortest(double number) {
    std::string text;
    append_shortest(number, text);
    return text;
}

std::string without_line_end(std::string text) {
    while (text.ends_with('\n')) {
        text.pop_back();
    }
    return text;
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : ", ") + word;
    }
    return text;
}

/// "at most 6", or "any".
std::string limit_text(std::size_t most) {
    return most == 0 ? "any" : "at most " + with_commas(most);
}

/// An option, and what it is set to, in words.
struct Setting {
    std::string name;
    std::string value;
    std::string option;
};

Count min_support_in_transactions(const RuleRequest& request, Count transactions) {
    return in_transactions(request.min_support, "--min-support", 0, transactions);
}

std::string text_of_min_support(const RuleRequest& request, Count transactions) {
    const std::string text = text_of(request.min_support);
    return request.min_support.is_percentage
               ? text + ", which is " +
                     counted(min_support_in_transactions(request, transactions), "transaction")
               : text;
}

std::string text_of_min_lift(const RuleRequest& request) {
    if (!request.min_lift) {
        return "more than 1";
    }
    return *request.min_lift == 0 ? "any" : "at least " + shortest(*request.min_lift);
}

std::vector<Setting> settings_of_choice(const RuleRequest& request) {
    std::vector<Setting> settings;
    for (const PatternWord& pattern : request.patterns) {
        settings.push_back(
            {pattern.is_wanted ? "only rules with" : "no rules with", pattern.text, pattern.option});
    }
    std::vector<std::string> forms;
    for (const Form form : request.forms) {
        forms.emplace_back(description(form).label);
    }
    std::vector<std::string> kinds;
    for (const Certainty kind : request.kinds) {
        kinds.emplace_back(name_of(kind));
    }
    for (const Setting& each : {Setting{"only the forms", joined(forms), "--forms"},
                                Setting{"only the kinds", joined(kinds), "--kinds"},
                                Setting{"only rules of which this holds", request.where, "--where"}}) {
        if (!each.value.empty()) {
            settings.push_back(each);
        }
    }
    return settings;
}

std::vector<Setting> settings(const RuleRequest& request, const Accounting& accounting, Count transactions) {
    std::vector<Setting> all = {
        {"smallest support", text_of_min_support(request, transactions), "--min-support"},
        {"smallest confidence", shortest(request.min_confidence), "--min-confidence"},
        {"lift", text_of_min_lift(request), "--min-lift"},
        {"items of both sides together", limit_text(request.max_items), "--max-items"},
        {"items of the premise", limit_text(request.max_premise_items), "--max-if"},
        {"items of the conclusion", limit_text(request.max_conclusion_items), "--max-then"},
    };
    std::ranges::move(settings_of_choice(request), std::back_inserter(all));
    const auto* const prune =
        std::ranges::find(prunes, accounting.prune, [](auto each) { return each.second; });
    all.push_back({"sides worded by",
                   request.wording == Wording::shortest ? "the fewest items that say the same"
                                                        : "all items as korv writes them",
                   "--wording"});
    all.push_back({"rules of an association", request.readings == Readings::one ? "the best one" : "all",
                   "--readings"});
    all.push_back({"weaker rules are left out", std::string(prune->first), "--prune"});
    all.push_back({"rules of a conclusion", limit_text(request.per_conclusion), "--per-conclusion"});
    return all;
}

std::string_view word_for(Course course) {
    switch (course) {
        case Course::turns_at_chance:
            return "chance";
        case Course::turns_at_equal_sides:
            return "equal_sides";
        case Course::monotonic:
            break;
    }
    return "";
}

/// Writes the header, member by member.
class Header {
public:
    explicit Header(const PageContents& page)
        : page_(page), accounting_(page.found.accounting), request_(page.origin.request) {}

    std::string text() {
        json_.StartObject();
        add("format", std::uint64_t{page_format});
        add("program", "korv-rules " KORV_VERSION);
        add("title", page_.origin.names_of_inputs);
        add("transactions", std::uint64_t{page_.book.transactions});
        add_rules();
        add_run();
        add_summary();
        add_measures();
        add_forms();
        add_items();
        add_columns();
        add_sides();
        add_lattice();
        add_exclusions();
        add_holdout();
        add_arrays();
        json_.EndObject();
        return {text_.GetString(), text_.GetSize()};
    }

private:
    void add(std::string_view key, std::uint64_t number) {
        add_key(key, json_);
        json_.Uint64(number);
    }

    void add(std::string_view key, double number) {
        add_key(key, json_);
        json_.Double(number);
    }

    void add(std::string_view key, bool value) {
        add_key(key, json_);
        json_.Bool(value);
    }

    void add(std::string_view key, std::string_view text) {
        add_key(key, json_);
        add_string(valid_utf8(text), json_);
    }

    void add(std::string_view key, const char* text) { add(key, std::string_view(text)); }

    /// `add_each` adds the value of an element.
    template <typename Range, typename AddEach>
    void add_list(std::string_view key, const Range& range, const AddEach& add_each) {
        add_key(key, json_);
        json_.StartArray();
        for (const auto& each : range) {
            add_each(each);
        }
        json_.EndArray();
    }

    /// `add_members` adds those of an element, which is an object.
    template <typename Range, typename AddMembers>
    void add_objects(std::string_view key, const Range& range, const AddMembers& add_members) {
        add_list(key, range, [&](const auto& each) {
            json_.StartObject();
            add_members(each);
            json_.EndObject();
        });
    }

    template <typename AddMembers>
    void add_object(std::string_view key, const AddMembers& add_members) {
        add_key(key, json_);
        json_.StartObject();
        add_members();
        json_.EndObject();
    }

    void add_rules() {
        add_object("rules", [this] {
            add("count", std::uint64_t{page_.found.rules.size()});
            add("left", accounting_.left() + accounting_[Step::top]);
            add("limit", std::uint64_t{request_.page_limit});
            add("min_support", std::uint64_t{min_support_in_transactions(request_, page_.book.transactions)});
            add("min_confidence", request_.min_confidence);
            add("sort", name_of(request_.sort));
            add("ascending", request_.is_ascending);
            add("left_out_by_limit", accounting_[Step::top]);
            add("limit_option", beyond_text(accounting_, request_));
        });
    }

    void add_run() {
        add_object("run", [this] {
            add("options", page_.origin.options);
            add_list("notes", page_.origin.notes,
                     [this](const std::string& each) { add_string(valid_utf8(each), json_); });
            add_objects("settings", settings(request_, accounting_, page_.book.transactions),
                        [this](const Setting& each) {
                            add("name", each.name);
                            add("value", each.value);
                            add("option", each.option);
                        });
        });
    }

    void add_summary() {
        add_object("summary", [this] {
            add("derived", accounting_.derived);
            add("origin", origin_text(accounting_));
            add_objects("left_out", step_lines(accounting_, request_), [this](const SummaryLine& line) {
                add("count", line.number);
                add("what", line.what);
                add("options", line.option);
            });
            add("note", without_line_end(closing_note(accounting_, request_)));
        });
    }

    void add_measures() {
        std::vector<FurtherMeasure> shown = usual_measures();
        std::ranges::move(further_measures(page_.book), std::back_inserter(shown));
        add_list("shown_measures", shown,
                 [this](const FurtherMeasure& each) { add_string(each.name, json_); });
        std::array<Measure, number_of_measures> all = {};
        for (std::size_t i = 0; i < all.size(); ++i) {
            all[i] = static_cast<Measure>(i);
        }
        add_objects("measures", all, [this](Measure each) {
            const MeasureExplanation told = explanation(each);
            add("name", name_of(each));
            add("formula", told.formula);
            add("explanation", told.says);
            add("turns", word_for(told.course));
        });
        add("symbols", letters_of_formulas());
    }

    void add_forms() {
        add_objects("forms", rule_catalogue, [this](const FormDescription& each) {
            add("label", each.label);
            add("text", each.text);
            add("group", std::uint64_t{group(each.form)});
            add("premise_negated", premise(each.form).mode == Mode::negation);
            add("conclusion_negated", conclusion(each.form).mode == Mode::negation);
        });
        add_list("groups", form_groups, [this](std::string_view each) { add_string(each, json_); });
    }

    void add_items() {
        add_object("items", [this] {
            add("count", std::uint64_t{page_.items.all().size()});
            add("left_out", std::uint64_t{page_.items_left_out});
            add_list("names", page_.items.all(), [this](Item item) {
                const auto& names = page_.book.names.all();
                const auto found = names.find(item);
                if (found == names.end()) {
                    json_.Null();
                } else {
                    add_string(valid_utf8(found->second), json_);
                }
            });
        });
    }

    /// The columns of which the page has items: at least two, or all of one that is exhaustive.
    void add_columns() {
        const ColumnFacts nothing_known;
        const ColumnFacts& facts = page_.book.columns != nullptr ? *page_.book.columns : nothing_known;
        add_key("columns", json_);
        json_.StartArray();
        for (const ItemNames::Column& column : page_.book.names.columns()) {
            Itemset items;
            std::ranges::set_intersection(column.items, page_.items.all(), std::back_inserter(items));
            if (!items.empty()) {
                add_column(column, items, facts);
            }
        }
        json_.EndArray();
    }

    void add_column(const ItemNames::Column& column, const Itemset& items, const ColumnFacts& facts) {
        // What the facts say of two values of a column holds for all of them.
        const ItemSpan one(column.items.data(), 1);
        const ItemSpan other(column.items.data() + 1, 1);
        json_.StartObject();
        add("name", valid_utf8(column.name));
        add_list("items", items, [this](Item item) { json_.Uint(page_.items.position(item)); });
        add("exclusive", facts.imply({one, false}, {other, true}));
        add("exhaustive", !facts.worded(one).rest.empty());
        json_.EndObject();
    }

    void add_sides() {
        add_object("sides", [this] {
            add("count", std::uint64_t{page_.sides.all().size()});
            add("plain", std::uint64_t{page_.sides.plain()});
        });
    }

    void add_lattice() {
        add_object("lattice", [this] {
            const std::uint64_t all = page_.found.lattice.size();
            add("classes", all);
            add("shown", std::uint64_t{page_.classes_shown});
            add("why", why_not_all_classes());
        });
    }

    std::string why_not_all_classes() const {
        if (accounting_.rule_files > 0) {
            return "The rules come from rule files, which do not hold the classes.";
        }
        if (page_.classes_shown < page_.found.lattice.size()) {
            return "There is room for " + with_commas(page_.classes_shown) + " of " +
                   counted(page_.found.lattice.size(), "class", "es") +
                   ": those of the first rules with their neighbours.";
        }
        return "";
    }

    void add_exclusions() {
        add_object("exclusions", [this] {
            const std::optional<ExclusionResult>& found = page_.origin.exclusions;
            add("known", found.has_value());
            add("shown", found ? std::uint64_t{found->exclusions.size()} : 0);
            add("left_out", found ? found->accounting[ExclusionStep::top] : 0);
            add("alpha", ExclusionRequest().alpha);
            add("why",
                found ? ""
                      : "How often two items are together is counted in the transactions, which were not "
                        "at hand: --database FILE names them.");
        });
    }

    void add_holdout() {
        const std::optional<Database>& holdout = page_.origin.input.holdout;
        if (holdout) {
            add_object("holdout", [this, &holdout] {
                add("transactions", std::uint64_t{holdout->transactions});
                add("alpha", request_.alpha);
            });
        }
    }

    void add_arrays() {
        const std::vector<std::size_t> offsets = page_.arrays.offsets();
        auto offset = offsets.begin();
        add_objects("arrays", page_.arrays.all(), [&](const PageArray& array) {
            add("name", array.name);
            add("type", array.type);
            add("length", std::uint64_t{array.length});
            add("offset", std::uint64_t{*offset++});
            if (array.coding.in_planes) {
                add("layout", "planes");
            }
            if (array.coding.has_deltas) {
                add("delta", true);
            }
        });
    }

    const PageContents& page_;
    const Accounting& accounting_;
    const RuleRequest& request_;
    rapidjson::StringBuffer text_;
    JsonWriter json_{text_};
};

}  // namespace

std::string page_header(const PageContents& page) {
    return Header(page).text();
}

}  // namespace korv::tools
