#pragma once

#include <vector>

#include "base/itemset.h"
#include "mine/database.h"
#include "rules/found_rule.h"
#include "rules/itemset_pool.h"

namespace korv::tools {

/// What other transactions say of a rule.
struct HoldoutCounts {
    Contingency counts;  ///< there
    double surprise;     ///< -log10 of its p there (see fisher.h), corrected for the number of rules
};

/// Counts rules in other transactions and corrects their p by Holm's method over exactly these rules. The
/// probability that chance brings a single one of them down to some p is then at most that p, however the
/// rules were chosen, as long as these transactions had no part in it. In the order of the rules.
/// O(rules * (lines / 64 * items + log rules)).
std::vector<HoldoutCounts> counts_in_holdout(const std::vector<FoundRule>& rules, const ItemsetPool& itemsets,
                                             const Database& holdout);

/// Corrects surprises (-log10 of p) by Holm's method: the largest of m loses log10 m, the next one
/// log10(m - 1), and so on; none becomes larger than the one before it, nor negative. In the order in which
/// they are given. O(m log m).
std::vector<double> corrected_by_holm(const std::vector<double>& surprises);

/// Leaves the rules out that are not confirmed at the error rate alpha. `rules` and what it returns, the
/// counts of those that stay, have the same order.
std::vector<HoldoutCounts> keep_confirmed(std::vector<FoundRule>& rules, const ItemsetPool& itemsets,
                                          const Database& holdout, double alpha);

}  // namespace korv::tools
