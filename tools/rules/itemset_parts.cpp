#include "rules/itemset_parts.h"

#include <array>
#include <bit>

namespace korv::tools {

ItemsetParts::ItemsetParts(const ItemsetPool& itemsets, const std::vector<char>& is_wanted) {
    begins_.reserve(itemsets.size() + 1);
    for (ItemsetId id = 0; id < itemsets.size(); ++id) {
        begins_.push_back(parts_.size());
        if (is_wanted[id] != 0 && itemsets[id].size() <= most_items) {
            add_parts(itemsets, is_wanted, id);
        }
    }
    begins_.push_back(parts_.size());
}

void ItemsetParts::add_parts(const ItemsetPool& itemsets, const std::vector<char>& is_wanted, ItemsetId id) {
    const ItemSpan itemset = itemsets[id];
    const auto all = (1U << itemset.size()) - 1;
    std::array<Item, most_items> part = {};
    for (unsigned chosen = 1; chosen < all; ++chosen) {
        std::size_t size = 0;
        for (unsigned rest = chosen; rest != 0; rest &= rest - 1) {
            part[size++] = itemset[static_cast<std::size_t>(std::countr_zero(rest))];
        }
        const std::optional<ItemsetId> found = itemsets.find(ItemSpan(part).first(size));
        if (found && is_wanted[*found] != 0) {
            parts_.push_back(*found);
        }
    }
    parts_.push_back(id);
}

}  // namespace korv::tools
