#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "engine/lattice_entries.h"
#include "rules/accounting.h"
#include "rules/found_rule.h"
#include "rules/itemset_pool.h"
#include "rules/rule_request.h"

namespace korv::tools {

/// Takes a rule that is left.
using AddRule = std::function<void(const FoundRule& rule)>;

/// What two rules have in common that are readings of one association: that two itemsets are met together
/// more often than by chance, or less often. An itemset and the rest of an exhaustive column are one here.
struct Association {
    ItemsetId first;  ///< the smaller number
    ItemsetId second;
    bool is_opposite;  ///< whether the rules read one of them plain and the other negated

    auto operator<=>(const Association&) const = default;  // NOLINT: no pointer, no number
};

/// A rule that passed the filter.
struct MergeCandidate {
    FoundRule rule;
    Association association;
    const LatticeEntry* of_class;  ///< the class whose items are those of the pair
};

/// Merges rules that say the same into the first of them, with counts that are known where one of them has
/// such counts, and keeps the best reading of each association.
class AssociationMerge {
public:
    /// Refers to all but `readings`.
    AssociationMerge(Readings readings, const ItemsetPool& pool, Accounting& accounting, const AddRule& add)
        : readings_(readings), pool_(pool), accounting_(accounting), add_(add) {}

    /// Hands the rules that are left of `candidates` on, and empties it. The candidates may be of several
    /// classes; those of one class stand in the order in which its pairs came.
    void settle(std::vector<MergeCandidate>& candidates);

private:
    void merge_facts(std::vector<MergeCandidate>& candidates);
    void keep_best_readings(std::vector<MergeCandidate>& candidates);
    bool is_better(const FoundRule& one, const FoundRule& other) const;

    Readings readings_;
    const ItemsetPool& pool_;
    Accounting& accounting_;
    const AddRule& add_;
};

}  // namespace korv::tools
