#pragma once

#include <cstddef>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "base/itemset.h"
#include "rules/found_rule.h"
#include "rules/itemset_pool.h"

namespace korv::test {

/// Rules with distinct sides, each side not empty, the two disjoint.
struct RuleSet {
    tools::ItemsetPool itemsets;
    std::vector<tools::FoundRule> rules;
    Count transactions = 0;
};

/// What random rules are like.
struct RuleSetShape {
    Item items = 5;              ///< from 1
    std::size_t rules = 40;      ///< at most
    std::size_t most_items = 5;  ///< of a side
    /// Out of how many rules one is known within bounds only; 0 for none.
    unsigned one_is_bounded_of = 4;
};

/// Rules with any counts, which contradict each other and themselves.
RuleSet contradictory_rules(const RuleSetShape& shape, std::mt19937& random);

/// Rules with the counts of a random database, in which many have no exception; bounds are about them.
RuleSet rules_of_database(const RuleSetShape& shape, std::mt19937& random);

}  // namespace korv::test
