#include "rules/holdout.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <numeric>
#include <unordered_map>

#include "rules/fisher.h"
#include "rules/significance.h"
#include "rules/support_counter.h"

namespace korv::tools {

namespace {

/// Counts rules from the supports of their sides and of both together.
class RuleCounter {
public:
    /// Refers to both.
    RuleCounter(const ItemsetPool& itemsets, const Database& database)
        : itemsets_(itemsets), counter_(database), transactions_(database.transactions) {}

    Contingency count(const FoundRule& rule) {
        const bool is_none_of_one = rule.premise.is_negated();
        const bool is_none_of_other = rule.conclusion.is_negated();
        const Count one = support(rule.premise);
        const Count other = support(rule.conclusion);
        const Count either = support_of_union(rule);
        const Count both = one + other - either;
        const Count premise = is_none_of_one ? transactions_ - one : one;
        const Count conclusion = is_none_of_other ? transactions_ - other : other;
        if (is_none_of_one) {
            return {premise, conclusion, is_none_of_other ? transactions_ - either : other - both};
        }
        return {premise, conclusion, is_none_of_other ? one - both : both};
    }

private:
    /// Of the items of a side, read plain.
    Count support(Side side) {
        const auto [known, is_new] = supports_.try_emplace(side.itemset(), 0);
        if (is_new) {
            known->second = counter_.count(itemsets_[side.itemset()]);
        }
        return known->second;
    }

    Count support_of_union(const FoundRule& rule) {
        both_.clear();
        std::ranges::set_union(itemsets_[rule.premise.itemset()], itemsets_[rule.conclusion.itemset()],
                               std::back_inserter(both_));
        return counter_.count(both_);
    }

    const ItemsetPool& itemsets_;
    SupportCounter counter_;
    Count transactions_;
    std::unordered_map<ItemsetId, Count> supports_;
    Itemset both_;  ///< working space
};

}  // namespace

std::vector<double> corrected_by_holm(const std::vector<double>& surprises) {
    std::vector<std::size_t> order(surprises.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::sort(order, [&](std::size_t i, std::size_t j) { return surprises[i] > surprises[j]; });
    std::vector<double> corrected(surprises.size());
    std::size_t left = surprises.size();
    double before = surprises.empty() ? 0 : surprises[order.front()];
    for (const std::size_t i : order) {
        before = std::clamp(surprises[i] - std::log10(static_cast<double>(left)), 0.0, before);
        corrected[i] = before;
        --left;
    }
    return corrected;
}

std::vector<HoldoutCounts> counts_in_holdout(const std::vector<FoundRule>& rules, const ItemsetPool& itemsets,
                                             const Database& holdout) {
    RuleCounter counter(itemsets, holdout);
    std::vector<HoldoutCounts> counted;
    std::vector<double> surprises;
    for (const FoundRule& rule : rules) {
        counted.push_back({counter.count(rule), 0});
        surprises.push_back(surprise(Tail::more, counted.back().counts, holdout.transactions));
    }
    const std::vector<double> corrected = corrected_by_holm(surprises);
    for (std::size_t i = 0; i < counted.size(); ++i) {
        counted[i].surprise = corrected[i];
    }
    return counted;
}

std::vector<HoldoutCounts> keep_confirmed(std::vector<FoundRule>& rules, const ItemsetPool& itemsets,
                                          const Database& holdout, double alpha) {
    std::vector<HoldoutCounts> counts = counts_in_holdout(rules, itemsets, holdout);
    const double needed = -std::log10(alpha);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < rules.size(); ++i) {
        if (is_enough(counts[i].surprise, needed)) {
            rules[kept] = rules[i];
            counts[kept] = counts[i];
            ++kept;
        }
    }
    rules.erase(rules.begin() + static_cast<std::ptrdiff_t>(kept), rules.end());
    counts.erase(counts.begin() + static_cast<std::ptrdiff_t>(kept), counts.end());
    return counts;
}

}  // namespace korv::tools
