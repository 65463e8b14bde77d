#pragma once

#include <cstddef>
#include <vector>

#include "base/itemset.h"
#include "common/workers.h"
#include "rules/column_facts.h"
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

/// By number of an itemset in a pool: the number of the rest of its column, which stands for it as the other
/// side of the same coin (see ColumnFacts); its own number where there is none. Numbers that are not in it
/// have none.
using Rests = std::vector<ItemsetId>;

/// The rests for the sides of rules, which come into the pool. Empty where no side has one.
Rests rests_of_sides(const std::vector<FoundRule>& rules, ItemsetPool& itemsets, const ColumnFacts& columns);

/// Takes out of `rules` what `prune` leaves out. The others keep their order. `itemsets`: those of the sides;
/// no two rules have the same sides, nor do sides have more items than their rests. The result does not
/// depend on the order of the rules, nor on the threads of `workers`, which share the work.
Pruned prune_rules(std::vector<FoundRule>& rules, const ItemsetPool& itemsets, Count transactions,
                   Prune prune, Workers& workers, const Rests& rests = {});

}  // namespace korv::tools
