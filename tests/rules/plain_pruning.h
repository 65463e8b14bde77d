#pragma once

#include <vector>

#include "base/itemset.h"
#include "rules/found_rule.h"
#include "rules/itemset_pool.h"
#include "rules/pruning.h"
#include "rules/rule_request.h"

namespace korv::test {

// Pruning by its definitions: every rule is compared with every other one. Counts are below 2^31.

/// Whether whatever meets `side` meets `other`, as far as their items tell.
bool implies(const tools::Side& side, const tools::Side& other, const tools::ItemsetPool& itemsets);

/// Whether a rule dominates another one as far as the items tell: the other's premise implies its own, its
/// own conclusion implies the other's, and the two are different.
bool dominates_in_items(const tools::FoundRule& dominating, const tools::FoundRule& dominated,
                        const tools::ItemsetPool& itemsets);

/// Whether a rule dominates another one: in items, and its confidence is certainly no smaller. A confidence
/// that may be 0/0 is neither.
bool dominates(const tools::FoundRule& dominating, const tools::FoundRule& dominated,
               const tools::ItemsetPool& itemsets);

/// Whether a rule has no exception, whatever is unknown of it.
bool has_no_exception(const tools::FoundRule& rule);

/// Whether a rule without exception implies another one, as far as the items tell: itself or its
/// contrapositive dominates the other in items or has the same sides; or both say that everybody meets a
/// union of itemsets, and its own lies within the other's.
bool statement_implies(const tools::FoundRule& dominating, const tools::FoundRule& dominated,
                       const tools::ItemsetPool& itemsets);

/// What prune_rules does.
tools::Pruned prune_rules_plainly(std::vector<tools::FoundRule>& rules, const tools::ItemsetPool& itemsets,
                                  Count transactions, tools::Prune prune, const tools::Rests& rests = {});

}  // namespace korv::test
