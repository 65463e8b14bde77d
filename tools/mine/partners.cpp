#include "mine/partners.h"

namespace korv::tools {

Partners::Partners(const RankedItems& items) : Partners(items, 0) {
    for (const std::span<const Transaction> lines : items.transactions) {
        most_ += lines.size();
    }
}

Partners::Partners(const RankedItems& items, std::size_t most)
    : items_(items), partners_(items.frequent), most_(most) {}

void Partners::add(Rank frequent, Rank other, Count together) {
    if (is_complete_) {
        add_if_often(frequent, other, together);
    }
    if (is_complete_ && other < items_.frequent) {
        add_if_often(other, frequent, together);
    }
}

void Partners::add_if_often(Rank item, Rank partner, Count together) {
    if (std::uint64_t{together} * least_share < items_.supports[partner]) {
        return;
    }
    if (++size_ > most_) {
        is_complete_ = false;
        partners_ = {};
        return;
    }
    partners_[item].push_back({partner, together});
}

}  // namespace korv::tools
