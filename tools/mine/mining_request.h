#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "common/error.h"
#include "mine/database.h"
#include "mine/mined_classes.h"
#include "mine/miner.h"
#include "mine/threshold.h"

namespace korv::tools {

/// What is to be mined, as far as it can be said without the transactions.
struct MiningRequest {
    /// One; for an estimate, at least one.
    std::vector<Threshold> min_supports = {};
    std::optional<Threshold> min_joint = std::nullopt;
    std::optional<Threshold> min_own = std::nullopt;
    std::optional<std::size_t> max_size = std::nullopt;
    bool closure_over_all = false;
    std::optional<std::size_t> max_classes = std::nullopt;
    std::optional<double> max_seconds = std::nullopt;  ///< since the program began
};

/// Says that there are no classes, and why.
class NoClasses : public Error {
public:
    explicit NoClasses(const std::string& message) : Error(message) {}
};

/// The same for one of the minimum supports, in a database of so many transactions. Throws Error for a
/// threshold that is below 1 (below 0 for min_joint) or above `transactions`, and when min_joint is below the
/// minimum support but max_size is not given.
MiningOptions mining_options(const MiningRequest& request, const Threshold& min_support, Count transactions);

/// Throws NoClasses when there are none, since there is nothing to derive rules from.
void require_classes(const ClassFigures& classes, const Database& database, const MiningOptions& options);

/// The same for a database whose most frequent item is in so many transactions.
void require_classes(const ClassFigures& classes, Count most, const MiningOptions& options);

}  // namespace korv::tools
