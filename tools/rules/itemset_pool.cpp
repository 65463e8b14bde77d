#include "rules/itemset_pool.h"

#include <algorithm>
#include <utility>

#include "base/itemset_hash.h"
#include "common/error.h"

namespace korv::tools {

ItemsetId ItemsetPool::intern(ItemSpan itemset) {
    constexpr std::size_t most_itemsets = std::size_t{1} << 31;  // a Side has a bit for its sign
    if (itemsets_.size() * 2 >= slots_.size()) {
        grow();
    }
    const auto hash = static_cast<std::uint32_t>(hash_of(itemset));
    Slot& slot = slots_[slot_of(itemset, hash)];
    if (slot.id == no_itemset) {
        if (itemsets_.size() == most_itemsets) {
            throw Error(
                "there are more than 2,147,483,648 different sides of rules; expected fewer: a "
                "higher --min-support or a smaller --max-items helps");
        }
        slot = {static_cast<ItemsetId>(itemsets_.size()), hash};
        itemsets_.push_back(itemset);
    }
    return slot.id;
}

std::optional<ItemsetId> ItemsetPool::find(ItemSpan itemset) const {
    if (slots_.empty()) {
        return {};
    }
    const ItemsetId id = slots_[slot_of(itemset, static_cast<std::uint32_t>(hash_of(itemset)))].id;
    return id == no_itemset ? std::optional<ItemsetId>() : id;
}

/// The position of the slot of an itemset, or of the empty one where it belongs.
std::size_t ItemsetPool::slot_of(ItemSpan itemset, std::uint32_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
        const Slot& slot = slots_[i];
        if (slot.id == no_itemset || (slot.hash == hash && std::ranges::equal(itemsets_[slot.id], itemset))) {
            return i;
        }
    }
}

void ItemsetPool::grow() {
    const std::vector<Slot> before =
        std::exchange(slots_, std::vector<Slot>(std::max(first_slots, slots_.size() * 2)));
    const std::size_t mask = slots_.size() - 1;
    for (const Slot& slot : before) {
        if (slot.id == no_itemset) {
            continue;
        }
        std::size_t i = slot.hash & mask;
        while (slots_[i].id != no_itemset) {
            i = (i + 1) & mask;
        }
        slots_[i] = slot;
    }
}

}  // namespace korv::tools
