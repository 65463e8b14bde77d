#include "rules/column_facts.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace korv::tools {

namespace {

/// The sum of the supports of items; nothing where one of them is not known.
std::optional<std::uint64_t> sum_of_supports(const Itemset& items, const ItemSupports& supports) {
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

/// Whether two of the items must meet, since together they are in at most so many transactions. The supports
/// of some items may not be known.
bool have_common_transactions(const Itemset& items, const ItemSupports& supports, Count support_of_all) {
    std::uint64_t largest = 0;
    std::uint64_t second = 0;
    for (const Item item : items) {
        const auto found = supports.find(item);
        const std::uint64_t support = found == supports.end() ? 0 : found->second;
        second = std::max(second, std::min(largest, support));
        largest = std::max(largest, support);
    }
    return largest + second > support_of_all;
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
    const ItemSupports supports = supports_of_items(classes);
    std::set<const ItemNames::Column*> not_exclusive;
    std::map<const ItemNames::Column*, Itemset> by_column;
    for (const auto& [itemset, of_class] : classes) {
        by_column.clear();
        for (const Item item : itemset) {
            if (const ItemNames::Column* const column = names.column_of(item)) {
                by_column[column].push_back(item);
            }
        }
        for (const auto& [column, items] : by_column) {
            if (have_common_transactions(items, supports, of_class.support)) {
                not_exclusive.insert(column);
            }
        }
    }
    for (const ItemNames::Column& column : names.columns()) {
        if (!not_exclusive.contains(&column) &&
            !have_common_transactions(column.items, supports, transactions)) {
            add(column.items, supports, transactions);
        }
    }
}

ColumnFacts::ColumnFacts(const ItemNames& names, const Database& database) {
    if (names.columns().empty()) {
        return;
    }
    const ItemSupports supports = supports_of_items(database);
    for (const ItemNames::Column& column : names.columns()) {
        if (!meet(column.items, database)) {
            add(column.items, supports, database.transactions);
        }
    }
}

/// Adds an exclusive column.
void ColumnFacts::add(const Itemset& items, const ItemSupports& supports, Count transactions) {
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

Itemset ColumnFacts::named_items(const WordedSide& side) const {
    std::map<const Column*, Itemset> by_column;
    for (const Item item : side.items) {
        by_column[column_of(item)].push_back(item);
    }
    Itemset named;
    for (const auto& [column, items] : by_column) {
        const WordedItemset itemset = worded(items);
        const WordedSide said = itemset.side(side.is_negated);
        named.insert(named.end(), said.items.begin(), said.items.end());
    }
    return named;
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

bool ColumnFacts::share_a_column(ItemSpan one, ItemSpan other) const {
    const auto is_in_other = [&](const Column* column) {
        return column != nullptr &&
               std::ranges::any_of(other, [&](Item item) { return column_of(item) == column; });
    };
    return !columns_.empty() &&
           std::ranges::any_of(one, [&](Item item) { return is_in_other(column_of(item)); });
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
