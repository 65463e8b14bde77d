#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <vector>

#include "base/itemset.h"
#include "mine/database.h"

namespace korv::tools {

/// How sets of transactions are represented: see cover.h. The result does not depend on it.
enum class Representation {
    by_density,
    dense,
    sparse,
};

/// What is mined.
struct MiningOptions {
    /// The smallest number of transactions that hold all items of an essential itemset; at least 1.
    Count min_support = 1;
    /// The largest number of items of an essential itemset; at least 1.
    std::size_t max_size = std::numeric_limits<std::size_t>::max();
    /// Whether a closure can have any item, or only frequent ones: those in at least `min_support`
    /// transactions.
    bool closure_over_all = false;
    Representation representation = Representation::by_density;
};

/// A class: all essential itemsets of one closure.
struct MinedClass {
    Itemset closure;
    Count support;                    ///< disjunctive, in transactions
    std::vector<Itemset> essentials;  ///< by size, then lexicographically; at least one
};

/// How far the walk has come. This is reported after each root item, and while one is extended.
struct MiningProgress {
    std::size_t roots_done;
    std::size_t roots;
    std::size_t classes;   ///< found so far
    double current = 0.0;  ///< how many of the next root item's extensions are done, as a fraction of 1
};
using ReportProgress = std::function<void(const MiningProgress&)>;

/// All classes of the frequent essential itemsets of a database, by size of the closure, then
/// lexicographically.
///
/// An itemset is essential when each of its items is in a transaction that holds no other item of it, and
/// frequent when at least `min_support` transactions hold all its items. Subsets of an essential and frequent
/// itemset are essential and frequent, too, so a depth-first walk that extends only such itemsets meets each
/// of them once. The closure of an itemset consists of every item whose transactions all hold an item of it.
std::vector<MinedClass> mine(const Database& database, const MiningOptions& options,
                             const ReportProgress& report = {});

}  // namespace korv::tools
