#pragma once

#include "base/itemset.h"
#include "rules/found_rule.h"

namespace korv::tools {

/// Which tables are at least as telling as the one at hand.
enum class Tail {
    more,   ///< those in which at least as many transactions meet both sides
    fewer,  ///< those in which at most as many do
};

/// Fisher's one-sided probability of a table among all tables of its margins, as -log10: 3 is once in 1,000
/// times. 0 where no other table is possible on the other side. Exact to 1e-12 of the logarithm for any N,
/// also where the probability is close to 1; equal for tables with exchanged sides. O(sqrt(N)) at worst.
double surprise(Tail tail, const Contingency& table, Count transactions);

/// What the surprise of a table cannot exceed in either tail. It takes one logarithm, and leaves it to the
/// exact one to tell apart what is further from chance. Each side holds for some transactions, and not for
/// all.
double most_surprise(const Contingency& table, Count transactions);

}  // namespace korv::tools
