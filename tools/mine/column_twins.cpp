#include "mine/column_twins.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <unordered_map>

namespace korv::tools {

namespace {

using ItemColumns = std::span<const Database::ItemColumn>;

/// The items of a column by their transactions, so that columns can be compared item by item.
std::vector<const Database::ItemColumn*> sorted(ItemColumns column) {
    std::vector<const Database::ItemColumn*> items;
    for (const Database::ItemColumn& item : column) {
        items.push_back(&item);
    }
    std::ranges::sort(
        items, {}, [](const auto* item) -> const auto& { return item->transactions; });
    return items;
}

bool are_twins(ItemColumns one, ItemColumns other) {
    return std::ranges::equal(sorted(one), sorted(other), [](const auto* a, const auto* b) {
        return a->transactions == b->transactions;
    });
}

/// Equal for twins, and seldom for other columns.
std::uint64_t fingerprint(ItemColumns column) {
    std::uint64_t result = column.size();
    for (const Database::ItemColumn& item : column) {
        const std::vector<Transaction>& transactions = item.transactions;
        std::uint64_t hash = std::accumulate(transactions.begin(), transactions.end(), std::uint64_t{0});
        hash = (hash ^ transactions.front()) * 0x9E3779B97F4A7C15;
        hash = (hash ^ (hash >> 32U) ^ transactions.size()) * 0x9E3779B97F4A7C15;
        result += hash ^ (hash >> 32U);  // whatever the order of the items
    }
    return result;
}

}  // namespace

std::vector<std::vector<std::size_t>> twin_columns(const std::vector<Database::ItemColumn>& items,
                                                   std::span<const std::size_t> ends) {
    const auto items_of = [&](std::size_t column) {
        const std::size_t begin = column == 0 ? 0 : ends[column - 1];
        return ItemColumns(items).subspan(begin, ends[column] - begin);
    };
    std::vector<std::vector<std::size_t>> groups;
    std::unordered_map<std::uint64_t, std::vector<std::size_t>> candidates;  // groups by fingerprint
    for (std::size_t column = 0; column < ends.size(); ++column) {
        if (items_of(column).empty()) {
            continue;
        }
        std::vector<std::size_t>& same_print = candidates[fingerprint(items_of(column))];
        const auto group = std::ranges::find_if(same_print, [&](std::size_t each) {
            return are_twins(items_of(groups[each].front()), items_of(column));
        });
        if (group != same_print.end()) {
            groups[*group].push_back(column);
        } else {
            same_print.push_back(groups.size());
            groups.push_back({column});
        }
    }
    std::erase_if(groups, [](const auto& group) { return group.size() == 1; });
    return groups;
}

}  // namespace korv::tools
