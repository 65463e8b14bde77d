#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <vector>

#include "base/itemset.h"
#include "mine/database.h"

namespace korv::tools {

/// How sets of transactions are represented: see cover.h. The result is the same.
enum class Representation {
    by_density,
    dense,
    sparse,
};

/// What is mined.
struct MiningOptions {
    /// Essential itemsets are in at least so many common transactions, items too; at least 1.
    Count min_support = 1;
    /// Essential itemsets have at most so many items; at least 1.
    std::size_t max_size = std::numeric_limits<std::size_t>::max();
    /// Whether closures are taken over all items; otherwise over the frequent ones, those in at least
    /// `min_support` transactions.
    bool closure_over_all = false;
    Representation representation = Representation::by_density;
};

/// A class: all essential itemsets of one closure.
struct MinedClass {
    Itemset closure;
    Count support;                    ///< disjunctive, in transactions
    std::vector<Itemset> essentials;  ///< by size, then lexicographically; at least one
};

/// How far the walk is: reported after each root item, and while it extends one.
struct MiningProgress {
    std::size_t roots_done;
    std::size_t roots;
    std::size_t classes;   ///< found so far
    double current = 0.0;  ///< part of the extensions of the next root item that is done, by their number
};
using ReportProgress = std::function<void(const MiningProgress&)>;

/// All classes of the frequent essential itemsets of a database, by size of the closure, then
/// lexicographically.
///
/// An itemset is essential when each of its items is in a transaction that holds no other item of it, and
/// frequent when at least `min_support` transactions hold all its items. Both hold for all subsets of an
/// itemset for which they hold, so a depth-first walk that extends only such itemsets meets each once. The
/// closure of an itemset are the items all of whose transactions hold an item of it.
std::vector<MinedClass> mine(const Database& database, const MiningOptions& options,
                             const ReportProgress& report = {});

}  // namespace korv::tools
