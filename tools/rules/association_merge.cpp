#include "rules/association_merge.h"

#include <algorithm>
#include <cstddef>
#include <tuple>

#include "rules/confidence.h"
#include "rules/rule_order.h"

namespace korv::tools {

namespace {

/// Whether a form is of a pair within a node.
bool is_within_node(Form form) {
    return static_cast<std::size_t>(form) % forms_in_a_group < 2;
}

/// Whether a rule comes before another one in the rule files of korv, which hold the rules within nodes, by
/// their closed itemsets, and then those between them, in the order of the lattice. False for rules of the
/// same class and file.
bool comes_first(const MergeCandidate& one, const MergeCandidate& other) {
    const bool is_within = is_within_node(one.rule.form);
    if (is_within != is_within_node(other.rule.form)) {
        return is_within;
    }
    if (one.of_class == other.of_class) {
        return false;
    }
    return is_within ? one.of_class->itemset() < other.of_class->itemset() : one.of_class < other.of_class;
}

/// The lower end of the confidence.
Confidence confidence(const FoundRule& rule) {
    return std::min(Confidence(rule.at_low), Confidence(rule.at_high));
}

auto sides(const MergeCandidate& candidate) {
    return std::tuple(candidate.rule.premise, candidate.rule.conclusion);
}

/// Keeps the first of each run of candidates that are the same. `merge` takes that one and each other.
template <typename AreSame, typename Merge>
void merge_runs(std::vector<MergeCandidate>& candidates, AreSame are_same, Merge merge) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        if (kept > 0 && are_same(candidates[kept - 1], candidates[i])) {
            merge(candidates[kept - 1].rule, candidates[i].rule);
        } else {
            candidates[kept++] = candidates[i];
        }
    }
    candidates.erase(candidates.begin() + static_cast<std::ptrdiff_t>(kept), candidates.end());
}

}  // namespace

void AssociationMerge::settle(std::vector<MergeCandidate>& candidates) {
    merge_facts(candidates);
    if (readings_ == Readings::one) {
        keep_best_readings(candidates);
    }
    for (const MergeCandidate& candidate : candidates) {
        add_(candidate.rule);
    }
    candidates.clear();
}

void AssociationMerge::merge_facts(std::vector<MergeCandidate>& candidates) {
    std::ranges::stable_sort(candidates, [](const MergeCandidate& one, const MergeCandidate& other) {
        return sides(one) != sides(other) ? sides(one) < sides(other) : comes_first(one, other);
    });
    merge_runs(
        candidates, [](const auto& one, const auto& other) { return sides(one) == sides(other); },
        [this](FoundRule& first, const FoundRule& other) {
            first.wordings += other.wordings;
            if (!first.is_known() && other.is_known()) {
                // Of an itemset whose support is open, the rest of its column may be known.
                first.at_low = other.at_low;
                first.at_high = other.at_high;
            }
            ++accounting_[Step::same_fact];
        });
}

void AssociationMerge::keep_best_readings(std::vector<MergeCandidate>& candidates) {
    std::ranges::sort(candidates, [this](const MergeCandidate& one, const MergeCandidate& other) {
        return one.association != other.association ? one.association < other.association
                                                    : is_better(one.rule, other.rule);
    });
    merge_runs(
        candidates, [](const auto& one, const auto& other) { return one.association == other.association; },
        [this](FoundRule& best, const FoundRule&) {
            ++best.readings;
            ++accounting_[Step::reading];
        });
}

/// Whether a rule is the better reading: it has fewer negated sides, or else a higher confidence, or else
/// fewer items, or else the smaller sides.
bool AssociationMerge::is_better(const FoundRule& one, const FoundRule& other) const {
    if (negated_sides(one) != negated_sides(other)) {
        return negated_sides(one) < negated_sides(other);
    }
    if (confidence(one) != confidence(other)) {
        return confidence(one) > confidence(other);
    }
    return is_shorter(one, other, pool_);
}

}  // namespace korv::tools
