#include "mine/rank_order.h"

#include <algorithm>
#include <numeric>

namespace korv::tools {

RankOrder::RankOrder(const std::vector<Itemset>& items) : ranks(items.size()), places(items.size()) {
    std::iota(ranks.begin(), ranks.end(), Rank{0});
    std::ranges::sort(ranks, {}, [&](Rank rank) { return items[rank].front(); });
    for (Rank place = 0; place < ranks.size(); ++place) {
        places[ranks[place]] = place;
    }
}

}  // namespace korv::tools
