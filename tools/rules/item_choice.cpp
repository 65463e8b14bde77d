#include "rules/item_choice.h"

#include <algorithm>

#include "rules/item_pattern.h"

namespace korv::tools {

namespace {

/// So that one large number does not make a bitmap of 512 MiB.
constexpr Item end_of_small = Item{1} << 24;

}  // namespace

ItemChoice::ItemSet::ItemSet(const Itemset& items) {
    for (const Item item : items) {
        if (item >= end_of_small) {
            large_.push_back(item);
            continue;
        }
        small_.resize(std::max(small_.size(), words_for(std::size_t{item} + 1)));
        small_[word_of(item)] |= bit_of(item);
    }
    std::ranges::sort(large_);
}

bool ItemChoice::ItemSet::contains(Item item) const {
    if (item >= end_of_small) {
        return std::ranges::binary_search(large_, item);
    }
    return word_of(item) < small_.size() && (small_[word_of(item)] & bit_of(item)) != 0;
}

bool ItemChoice::ItemSet::meets(ItemSpan items) const {
    return std::ranges::any_of(items, [&](Item item) { return contains(item); });
}

ItemChoice::ItemChoice(std::span<const PatternWord> patterns, ItemSpan items, const ItemNames& names) {
    for (const PatternWord& pattern : patterns) {
        demands_.push_back(
            {ItemSet(matching_items(pattern, items, names)), pattern.place, pattern.is_wanted});
    }
}

bool ItemChoice::is_met(const Demand& demand, ItemSpan premise, ItemSpan conclusion) {
    const bool has_item = (demand.place != PatternPlace::conclusion && demand.items.meets(premise)) ||
                          (demand.place != PatternPlace::premise && demand.items.meets(conclusion));
    return has_item == demand.is_wanted;
}

bool ItemChoice::holds(ItemSpan premise, ItemSpan conclusion) const {
    return std::ranges::all_of(demands_,
                               [&](const Demand& demand) { return is_met(demand, premise, conclusion); });
}

}  // namespace korv::tools
