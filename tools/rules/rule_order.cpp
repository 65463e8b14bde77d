#include "rules/rule_order.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <utility>

namespace korv::tools {

namespace {

std::strong_ordering compare_side(Side one, Side other, const ItemsetPool& itemsets) {
    if (one.itemset() == other.itemset()) {
        return one <=> other;  // a plain one first
    }
    const ItemSpan items = itemsets[one.itemset()];
    const ItemSpan other_items = itemsets[other.itemset()];
    return std::lexicographical_compare_three_way(items.begin(), items.end(), other_items.begin(),
                                                  other_items.end());
}

/// Compares rules by how many items they have, then by their sides.
std::strong_ordering compare_by_length(const FoundRule& one, const FoundRule& other,
                                       const ItemsetPool& itemsets) {
    const auto by_items = number_of_items(one, itemsets) <=> number_of_items(other, itemsets);
    return by_items != std::strong_ordering::equal ? by_items : compare_sides(one, other, itemsets);
}

}  // namespace

std::size_t number_of_items(const FoundRule& rule, const ItemsetPool& itemsets) {
    return itemsets[rule.premise.itemset()].size() + itemsets[rule.conclusion.itemset()].size();
}

std::strong_ordering compare_sides(const FoundRule& one, const FoundRule& other,
                                   const ItemsetPool& itemsets) {
    const std::strong_ordering by_premise = compare_side(one.premise, other.premise, itemsets);
    return by_premise != std::strong_ordering::equal
               ? by_premise
               : compare_side(one.conclusion, other.conclusion, itemsets);
}

std::size_t negated_sides(const FoundRule& rule) {
    return (rule.premise.is_negated() ? 1U : 0U) + (rule.conclusion.is_negated() ? 1U : 0U);
}

bool is_shorter(const FoundRule& one, const FoundRule& other, const ItemsetPool& itemsets) {
    return std::is_lt(compare_by_length(one, other, itemsets));
}

RuleOrder::Ranked RuleOrder::ranked(const FoundRule& rule) const {
    const MeasureBounds bounds = bounds_of(measure_, rule, transactions_);
    return {is_ascending_ ? bounds.high : -bounds.low, rule};
}

bool RuleOrder::is_before(const Ranked& one, const Ranked& other) const {
    if (std::isnan(one.rank) != std::isnan(other.rank)) {
        return std::isnan(other.rank);
    }
    if (one.rank != other.rank && !std::isnan(one.rank)) {
        return one.rank < other.rank;
    }
    const Count support = std::min(one.rule.at_low.both, one.rule.at_high.both);
    const Count other_support = std::min(other.rule.at_low.both, other.rule.at_high.both);
    if (support != other_support) {
        return support > other_support;
    }
    if (const auto by_length = compare_by_length(one.rule, other.rule, itemsets_);
        by_length != std::strong_ordering::equal) {
        return std::is_lt(by_length);
    }
    const auto counts = [](const FoundRule& rule) {
        return std::array{rule.at_low.premise, rule.at_low.both, rule.at_high.premise, rule.at_high.both};
    };
    return counts(one.rule) < counts(other.rule);
}

void FirstRules::add(const FoundRule& rule) {
    const auto is_before = [this](const auto& one, const auto& other) {
        return order_.is_before(one, other);
    };
    const RuleOrder::Ranked ranked = order_.ranked(rule);
    if (most_ == 0 || kept_.size() < most_) {
        kept_.push_back(ranked);
        if (kept_.size() == most_) {
            std::ranges::make_heap(kept_, is_before);
        }
        return;
    }
    if (!order_.is_before(ranked, kept_.front())) {
        return;
    }
    std::ranges::pop_heap(kept_, is_before);
    kept_.back() = ranked;
    std::ranges::push_heap(kept_, is_before);
}

std::vector<FoundRule> FirstRules::take() {
    std::ranges::sort(kept_,
                      [this](const auto& one, const auto& other) { return order_.is_before(one, other); });
    std::vector<FoundRule> rules;
    rules.reserve(kept_.size());
    std::ranges::transform(kept_, std::back_inserter(rules), &RuleOrder::Ranked::rule);
    std::exchange(kept_, {});  // frees the memory
    return rules;
}

void FirstOfEachConclusion::add(const FoundRule& rule) {
    by_conclusion_.try_emplace(rule.conclusion, order_, most_).first->second.add(rule);
}

std::size_t FirstOfEachConclusion::move_to(FirstRules& first) {
    std::size_t moved = 0;
    for (auto& [conclusion, rules] : std::exchange(by_conclusion_, {})) {
        for (const FoundRule& rule : rules.take()) {
            first.add(rule);
            ++moved;
        }
    }
    return moved;
}

}  // namespace korv::tools
