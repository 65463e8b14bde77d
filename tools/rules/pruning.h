#pragma once

#include <cstddef>
#include <vector>

#include "base/itemset.h"
#include "rules/found_rule.h"
#include "rules/itemset_pool.h"
#include "rules/rule_request.h"

namespace korv::tools {

/// How many rules each step of pruning left out.
struct Pruned {
    std::size_t turned_round = 0;  ///< said by their contrapositives
    std::size_t weaker = 0;        ///< dominated by another rule
    std::size_t unproductive = 0;  ///< hardly better than a rule of fewer items
};

/// Takes out of `rules` what `prune` leaves out. The others keep their order. `itemsets`: those of the sides;
/// no two rules have the same sides. The result does not depend on the order of the rules.
Pruned prune_rules(std::vector<FoundRule>& rules, const ItemsetPool& itemsets, Count transactions,
                   Prune prune);

}  // namespace korv::tools
