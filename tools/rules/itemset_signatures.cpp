#include "rules/itemset_signatures.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace korv::tools {

namespace {

/// The columns of items, for signatures: the most frequent ones have columns of their own.
std::unordered_map<Item, std::size_t> columns_of_items(const ItemsetPool& itemsets,
                                                       const std::vector<char>& is_wanted) {
    constexpr std::size_t shared_columns = 64;
    constexpr std::size_t own_columns = Signature::columns - shared_columns;
    std::unordered_map<Item, std::size_t> frequencies;
    for (ItemsetId id = 0; id < itemsets.size(); ++id) {
        if (is_wanted[id] == 0) {
            continue;
        }
        for (const Item item : itemsets[id]) {
            ++frequencies[item];
        }
    }
    std::vector<std::pair<std::size_t, Item>> order;
    for (const auto& [item, frequency] : frequencies) {
        order.emplace_back(frequency, item);
    }
    std::ranges::sort(order, [](const auto& a, const auto& b) {
        return a.first != b.first ? a.first > b.first : a.second < b.second;
    });
    std::unordered_map<Item, std::size_t> columns;
    for (std::size_t rank = 0; rank < order.size(); ++rank) {
        columns[order[rank].second] =
            rank < own_columns ? rank : own_columns + (rank - own_columns) % shared_columns;
    }
    return columns;
}

}  // namespace

ItemsetSignatures::ItemsetSignatures(const ItemsetPool& itemsets, const std::vector<char>& is_wanted)
    : signatures_(itemsets.size()) {
    const std::unordered_map<Item, std::size_t> columns = columns_of_items(itemsets, is_wanted);
    for (ItemsetId id = 0; id < itemsets.size(); ++id) {
        if (is_wanted[id] == 0) {
            continue;
        }
        for (const Item item : itemsets[id]) {
            signatures_[id].add(columns.at(item));
        }
    }
}

}  // namespace korv::tools
