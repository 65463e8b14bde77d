#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>

#include "base/itemset.h"
#include "mine/database.h"
#include "mine/mined_classes.h"

namespace korv::tools {

/// How sets of transactions are represented: see cover.h. The result does not depend on it.
enum class Representation {
    by_density,
    dense,
    sparse,
};

/// What is mined. All numbers are numbers of transactions, unless they say otherwise.
struct MiningOptions {
    /// Items in fewer transactions are in no essential itemset; at least 1.
    Count min_support = 1;
    /// An essential itemset of two or more items is together in at least so many. With 0, its items need not
    /// meet. By default, the minimum support.
    std::optional<Count> min_joint = std::nullopt;
    /// Each item of an essential itemset is in at least so many that hold no other item of it; at least 1.
    Count min_own = 1;
    /// The largest number of items of an essential itemset; at least 1.
    std::size_t max_size = std::numeric_limits<std::size_t>::max();
    /// Whether a closure can have any item, or only those in at least `min_support` transactions.
    bool closure_over_all = false;
    /// The walk ends where there would be more classes.
    std::size_t max_classes = std::numeric_limits<std::uint32_t>::max() - 1;
    Representation representation = Representation::by_density;
};

/// How far the walk has come. A root item is done when all itemsets are found in which it has the highest
/// rank.
struct MiningProgress {
    std::size_t roots_done = 0;
    std::size_t roots = 0;
    std::size_t essentials = 0;  ///< found so far
    std::size_t classes = 0;     ///< found so far
    std::size_t file_bytes = 0;  ///< of the class file, for what was found so far
};

/// Asked after the pairs of each root item are counted, after each root item is done, and in between after
/// every 1,024 essential itemsets. The walk ends when it returns false.
using GoOn = std::function<bool(const MiningProgress&)>;

/// What mine() found.
struct MiningResult {
    MinedClasses classes;
    /// Whether these are all. If not, the closures, supports and essential itemsets that are there are right.
    bool is_complete = true;
};

/// The classes of the essential itemsets of a database that pass the thresholds.
///
/// An itemset is essential when each of its items is in a transaction that holds no other item of it: when
/// its disjunctive support is larger than that of each part with one item less. All thresholds pass to the
/// parts of an itemset, so a depth-first walk in which all parts of an itemset come before it (a search in a
/// prefix tree, as Eclat does it, with the candidates of Apriori) asks the transactions about no other
/// itemset than those whose parts all passed. Disjunctive supports follow from supports of the parts, by
/// inclusion and exclusion, where that takes less time than a count. The closure of an itemset consists of
/// every item whose transactions all hold an item of it.
MiningResult mine(const Database& database, const MiningOptions& options, const GoOn& go_on = {});

}  // namespace korv::tools
