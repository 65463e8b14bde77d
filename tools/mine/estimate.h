#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "mine/database.h"
#include "mine/mining_request.h"

namespace korv::tools {

/// What one minimum support would bring.
struct Estimate {
    Threshold min_support;
    Count transactions = 0;          ///< the minimum support as a number of them
    std::size_t frequent_items = 0;  ///< in so many transactions
    std::size_t essentials = 0;
    std::size_t classes = 0;
    std::size_t file_bytes = 0;  ///< of the class file
    bool is_complete = true;     ///< if not, the last three numbers are lower bounds
};

/// What each minimum support of the request would bring, by falling support: by mining, each for at most
/// `time`. A smaller support brings no less; so, once the time is not enough, what was found until then is
/// the lower bound for all that are left. Throws Error for thresholds out of range (see mining_options).
std::vector<Estimate> estimates(const Database& database, const MiningRequest& request,
                                std::chrono::duration<double> time = std::chrono::seconds(1));

/// What the estimates ask of a database.
struct Estimated {
    Count transactions;
    std::function<std::size_t(Count min_support)> items_in;  ///< the number of items in so many transactions
    /// Sets what the mining for so long brings, or lower bounds.
    std::function<void(std::chrono::duration<double> time, const MiningOptions& options, Estimate& estimate)>
        mine_for;
};

/// The same for a database that answers by itself.
std::vector<Estimate> estimates(const Estimated& database, const MiningRequest& request,
                                std::chrono::duration<double> time = std::chrono::seconds(1));

/// The estimates as a table with a line for each, below a line of headings.
std::string estimate_table(const std::vector<Estimate>& estimates);

}  // namespace korv::tools
