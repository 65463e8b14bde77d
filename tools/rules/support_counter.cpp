#include "rules/support_counter.h"

#include <algorithm>

namespace korv::tools {

namespace {

constexpr std::size_t no_row = ~std::size_t{0};

/// Whether a bit vector takes no more memory than the list.
bool is_dense(const Database::ItemColumn& column, const Database& database) {
    return column.transactions.size() * sizeof(Transaction) * 8 >= database.lines;
}

}  // namespace

SupportCounter::SupportCounter(const Database& database) : database_(database) {
    std::size_t rows = 0;
    for (const Database::ItemColumn& column : database.items) {
        items_.push_back(column.item);
        row_.push_back(is_dense(column, database) ? rows++ : no_row);
    }
    rows_.reset(rows, database.lines);
    if (!database.weights.empty()) {
        rows_.set_weights(database.weights);
    }
    for (std::size_t position = 0; position < items_.size(); ++position) {
        if (row_[position] == no_row) {
            continue;
        }
        for (const Transaction line : database.items[position].transactions) {
            rows_.insert(row_[position], line);
        }
    }
}

Count SupportCounter::count(ItemSpan itemset) const {
    std::vector<BitWord> met(rows_.words());  // the lines that hold an item of the itemset
    for (const Item item : itemset) {
        const auto found = std::ranges::lower_bound(items_, item);
        if (found != items_.end() && *found == item) {
            add_lines_with(static_cast<std::size_t>(found - items_.begin()), met);
        }
    }
    return rows_.both(met.data(), met.data());
}

/// Adds the lines with an item to those that are met.
void SupportCounter::add_lines_with(std::size_t position, std::vector<BitWord>& met) const {
    if (row_[position] == no_row) {
        for (const Transaction line : database_.items[position].transactions) {
            met[word_of(line)] |= bit_of(line);
        }
        return;
    }
    const BitWord* const row = rows_[row_[position]];
    for (std::size_t word = 0; word < met.size(); ++word) {
        met[word] |= row[word];
    }
}

Count CountedSupports::settle(const Itemset& itemset, SupportBounds& bounds) {
    if (const Count settled = supports_->settle(itemset, bounds); settled != 0) {
        return settled;
    }
    auto [known, is_new] = known_.try_emplace(itemset);
    if (is_new) {
        const Count counted = counter_.count(itemset);
        known = {counted, counted};
        ++counted_;
    }
    bounds = known;
    return known.lower;
}

}  // namespace korv::tools
