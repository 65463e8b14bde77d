#pragma once

#include <cstdint>
#include <numeric>
#include <random>
#include <vector>

#include "mine/database.h"

namespace korv::tools {

/// A set of items or of transactions: bit k stands for the k-th.
using Set = std::uint32_t;

/// Transactions over a few items, as sets of items.
using Transactions = std::vector<Set>;

/// Up to `most` transactions, at least one; each item in about one of `one_in`.
inline Transactions random_transactions(std::size_t items, std::size_t most, std::uint32_t one_in,
                                        std::mt19937& random) {
    Transactions transactions(1 + random() % most);
    for (Set& transaction : transactions) {
        for (std::size_t item = 0; item < items; ++item) {
            transaction |= random() % one_in == 0 ? Set{1} << item : Set{0};
        }
    }
    return transactions;
}

/// Items are numbered 10, 11 and so on. `weights`: for how many transactions each of these stands; empty for
/// one each.
inline Database database_of(const Transactions& transactions, const std::vector<Count>& weights = {}) {
    Database database;
    database.lines = static_cast<Count>(transactions.size());
    database.weights = weights;
    database.transactions =
        weights.empty() ? database.lines : std::accumulate(weights.begin(), weights.end(), Count{0});
    for (Item item = 0; item < 32; ++item) {
        std::vector<Transaction> holding;
        for (Transaction transaction = 0; transaction < transactions.size(); ++transaction) {
            if ((transactions[transaction] >> item & 1U) != 0) {
                holding.push_back(transaction);
            }
        }
        if (!holding.empty()) {
            database.items.push_back({10 + item, holding});
        }
    }
    return database;
}

}  // namespace korv::tools
