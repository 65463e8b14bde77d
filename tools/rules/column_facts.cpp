#include "rules/column_facts.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <utility>

#include "mine/ranked_items.h"

namespace korv::tools {

namespace {

/// The sum of the supports of items; nothing where one of them is not known.
std::optional<std::uint64_t> sum_of_supports(const Itemset& items,
                                             const std::unordered_map<Item, Count>& supports) {
    std::uint64_t sum = 0;
    for (const Item item : items) {
        const auto found = supports.find(item);
        if (found == supports.end()) {
            return std::nullopt;
        }
        sum += found->second;
    }
    return sum;
}

/// The keys of a class that have so many items, in no order.
template <typename Visit>
void for_each_key(const ClassMap& classes, std::size_t size, Visit visit) {
    for (const auto& [itemset, of_class] : classes) {
        if (of_class.essentials.empty() && itemset.size() == size) {
            visit(itemset, of_class.support);
        }
        for (const Itemset& essential : of_class.essentials) {
            if (essential.size() == size) {
                visit(essential, of_class.support);
            }
        }
    }
}

/// Whether two items of the database meet in a transaction: those of `items`, all of one column.
bool meet(const Itemset& items, const Database& database) {
    std::vector<bool> is_taken(database.lines);
    for (const Database::ItemColumn& column : database.items) {
        if (!std::ranges::binary_search(items, column.item)) {
            continue;
        }
        for (const Transaction transaction : column.transactions) {
            if (is_taken[transaction]) {
                return true;
            }
            is_taken[transaction] = true;
        }
    }
    return false;
}

}  // namespace

ColumnFacts::ColumnFacts(const ItemNames& names, const ClassMap& classes, Count transactions) {
    if (names.columns().empty()) {
        return;
    }
    Supports supports;
    for_each_key(classes, 1, [&](const Itemset& key, Count support) { supports[key.front()] = support; });
    std::vector<const ItemNames::Column*> not_exclusive;
    for_each_key(classes, 2, [&](const Itemset& key, Count support) {
        const ItemNames::Column* const column = names.column_of(key.front());
        const auto sum = sum_of_supports(key, supports);
        if (column != nullptr && column == names.column_of(key.back()) && sum && support < *sum) {
            not_exclusive.push_back(column);
        }
    });
    for (const ItemNames::Column& column : names.columns()) {
        if (std::ranges::find(not_exclusive, &column) == not_exclusive.end()) {
            add(column.items, supports, transactions);
        }
    }
}

ColumnFacts::ColumnFacts(const ItemNames& names, const Database& database) {
    if (names.columns().empty()) {
        return;
    }
    Supports supports;
    for (const Database::ItemColumn& column : database.items) {
        supports[column.item] = support_of(column, database);
    }
    for (const ItemNames::Column& column : names.columns()) {
        if (!meet(column.items, database)) {
            add(column.items, supports, database.transactions);
        }
    }
}

/// Adds an exclusive column.
void ColumnFacts::add(const Itemset& items, const Supports& supports, Count transactions) {
    for (const Item item : items) {
        column_of_[item] = columns_.size();
    }
    columns_.push_back({items, sum_of_supports(items, supports) == transactions});
}

WordedSide WordedItemset::side(bool is_negated) const {
    const bool by_rest =
        !rest.empty() && (rest.size() < items.size() || (rest.size() == items.size() && is_negated));
    return by_rest ? WordedSide{rest, !is_negated} : WordedSide{items, is_negated};
}

bool WordedItemset::is_turned() const {
    if (rest.empty() || rest.size() != items.size()) {
        return !rest.empty() && rest.size() < items.size();
    }
    return std::ranges::lexicographical_compare(rest, items);
}

WordedItemset ColumnFacts::worded(ItemSpan itemset) const {
    const Column* const column = common_column(itemset);
    if (column == nullptr || !column->is_exhaustive) {
        return {itemset};
    }
    Itemset rest;
    std::ranges::set_difference(column->items, itemset, std::back_inserter(rest));
    return {itemset, std::move(rest)};
}

bool ColumnFacts::imply(const WordedSide& premise, const WordedSide& conclusion) const {
    if (columns_.empty() || premise.is_negated == conclusion.is_negated) {
        return false;
    }
    if (premise.is_negated) {
        return cover_a_column(premise.items, conclusion.items);
    }
    const Column* const column = common_column(premise.items);
    return column != nullptr && column == common_column(conclusion.items);
}

/// The exclusive column of an item; nullptr where it has none.
const ColumnFacts::Column* ColumnFacts::column_of(Item item) const {
    const auto found = column_of_.find(item);
    return found == column_of_.end() ? nullptr : &columns_[found->second];
}

/// The exclusive column that has all items of an itemset; nullptr where there is none.
const ColumnFacts::Column* ColumnFacts::common_column(ItemSpan itemset) const {
    if (columns_.empty() || itemset.empty()) {
        return nullptr;
    }
    const Column* const column = column_of(itemset.front());
    const bool is_common = std::ranges::all_of(
        itemset, [&](Item item) { return column != nullptr && column_of(item) == column; });
    return is_common ? column : nullptr;
}

/// Whether two disjoint itemsets together hold all items of an exhaustive column.
bool ColumnFacts::cover_a_column(ItemSpan one, ItemSpan other) const {
    std::vector<std::size_t> held(columns_.size());
    for (const ItemSpan itemset : {one, other}) {
        for (const Item item : itemset) {
            if (const auto found = column_of_.find(item); found != column_of_.end()) {
                ++held[found->second];
            }
        }
    }
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (columns_[i].is_exhaustive && held[i] == columns_[i].items.size()) {
            return true;
        }
    }
    return false;
}

}  // namespace korv::tools
