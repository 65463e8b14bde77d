#include "rules/support_counter.h"

#include <algorithm>
#include <cstddef>

namespace korv::tools {

namespace {

/// Whether a bit vector takes no more memory than the list.
bool is_dense(const Database::ItemColumn& column, const Database& database) {
    return column.transactions.size() * sizeof(Transaction) * 8 >= database.lines;
}

}  // namespace

SupportCounter::SupportCounter(const Database& database) {
    const auto dense = static_cast<std::size_t>(std::ranges::count_if(
        database.items, [&database](const auto& column) { return is_dense(column, database); }));
    rows_.reset(dense, database.lines);
    if (!database.weights.empty()) {
        rows_.set_weights(database.weights);
    }
    met_.resize(rows_.words());
    Row row = 0;
    for (const Database::ItemColumn& column : database.items) {
        if (!is_dense(column, database)) {
            items_.emplace(column.item, &column.transactions);
            continue;
        }
        for (const Transaction line : column.transactions) {
            rows_.insert(row, line);
        }
        items_.emplace(column.item, row);
        ++row;
    }
}

Count SupportCounter::count(ItemSpan itemset) {
    std::ranges::fill(met_, BitWord{0});
    for (const Item item : itemset) {
        const auto found = items_.find(item);
        if (found == items_.end()) {
            continue;
        }
        if (const Row* const row = std::get_if<Row>(&found->second)) {
            const BitWord* const words = rows_[*row];
            for (std::size_t word = 0; word < met_.size(); ++word) {
                met_[word] |= words[word];
            }
            continue;
        }
        for (const Transaction line : *std::get<List>(found->second)) {
            met_[word_of(line)] |= bit_of(line);
        }
    }
    return rows_.both(met_.data(), met_.data());
}

Count CountedSupports::settle(const Itemset& itemset, SupportBounds& bounds) {
    const Count known = supports_.settle(itemset, bounds);
    if (known != 0) {
        return known;
    }
    ++counted_;
    const Count counted = counter_.count(itemset);
    bounds = {counted, counted};
    return counted;
}

}  // namespace korv::tools
