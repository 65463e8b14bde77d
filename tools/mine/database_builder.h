#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "mine/database.h"

namespace korv::tools {

/// Turns transactions, one after the other, into a Database.
class DatabaseBuilder {
public:
    /// Adds an item to the transaction that was begun last. To add it again has no effect. Amortized O(1).
    void add(Item item) {
        std::vector<Transaction>& transactions = database_.items[position_of(item)].transactions;
        const Transaction current = database_.lines - 1;
        if (transactions.empty() || transactions.back() != current) {
            append(current, transactions);
        }
    }

    /// Begins a transaction that occurs `weight` times, at least once. It stays empty unless items are added.
    /// Throws Error where that makes more than most_transactions.
    void begin_transaction(Count weight = 1);

    /// The database of all transactions. Call this once, last.
    Database finish();

private:
    /// Items below this number are looked up in a table rather than by a hash.
    static constexpr Item small_items = Item{1} << 20;
    static constexpr std::uint32_t nowhere = 0xFFFFFFFF;

    std::size_t position_of(Item item) {
        const bool is_known = item < small_positions_.size() && small_positions_[item] != nowhere;
        return is_known ? small_positions_[item] : position_of_other(item);
    }
    std::size_t position_of_other(Item item);

    static void append(Transaction transaction, std::vector<Transaction>& transactions) {
        if (transactions.size() == transactions.capacity()) {
            // Grows by a half: freed memory fits a later column, as it never would if it doubled.
            transactions.reserve(transactions.size() + transactions.size() / 2 + 4);
        }
        transactions.push_back(transaction);
    }

    Database database_;
    // Where items are in `database_.items`, which are not sorted yet:
    std::vector<std::uint32_t> small_positions_;  ///< by item; `nowhere` for those that did not occur
    std::unordered_map<Item, std::size_t> large_positions_;
};

}  // namespace korv::tools
