#pragma once

#include "base/itemset.h"
#include "mine/database.h"
#include "rules/found_rule.h"
#include "rules/rule_file.h"
#include "rules/support_counter.h"

namespace korv::tools {

/// Counts the rules of rule files in transactions, item by item (see SupportCounter): many rules have sides
/// in common.
class RuleCounter {
public:
    /// Refers to the transactions.
    explicit RuleCounter(const Database& database);

    /// How many transactions meet the sides of a rule.
    Contingency count(const RuleRecord& rule);

private:
    Count support(const Itemset& itemset);

    SupportCounter counter_;
    CountedSupports supports_;
    Count transactions_;
    Itemset union_;  ///< working space
};

}  // namespace korv::tools
