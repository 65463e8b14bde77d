#pragma once

#include "base/itemset.h"
#include "index/bounds_cache.h"
#include "mine/database.h"
#include "rules/column_facts.h"
#include "rules/found_rule.h"
#include "rules/support_counter.h"

namespace korv::tools {

/// Counts rules in transactions, from the supports of their sides and of both together (see SupportCounter).
/// Many rules have sides in common, whose supports are remembered, in bounded memory.
class RuleCounter {
public:
    /// Refers to the transactions.
    explicit RuleCounter(const Database& database);

    /// How many transactions meet the sides of a rule.
    Contingency count(const WordedSide& premise, const WordedSide& conclusion);

private:
    Count support(ItemSpan itemset);

    SupportCounter counter_;
    Count transactions_;
    BoundsCache known_;  ///< supports, as both bounds
    Itemset union_;      ///< working space
};

}  // namespace korv::tools
