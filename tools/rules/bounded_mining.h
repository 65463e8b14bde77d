#pragma once

#include <cstddef>
#include <limits>

#include "common/error.h"
#include "engine/classes.h"
#include "mine/database.h"
#include "mine/miner.h"

namespace korv::tools {

/// Says that mining ended because it was told to.
class MiningStopped : public Error {
public:
    MiningStopped() : Error("stopped before all classes were mined") {}
};

/// What mine_bounded found.
struct BoundedMining {
    MinedClasses classes;   ///< all of them, for `options`
    MiningOptions options;  ///< with the largest size that was mined
    bool is_reduced;        ///< whether that is smaller than the one that was asked for
    /// Whether it is so for the sake of the number of essential itemsets, not of classes.
    bool has_too_many_essentials = false;
};

/// The classes of a database, no more than options.max_classes, and with no more than `most_essentials`
/// essential itemsets. Where there are more, the largest size of essential itemsets is the largest one, at
/// least 2, of which there are not. Size 2 can have any number of essential itemsets; where it has too many
/// classes, Error is thrown, which names a minimum support that would do. Throws NoClasses where there are
/// none, and MiningStopped when `go_on` returns false.
///
/// Mines again, from size 2 upwards, where the classes are too many.
BoundedMining mine_bounded(const Database& database, const MiningOptions& options, const GoOn& go_on = {},
                           std::size_t most_essentials = std::numeric_limits<std::size_t>::max());

/// The classes as korv stores them: without the essential itemset that is the closed itemset.
ClassMap class_map(const MinedClasses& classes);

}  // namespace korv::tools
