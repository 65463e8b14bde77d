#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "base/itemset.h"
#include "engine/rule_catalogue.h"
#include "rules/confidence.h"
#include "rules/found_rule.h"
#include "rules/measures.h"
#include "rules/rule_order.h"
#include "rules/rule_writer.h"

namespace korv::tools {

/// A count of a rule, as far as it is known.
struct CountRange {
    Count low;
    Count high;

    bool operator==(const CountRange&) const = default;
};

/// The range of one of the counts of a rule, such as &Contingency::both.
inline CountRange range_of(const FoundRule& rule, Count Contingency::*count) {
    const auto [low, high] = std::minmax({rule.at_low.*count, rule.at_high.*count});
    return {low, high};
}

/// A measure with the names of its columns.
struct FurtherMeasure {
    Measure measure;
    std::string name;
    std::string name_of_most;
};

/// The measures of every rule, as their columns are ordered, but for the support, which is told as a count.
const std::vector<FurtherMeasure>& usual_measures();

/// The measures of a book in their order, each once, without the support and the usual ones.
std::vector<FurtherMeasure> further_measures(const RuleBook& book);

/// A rule as it is written.
struct NumberedRule {
    std::uint64_t id;
    const FoundRule& rule;
    const RuleBook& book;
};

/// The columns of csv and tsv, which are the keys of jsonl, in their order. Calls
/// - columns.one(name, value) for a number (std::uint64_t or double) or a word,
/// - columns.range(name, name_of_most, value) for two columns, those of a CountRange or of MeasureBounds,
/// - columns.side(name, value) for a Side,
/// where `value` takes a NumberedRule. A number that is not known, by the book, is NaN. The last ones are
/// there only where the book has what other transactions say.
template <typename Columns>
void for_each_column(const std::vector<FurtherMeasure>& further, const RuleBook& book, Columns&& columns) {
    const Knowledge& known = book.known;
    static constexpr double unknown = std::numeric_limits<double>::quiet_NaN();
    const auto unknown_range = [](const NumberedRule&) { return MeasureBounds{unknown, unknown}; };
    const auto count = [&](Count Contingency::*each, std::string_view name, std::string_view name_of_most) {
        columns.range(name, name_of_most,
                      [each](const NumberedRule& numbered) { return range_of(numbered.rule, each); });
    };
    const auto measures = [&](const std::vector<FurtherMeasure>& all) {
        for (const FurtherMeasure& each : all) {
            if (!known.tells(each.measure)) {
                columns.range(each.name, each.name_of_most, unknown_range);
                continue;
            }
            columns.range(each.name, each.name_of_most, [&each](const NumberedRule& numbered) {
                return bounds_of(each.measure, numbered.rule, numbered.book.transactions);
            });
        }
    };
    columns.one("id", [](const NumberedRule& numbered) { return numbered.id; });
    if (known.has_forms) {
        columns.one("form",
                    [](const NumberedRule& numbered) { return description(numbered.rule.form).label; });
    } else {
        columns.one("form", [](const NumberedRule&) { return unknown; });
    }
    columns.one("kind", [](const NumberedRule& numbered) { return name_of(certainty(numbered.rule)); });
    columns.side("premise", [](const NumberedRule& numbered) { return numbered.rule.premise; });
    columns.side("conclusion", [](const NumberedRule& numbered) { return numbered.rule.conclusion; });
    count(&Contingency::both, "support", "support_max");
    measures(usual_measures());
    count(&Contingency::premise, "premise_count", "premise_count_max");
    if (known.has_conclusion) {
        count(&Contingency::conclusion, "conclusion_count", "conclusion_count_max");
    } else {
        columns.range("conclusion_count", "conclusion_count_max", unknown_range);
    }
    if (known.has_transactions) {
        columns.one("transactions",
                    [](const NumberedRule& numbered) { return std::uint64_t{numbered.book.transactions}; });
    } else {
        columns.one("transactions", [](const NumberedRule&) { return unknown; });
    }
    columns.one("items", [](const NumberedRule& numbered) {
        return std::uint64_t{number_of_items(numbered.rule, numbered.book.itemsets)};
    });
    columns.one("wordings",
                [](const NumberedRule& numbered) { return std::uint64_t{numbered.rule.wordings}; });
    measures(further);
    if (book.holdout == nullptr) {
        return;
    }
    const auto of_holdout = [](const NumberedRule& numbered) -> const HoldoutCounts& {
        return *numbered.book.holdout_of(numbered.id);
    };
    columns.one("holdout_support", [of_holdout](const NumberedRule& numbered) {
        return std::uint64_t{of_holdout(numbered).counts.both};
    });
    columns.one("holdout_confidence", [of_holdout](const NumberedRule& numbered) {
        return Confidence(of_holdout(numbered).counts).value();
    });
    columns.one("holdout_p",
                [of_holdout](const NumberedRule& numbered) { return of_holdout(numbered).surprise; });
}

}  // namespace korv::tools
