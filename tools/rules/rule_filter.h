#pragma once

#include <array>
#include <optional>

#include "base/itemset.h"
#include "rules/accounting.h"
#include "rules/column_facts.h"
#include "rules/found_rule.h"
#include "rules/item_choice.h"
#include "rules/rule_request.h"
#include "rules/significance.h"
#include "rules/where.h"

namespace korv::tools {

/// Decides on single rules: which step leaves one out. The steps are asked in their order.
class RuleFilter {
public:
    /// `min_support`: in transactions. `choice` and `where`: what the patterns and the condition of the
    /// request say; `test`: what --test does, where it is asked for.
    RuleFilter(const RuleRequest& request, Count min_support, Count transactions, ItemChoice choice,
               Where where, std::optional<SignificanceTest> test = {});

    /// Whether a rule reaches the minimum support and the minimum confidence, at both ends of its bounds.
    bool reaches_thresholds(const Contingency& at_low, const Contingency& at_high) const;

    /// The first of the steps that look at counts and forms alone: chance, forms and kinds. Nothing where the
    /// rule passes them.
    std::optional<Step> refused_by_counts(Form form, const Contingency& at_low,
                                          const Contingency& at_high) const;

    /// The first of the steps that look at sides: items and size.
    /// Patterns look at the items that the sides name in words, of which `columns` decides.
    std::optional<Step> refused_by_sides(const WordedSide& premise, const WordedSide& conclusion,
                                         const ColumnFacts& columns) const;

    /// The first of the last steps: the condition of --where, and the test. Nothing where the rule passes
    /// them. `premise` and `conclusion`: its sides.
    std::optional<Step> refused_at_last(const FoundRule& rule, const WordedSide& premise,
                                        const WordedSide& conclusion) const;

private:
    bool is_above_chance(const Contingency& table) const;

    Count min_support_;
    double min_confidence_;
    std::optional<double> min_lift_;
    Count transactions_;
    std::array<bool, rule_catalogue.size()> has_form_ = {};
    std::array<bool, all_certainties.size()> has_kind_ = {};
    std::size_t max_items_;
    std::size_t max_premise_items_;
    std::size_t max_conclusion_items_;
    ItemChoice choice_;
    Where where_;
    std::optional<SignificanceTest> test_;
};

}  // namespace korv::tools
