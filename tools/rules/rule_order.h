#pragma once

#include <compare>
#include <cstddef>
#include <map>
#include <vector>

#include "base/itemset.h"
#include "rules/found_rule.h"
#include "rules/itemset_pool.h"
#include "rules/measures.h"
#include "rules/rule_request.h"

namespace korv::tools {

/// How many items both sides of a rule have.
std::size_t number_of_items(const FoundRule& rule, const ItemsetPool& itemsets);

/// Compares rules by their sides: the items of the premises lexicographically, a plain premise before a
/// negated one, then the conclusions likewise.
std::strong_ordering compare_sides(const FoundRule& one, const FoundRule& other, const ItemsetPool& itemsets);

/// How many sides of a rule are negated.
std::size_t negated_sides(const FoundRule& rule);

/// Whether a rule has fewer items than another one, or as many and comes first by its sides.
bool is_shorter(const FoundRule& one, const FoundRule& other, const ItemsetPool& itemsets);

/// The order in which rules are told: by a measure, then by larger support, then fewer items, then by their
/// sides, at last by their counts. Only rules of the same sides and counts are equal in it.
///
/// Of bounds on a measure the end counts that is certain: the lower one where the largest come first, the
/// upper one where the smallest do. Rules of which the measure is not defined come last.
class RuleOrder {
public:
    /// Refers to the pool, which must hold the itemsets of all rules.
    RuleOrder(Measure measure, bool is_ascending, Count transactions, const ItemsetPool& itemsets)
        : measure_(measure), is_ascending_(is_ascending), transactions_(transactions), itemsets_(itemsets) {}

    /// A rule and the number by which it is sorted first, ascending; NaN is last.
    struct Ranked {
        double rank;
        FoundRule rule;
    };

    Ranked ranked(const FoundRule& rule) const;

    bool is_before(const Ranked& one, const Ranked& other) const;

private:
    Measure measure_;
    bool is_ascending_;
    Count transactions_;
    const ItemsetPool& itemsets_;
};

/// The first rules of an order, or all of them, in little memory where they are few.
class FirstRules {
public:
    /// `most`: how many to keep; 0 for all. Refers to the order.
    FirstRules(const RuleOrder& order, std::size_t most) : order_(order), most_(most) {}

    /// O(log kept).
    void add(const FoundRule& rule);

    /// The rules in their order. Nothing is left here. O(kept * log kept).
    std::vector<FoundRule> take();

private:
    const RuleOrder& order_;
    std::size_t most_;
    std::vector<RuleOrder::Ranked> kept_;  ///< a heap with the last rule at the front, once they are `most_`
};

/// The first rules of each conclusion; a side and its negation are two of them.
class FirstOfEachConclusion {
public:
    /// `most`: how many of each to keep; 0 for all. Refers to the order.
    FirstOfEachConclusion(const RuleOrder& order, std::size_t most) : order_(order), most_(most) {}

    /// O(log conclusions + log kept of the conclusion).
    void add(const FoundRule& rule);

    /// Hands all rules on, in no order. Nothing is left here. Returns how many there were.
    std::size_t move_to(FirstRules& first);

private:
    const RuleOrder& order_;
    std::size_t most_;
    std::map<Side, FirstRules> by_conclusion_;
};

}  // namespace korv::tools
