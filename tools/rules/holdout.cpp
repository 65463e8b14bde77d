#include "rules/holdout.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

#include "rules/fisher.h"
#include "rules/rule_counter.h"
#include "rules/significance.h"

namespace korv::tools {

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
    RuleCounter counter(holdout);
    const auto worded = [&itemsets](Side side) {
        return WordedSide{itemsets[side.itemset()], side.is_negated()};
    };
    std::vector<HoldoutCounts> counted;
    std::vector<double> surprises;
    for (const FoundRule& rule : rules) {
        counted.push_back({counter.count(worded(rule.premise), worded(rule.conclusion)), 0});
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
