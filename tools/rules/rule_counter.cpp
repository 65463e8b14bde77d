#include "rules/rule_counter.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>

namespace korv::tools {

namespace {

/// Supports of which nothing is known.
class UnknownSupports final : public Supports {
public:
    Count settle(const Itemset& /*itemset*/, SupportBounds& /*bounds*/) override { return 0; }
};

}  // namespace

RuleCounter::RuleCounter(const Database& database)
    : counter_(database),
      supports_(std::make_unique<UnknownSupports>(), counter_),
      transactions_(database.transactions) {}

Contingency RuleCounter::count(const RuleRecord& rule) {
    const RecordedSide& premise = rule.premise;
    const RecordedSide& conclusion = rule.conclusion;
    union_.clear();
    std::ranges::set_union(premise.items, conclusion.items, std::back_inserter(union_));
    const Count of_premise = support(premise.items);
    const Count of_conclusion = support(conclusion.items);
    const Count of_either = support(union_);
    // How many meet both itemsets, neither, the first alone, or the second alone.
    const std::array<Count, 4> by_group = {of_premise + of_conclusion - of_either, transactions_ - of_either,
                                           of_either - of_conclusion, of_either - of_premise};
    return {premise.is_negated ? transactions_ - of_premise : of_premise,
            conclusion.is_negated ? transactions_ - of_conclusion : of_conclusion,
            by_group.at(rule.group() - 1)};
}

Count RuleCounter::support(const Itemset& itemset) {
    SupportBounds bounds = {0, transactions_};
    supports_.settle(itemset, bounds);
    return bounds.lower;
}

}  // namespace korv::tools
