#include "rules/rule_counter.h"

#include <algorithm>
#include <iterator>

namespace korv::tools {

RuleCounter::RuleCounter(const Database& database)
    : counter_(database), transactions_(database.transactions) {}

Contingency RuleCounter::count(const WordedSide& premise, const WordedSide& conclusion) {
    union_.clear();
    std::ranges::set_union(premise.items, conclusion.items, std::back_inserter(union_));
    const Count one = support(premise.items);
    const Count other = support(conclusion.items);
    const Count either = support(union_);
    const Count not_one = transactions_ - one;
    const Count not_other = transactions_ - other;
    if (premise.is_negated) {
        return conclusion.is_negated ? Contingency{not_one, not_other, transactions_ - either}
                                     : Contingency{not_one, other, either - one};
    }
    return conclusion.is_negated ? Contingency{one, not_other, either - other}
                                 : Contingency{one, other, one + other - either};
}

Count RuleCounter::support(ItemSpan itemset) {
    const auto [known, is_new] = known_.try_emplace(itemset);
    if (is_new) {
        const Count counted = counter_.count(itemset);
        known = {counted, counted};
    }
    return known.lower;
}

}  // namespace korv::tools
