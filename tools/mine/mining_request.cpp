#include "mine/mining_request.h"

#include <algorithm>
#include <string>

#include "common/error.h"
#include "mine/ranked_items.h"

namespace korv::tools {

MiningOptions mining_options(const MiningRequest& request, const Threshold& min_support, Count transactions) {
    MiningOptions options;
    options.min_support = in_transactions(min_support, "--min-support", 1, transactions);
    if (request.min_joint) {
        options.min_joint = in_transactions(*request.min_joint, "--min-joint", 0, transactions);
    }
    if (request.min_own) {
        options.min_own = in_transactions(*request.min_own, "--min-own", 1, transactions);
    }
    if (options.min_joint.value_or(options.min_support) < options.min_support && !request.max_size) {
        throw UsageError(
            "--min-joint: found " + std::to_string(*options.min_joint) +
            ", which is less than --min-support " + std::to_string(options.min_support) +
            "; expected --max-size, too, since itemsets whose items hardly meet are too many to be "
            "listed without it: --max-size 2 finds pairs, 3 triples as well");
    }
    options.max_size = request.max_size.value_or(options.max_size);
    options.max_classes = request.max_classes.value_or(options.max_classes);
    options.closure_over_all = request.closure_over_all;
    return options;
}

void require_classes(const ClassFigures& classes, const Database& database, const MiningOptions& options) {
    Count most = 0;
    for (const Database::ItemColumn& column : database.items) {
        most = std::max(most, support_of(column, database));
    }
    require_classes(classes, most, options);
}

void require_classes(const ClassFigures& classes, Count most, const MiningOptions& options) {
    if (classes.classes > 0) {
        return;
    }
    const bool is_rare = most < options.min_support;
    throw NoClasses((is_rare ? "--min-support: no item is in " + std::to_string(options.min_support)
                             : "--min-own: no item is in " + std::to_string(options.min_own)) +
                    " transactions; the most frequent one is in " + std::to_string(most));
}

}  // namespace korv::tools
