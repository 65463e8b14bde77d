#include "rules/distinct_rules.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace korv::tools {

std::vector<FoundRule> DistinctRules::take() {
    settle();
    std::vector<FoundRule> rules;
    rules.reserve(kept_.size());
    std::ranges::transform(kept_, std::back_inserter(rules), &RuleOrder::Ranked::rule);
    std::exchange(kept_, {});  // frees the memory
    return rules;
}

/// Whether a rule, of which the sides do not matter, comes behind so many that it is none of the first.
bool DistinctRules::is_beyond(const RuleOrder::Ranked& ranked, std::size_t items) const {
    if (!last_ || !(ranked.rank >= last_->rank)) {
        return false;
    }
    if (ranked.rank > last_->rank) {
        return true;
    }
    const auto support = [](const FoundRule& rule) { return std::min(rule.at_low.both, rule.at_high.both); };
    const Count of_last = support(last_->rule);
    return support(ranked.rule) != of_last ? support(ranked.rule) < of_last : items > items_of_last_;
}

/// Puts all in order, each once, and forgets what is beyond the first ones.
void DistinctRules::settle() {
    std::ranges::sort(kept_,
                      [this](const auto& one, const auto& other) { return order_.is_before(one, other); });
    std::size_t distinct = 0;
    for (const RuleOrder::Ranked& each : kept_) {
        if (distinct > 0 && !order_.is_before(kept_[distinct - 1], each)) {
            kept_[distinct - 1].rule.wordings += each.rule.wordings;
            ++accounting_[Step::same_fact];
        } else {
            kept_[distinct++] = each;
        }
    }
    const std::size_t left = most_ == 0 ? distinct : std::min(most_, distinct);
    accounting_[Step::top] += distinct - left;
    kept_.erase(kept_.begin() + static_cast<std::ptrdiff_t>(left), kept_.end());
    if (most_ > 0 && left == most_) {
        last_ = kept_.back();
        items_of_last_ = number_of_items(last_->rule, itemsets_);
        forget_other_itemsets();
    }
}

void DistinctRules::forget_other_itemsets() {
    ItemsetPool needed;
    const auto moved = [&](Side side) {
        return Side(needed.intern(itemsets_[side.itemset()]), side.is_negated());
    };
    for (RuleOrder::Ranked& each : kept_) {
        each.rule.premise = moved(each.rule.premise);
        each.rule.conclusion = moved(each.rule.conclusion);
    }
    itemsets_ = std::move(needed);
}

}  // namespace korv::tools
