#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "engine/rule_makers.h"
#include "support/collected_rules.h"

// Tables that the tests of the rule makers have in common.

namespace korv::test {

/// A pair's supports and the settings of a run, and the rules that these yield.
struct RuleCase {
    std::string name;
    Count base_support;
    Count support;
    SupportBounds difference_support;
    RuleSettings settings;
    std::vector<Rule> rules;
};

inline void PrintTo(const RuleCase& each, std::ostream* out) {
    *out << each.base_support << " of " << each.support << ", the difference "
         << each.difference_support.lower << " to " << each.difference_support.upper << ", minsupp "
         << each.settings.minsupp << ", minconf " << each.settings.minconf << ", "
         << each.settings.transactions << " transactions";
}

/// Thresholds, and the forms of the rules that pass them.
struct ThresholdCase {
    std::string name;
    Count minsupp;
    double minconf;
    std::vector<Form> forms;
};

inline void PrintTo(const ThresholdCase& each, std::ostream* out) {
    *out << "minsupp " << each.minsupp << ", minconf " << each.minconf;
}

/// The rows of `rules` that are of these forms.
inline std::vector<Rule> rows_of(const std::vector<Form>& forms, const std::vector<Rule>& rules) {
    std::vector<Rule> rows;
    for (const Rule& rule : rules) {
        if (std::ranges::find(forms, rule.form) != forms.end()) {
            rows.push_back(rule);
        }
    }
    return rows;
}

/// What `maker` makes of a pair of these supports.
inline std::vector<Rule> rules_by(void (*maker)(const Pair&, const RuleSettings&, RuleSink&), PairKind kind,
                                  const RuleCase& each, bool is_known) {
    const Itemset base = {1};
    const Itemset difference = {2};
    CollectedRules collected;
    maker({kind, {}, base, difference, each.support, each.base_support, each.difference_support, is_known},
          each.settings, collected);
    return collected.rules;
}

/// 2^32 - `number`: what a difference of supports below 0 becomes.
constexpr Count wrapped(Count number) {
    return 0 - number;
}

inline constexpr double infinity = std::numeric_limits<double>::infinity();

/// The name of a case, for INSTANTIATE_TEST_SUITE_P.
inline constexpr auto name_of_case = [](const auto& instance) { return instance.param.name; };

}  // namespace korv::test
