#include "index/bounds_cache.h"

#include <algorithm>
#include <utility>

#include "base/itemset_hash.h"

namespace korv {

BoundsCache::BoundsCache(std::size_t most_bytes) : most_bytes_(most_bytes), slots_(first_slots) {}

std::pair<SupportBounds&, bool> BoundsCache::try_emplace(ItemSpan itemset) {
    make_room();
    const auto hash = static_cast<std::uint32_t>(hash_of(itemset));
    Slot& slot = slot_of(itemset, hash);
    if (slot.position != no_position) {
        return {bounds_[slot.position], false};
    }
    slot = {static_cast<std::uint32_t>(itemsets_.size()), hash};
    itemsets_.push_back(itemset);
    return {bounds_.emplace_back(), true};
}

/// The slot that the itemset has, or that is free for it.
BoundsCache::Slot& BoundsCache::slot_of(ItemSpan itemset, std::uint32_t hash) {
    std::size_t slot = hash & (slots_.size() - 1);
    while (slots_[slot].position != no_position &&
           (slots_[slot].hash != hash || !std::ranges::equal(itemsets_[slots_[slot].position], itemset))) {
        slot = (slot + 1) & (slots_.size() - 1);
    }
    return slots_[slot];
}

/// Makes room for one more itemset.
void BoundsCache::make_room() {
    if (bytes() >= most_bytes_) {
        itemsets_.clear();
        bounds_.clear();
        std::ranges::fill(slots_, Slot{});
    }
    if (2 * itemsets_.size() < slots_.size()) {
        return;
    }
    const auto fewer = std::exchange(slots_, std::vector<Slot>(2 * slots_.size()));
    for (const Slot& taken : fewer) {
        if (taken.position != no_position) {
            slot_of(itemsets_[taken.position], taken.hash) = taken;
        }
    }
}

}  // namespace korv
