#include "check/transaction_counter.h"

#include <algorithm>

namespace korv::tools {

namespace {

constexpr std::size_t no_row = ~std::size_t{0};

/// Whether a bit vector takes no more memory than the list.
bool is_dense(const Database::ItemColumn& column, const Database& database) {
    return column.transactions.size() * sizeof(Transaction) * 8 >= database.lines;
}

}  // namespace

TransactionCounter::TransactionCounter(const Database& database) : database_(database) {
    std::size_t rows = 0;
    for (const Database::ItemColumn& column : database.items) {
        items_.push_back(column.item);
        row_.push_back(is_dense(column, database) ? rows++ : no_row);
    }
    rows_.reset(rows, database.lines);
    if (!database.weights.empty()) {
        rows_.set_weights(database.weights);
    }
    met_.resize(rows_.words());
    twice_.resize(rows_.words());
    for (std::size_t position = 0; position < items_.size(); ++position) {
        if (row_[position] == no_row) {
            continue;
        }
        for (const Transaction line : database.items[position].transactions) {
            rows_.insert(row_[position], line);
        }
    }
}

std::optional<std::size_t> TransactionCounter::position_of(Item item) const {
    const auto found = std::ranges::lower_bound(items_, item);
    return found != items_.end() && *found == item
               ? std::optional(static_cast<std::size_t>(found - items_.begin()))
               : std::nullopt;
}

bool TransactionCounter::knows(Item item) const {
    return position_of(item).has_value();
}

/// Calls `visit` with the position and the bits of words of the lines that hold an item, until it returns
/// false.
template <typename Visit>
void TransactionCounter::for_each_word(std::size_t position, Visit visit) const {
    if (row_[position] == no_row) {
        for (const Transaction line : database_.items[position].transactions) {
            if (!visit(word_of(std::size_t{line}), bit_of(line))) {
                return;
            }
        }
        return;
    }
    const BitWord* const row = rows_[row_[position]];
    for (std::size_t word = 0; word < rows_.words(); ++word) {
        if (!visit(word, row[word])) {
            return;
        }
    }
}

/// Finds the lines that hold an item of the itemset, and those that hold two.
void TransactionCounter::meet(ItemSpan itemset) {
    std::ranges::fill(met_, BitWord{0});
    std::ranges::fill(twice_, BitWord{0});
    for (const Item item : itemset) {
        if (const auto position = position_of(item)) {
            for_each_word(*position, [this](std::size_t word, BitWord bits) {
                twice_[word] |= met_[word] & bits;
                met_[word] |= bits;
                return true;
            });
        }
    }
}

Count TransactionCounter::support(ItemSpan itemset) {
    meet(itemset);
    return rows_.both(met_.data(), met_.data());
}

/// Whether all lines with an item are met.
bool TransactionCounter::is_covered(std::size_t position) const {
    bool is_covered = true;
    for_each_word(position, [&](std::size_t word, BitWord bits) {
        is_covered = (bits & ~met_[word]) == 0;
        return is_covered;
    });
    return is_covered;
}

Itemset TransactionCounter::missing_in_closure(ItemSpan itemset) {
    meet(itemset);
    Itemset missing;
    for (std::size_t position = 0; position < items_.size(); ++position) {
        if (!std::ranges::binary_search(itemset, items_[position]) && is_covered(position)) {
            missing.push_back(items_[position]);
        }
    }
    return missing;
}

std::optional<Item> TransactionCounter::needless_item(ItemSpan itemset) {
    meet(itemset);
    for (const Item item : itemset) {
        const auto position = position_of(item);
        bool is_alone = false;  // somewhere, so that it adds to the support
        if (position) {
            for_each_word(*position, [&](std::size_t word, BitWord bits) {
                is_alone = (bits & ~twice_[word]) != 0;
                return !is_alone;
            });
        }
        if (!is_alone) {
            return item;
        }
    }
    return std::nullopt;
}

}  // namespace korv::tools
