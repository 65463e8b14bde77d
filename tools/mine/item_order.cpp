#include "mine/item_order.h"

#include <algorithm>
#include <numeric>

namespace korv::tools {

ItemOrder::ItemOrder(const std::vector<Itemset>& items) : begins_(items.size() + 1) {
    Itemset unordered;
    std::vector<Rank> ranks;
    for (Rank rank = 0; rank < items.size(); ++rank) {
        unordered.insert(unordered.end(), items[rank].begin(), items[rank].end());
        ranks.resize(unordered.size(), rank);
        begins_[rank + 1] = unordered.size();
    }
    std::vector<std::size_t> in_order(unordered.size());
    std::iota(in_order.begin(), in_order.end(), std::size_t{0});
    std::ranges::sort(in_order, {}, [&](std::size_t i) { return unordered[i]; });
    places_.resize(unordered.size());
    for (const std::size_t i : in_order) {
        places_[i] = static_cast<Place>(items_.size());
        items_.push_back(unordered[i]);
        ranks_.push_back(ranks[i]);
    }
}

}  // namespace korv::tools
