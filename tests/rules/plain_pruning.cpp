#include "rules/plain_pruning.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <tuple>
#include <utility>

namespace korv::test {

using tools::Contingency;
using tools::FoundRule;
using tools::ItemsetPool;
using tools::Prune;
using tools::Pruned;
using tools::Rests;
using tools::Side;

namespace {

/// Whether the confidence of one table is at least that of another one.
bool is_at_least_as_confident(const Contingency& a, const Contingency& b) {
    return std::uint64_t{a.both} * b.premise >= std::uint64_t{b.both} * a.premise;
}

bool is_certainly_at_least(const FoundRule& a, const FoundRule& b, const auto& is_at_least) {
    return is_at_least(a.at_low, b.at_low) && is_at_least(a.at_low, b.at_high) &&
           is_at_least(a.at_high, b.at_low) && is_at_least(a.at_high, b.at_high);
}

bool has_confidence(const FoundRule& rule) {
    return rule.at_low.premise != 0 && rule.at_high.premise != 0;
}

Side negation(const Side& side) {
    return {side.itemset(), !side.is_negated()};
}

bool have_same_sides(const FoundRule& a, const FoundRule& b) {
    return a.premise == b.premise && a.conclusion == b.conclusion;
}

FoundRule contrapositive(const FoundRule& rule) {
    FoundRule turned = rule;
    turned.premise = negation(rule.conclusion);
    turned.conclusion = negation(rule.premise);
    return turned;
}

Itemset all_items(const FoundRule& rule, const ItemsetPool& itemsets) {
    Itemset all;
    std::ranges::set_union(itemsets[rule.premise.itemset()], itemsets[rule.conclusion.itemset()],
                           std::back_inserter(all));
    return all;
}

std::size_t items(const FoundRule& rule, const ItemsetPool& itemsets) {
    return itemsets[rule.premise.itemset()].size() + itemsets[rule.conclusion.itemset()].size();
}

bool is_of_negated_premise_alone(const FoundRule& rule) {
    return rule.premise.is_negated() && !rule.conclusion.is_negated();
}

/// Of two rules that say the same, the smaller one stays.
auto order_of_preference(const FoundRule& rule, const ItemsetPool& itemsets) {
    const auto copy = [&](const Side& side) {
        const ItemSpan itemset = itemsets[side.itemset()];
        return Itemset(itemset.begin(), itemset.end());
    };
    const int negated = (rule.premise.is_negated() ? 1 : 0) + (rule.conclusion.is_negated() ? 1 : 0);
    return std::tuple(negated, items(rule, itemsets), copy(rule.premise), copy(rule.conclusion));
}

/// Takes out the rules that any of `others` leaves out.
std::size_t take_out(std::vector<FoundRule>& rules, const std::vector<FoundRule>& others,
                     const std::function<bool(const FoundRule& other, const FoundRule& rule)>& leaves_out) {
    return std::erase_if(rules, [&](const FoundRule& rule) {
        return std::ranges::any_of(others, [&](const FoundRule& other) { return leaves_out(other, rule); });
    });
}

bool are_sides_of_equal_sign(const FoundRule& rule) {
    return rule.premise.is_negated() == rule.conclusion.is_negated();
}

/// A rule with either side, or both, worded by the rest that stands for it.
std::vector<FoundRule> by_rests(const FoundRule& rule, const Rests& rests) {
    const auto turned = [&](const Side& side) {
        const bool has_rest = side.itemset() < rests.size() && rests[side.itemset()] != side.itemset();
        return has_rest ? Side(rests[side.itemset()], !side.is_negated()) : side;
    };
    std::vector<FoundRule> ways;
    for (const Side& premise : {rule.premise, turned(rule.premise)}) {
        for (const Side& conclusion : {rule.conclusion, turned(rule.conclusion)}) {
            if (premise != rule.premise || conclusion != rule.conclusion) {
                ways.push_back(rule);
                ways.back().premise = premise;
                ways.back().conclusion = conclusion;
            }
        }
    }
    return ways;
}

/// Each rule is compared with all shorter ones, over which it has to gain a transaction.
std::size_t take_out_unproductive(std::vector<FoundRule>& rules, const ItemsetPool& itemsets,
                                  Count transactions, const Rests& rests) {
    const auto leverage = [&](const Contingency& table) {
        return std::int64_t{table.both} * transactions - std::int64_t{table.premise} * table.conclusion;
    };
    const auto is_within = [&](const Side& side, const Side& other) {
        return is_contained(itemsets[side.itemset()], itemsets[other.itemset()]);
    };
    const auto lies_within = [&](const FoundRule& shorter, const FoundRule& longer, const auto& is_part) {
        const bool is_straight =
            is_part(shorter.premise, longer.premise) && is_part(shorter.conclusion, longer.conclusion);
        const bool is_crosswise =
            is_part(shorter.premise, longer.conclusion) && is_part(shorter.conclusion, longer.premise);
        return (is_straight || is_crosswise) && items(shorter, itemsets) < items(longer, itemsets) &&
               are_sides_of_equal_sign(shorter) == are_sides_of_equal_sign(longer);
    };
    const auto lacks_alternatives = [&](const Side& side, const Side& other) {
        return other.is_negated() ? side.itemset() == other.itemset() : is_within(side, other);
    };
    const auto lies_within_in_words = [&](const FoundRule& shorter, const FoundRule& longer) {
        return lies_within(shorter, longer, is_within) ||
               std::ranges::any_of(by_rests(shorter, rests), [&](const FoundRule& worded) {
                   return lies_within(worded, longer, lacks_alternatives);
               });
    };
    const auto is_no_better = [&](const FoundRule& rule, const FoundRule& other) {
        return lies_within_in_words(other, rule) &&
               is_certainly_at_least(other, rule, [&](const Contingency& a, const Contingency& b) {
                   return leverage(b) - leverage(a) < transactions;
               });
    };
    return take_out(rules, std::vector(rules),
                    [&](const FoundRule& other, const FoundRule& rule) { return is_no_better(rule, other); });
}

}  // namespace

bool implies(const Side& side, const Side& other, const ItemsetPool& itemsets) {
    const ItemSpan a = itemsets[side.itemset()];
    const ItemSpan b = itemsets[other.itemset()];
    return side.is_negated() == other.is_negated() &&
           (side.is_negated() ? is_contained(b, a) : is_contained(a, b));
}

bool dominates_in_items(const FoundRule& dominating, const FoundRule& dominated,
                        const ItemsetPool& itemsets) {
    return implies(dominated.premise, dominating.premise, itemsets) &&
           implies(dominating.conclusion, dominated.conclusion, itemsets) &&
           !have_same_sides(dominating, dominated);
}

bool dominates(const FoundRule& dominating, const FoundRule& dominated, const ItemsetPool& itemsets) {
    return dominates_in_items(dominating, dominated, itemsets) && has_confidence(dominating) &&
           has_confidence(dominated) &&
           is_certainly_at_least(dominating, dominated, is_at_least_as_confident);
}

bool has_no_exception(const FoundRule& rule) {
    return has_confidence(rule) && rule.at_low.both == rule.at_low.premise &&
           rule.at_high.both == rule.at_high.premise;
}

bool statement_implies(const FoundRule& dominating, const FoundRule& dominated, const ItemsetPool& itemsets) {
    if (is_of_negated_premise_alone(dominating) && is_of_negated_premise_alone(dominated)) {
        return is_contained(all_items(dominating, itemsets), all_items(dominated, itemsets));
    }
    const FoundRule turned = contrapositive(dominating);
    return have_same_sides(dominating, dominated) || have_same_sides(turned, dominated) ||
           dominates_in_items(dominating, dominated, itemsets) ||
           dominates_in_items(turned, dominated, itemsets);
}

Pruned prune_rules_plainly(std::vector<FoundRule>& rules, const ItemsetPool& itemsets, Count transactions,
                           Prune prune, const Rests& rests) {
    Pruned pruned;
    if (prune == Prune::none) {
        return pruned;
    }
    const std::vector<FoundRule> all = rules;
    const auto is_preferred = [&](const FoundRule& rule, const FoundRule& by) {
        return order_of_preference(rule, itemsets) < order_of_preference(by, itemsets);
    };
    pruned.turned_round = take_out(rules, all, [&](const FoundRule& by, const FoundRule& rule) {
        return has_no_exception(by) && has_no_exception(rule) && have_same_sides(contrapositive(by), rule) &&
               is_preferred(by, rule);
    });
    pruned.weaker = take_out(rules, all, [&](const FoundRule& by, const FoundRule& rule) {
        if (prune == Prune::same) {
            return by.conclusion == rule.conclusion && dominates(by, rule, itemsets);
        }
        const bool is_implied = has_no_exception(by) && has_no_exception(rule) &&
                                statement_implies(by, rule, itemsets) &&
                                (!statement_implies(rule, by, itemsets) || is_preferred(by, rule));
        return is_implied || dominates(by, rule, itemsets);
    });
    if (prune == Prune::productive) {
        pruned.unproductive = take_out_unproductive(rules, itemsets, transactions, rests);
    }
    return pruned;
}

}  // namespace korv::test
