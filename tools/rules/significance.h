#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "base/itemset.h"
#include "rules/column_facts.h"
#include "rules/found_rule.h"

namespace korv::tools {

/// How surprising rules must be so that chance alone would hardly bring a single one of them.
///
/// Every rule that could have been written counts: those of two disjoint sides of i and j of the items, each
/// side plain or negated, of which there are 4 C(items, i) C(items - i, j). The error rate alpha is divided
/// equally among the sizes 2, 3, ... up to the largest, and within a size equally among all its rules. So
/// when items are independent of each other, the probability that any rule at all reaches its level is at
/// most alpha, however rules are looked for, worded and chosen.
class SignificanceLevels {
public:
    /// `alpha`: above 0, at most 1. `items`: of how many sides can be made. `max_items`: how many both sides
    /// have together at most; 0 for any. O(max_items).
    SignificanceLevels(double alpha, std::size_t items, std::size_t max_items);

    /// The surprise that a rule needs which has so many items on both sides together: -log10 of its level
    /// (see fisher.h). Infinite for sizes that no rule can have.
    double needed(std::size_t size) const;

private:
    std::vector<double> needed_;  ///< from size 2 on
};

/// Whether a surprise reaches what is needed, both as -log10. Equal numbers that rounding parts are equal.
bool is_enough(double surprise, double needed);

/// What --test asks of a rule.
class SignificanceTest {
public:
    /// `columns`: those of the table, whatever the wording is.
    SignificanceTest(SignificanceLevels levels, ColumnFacts columns, Count transactions)
        : levels_(std::move(levels)), columns_(std::move(columns)), transactions_(transactions) {}

    /// Whether the test can tell of a rule with these sides. It cannot where both name values of one column,
    /// which exclude each other by nature, whatever the data are.
    bool is_open_to(const WordedSide& premise, const WordedSide& conclusion) const {
        return !columns_.share_a_column(premise.items, conclusion.items);
    }

    /// Whether the rule is more surprising than its level asks, wherever its counts are within their bounds.
    /// `items`: of both sides together.
    bool passes(const FoundRule& rule, std::size_t items) const;

private:
    SignificanceLevels levels_;
    ColumnFacts columns_;
    Count transactions_;
};

}  // namespace korv::tools
