#pragma once

#include <vector>

#include "mine/ranked_items.h"

namespace korv::tools {

/// Ranks in the order of the first items for which they stand, and where each of them is.
struct RankOrder {
    /// `items`: by rank, each ascending, as RankedItems has them.
    explicit RankOrder(const std::vector<Itemset>& items);

    std::vector<Rank> ranks;   ///< by place
    std::vector<Rank> places;  ///< by rank
};

}  // namespace korv::tools
