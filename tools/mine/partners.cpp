#include "mine/partners.h"

namespace korv::tools {

namespace {

/// So many partners for each item are the most that are kept.
constexpr std::size_t most_for_an_item = 256;

}  // namespace

void Partners::add(Rank frequent, Rank other, Count together) {
    add_if_often(frequent, other, together);
    if (other < items_.frequent) {
        add_if_often(other, frequent, together);
    }
}

void Partners::add_if_often(Rank item, Rank partner, Count together) {
    if (!is_complete_ || std::uint64_t{together} * least_share < items_.supports[partner]) {
        return;
    }
    partners_[item].push_back({partner, together});
    if (++size_ > most_for_an_item * items_.size()) {
        is_complete_ = false;
        partners_ = {};
    }
}

}  // namespace korv::tools
