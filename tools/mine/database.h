#pragma once

#include <string>
#include <vector>

#include "base/itemset.h"

namespace korv::tools {

/// The number of a line of the input, from 0: of a transaction, or of several equal ones (see
/// Database::weights).
using Transaction = Count;

/// The largest number of transactions in a database.
inline constexpr Count most_transactions = 2147483647;

/// A transaction database, item by item.
struct Database {
    struct ItemColumn {
        Item item;                              ///< its number in the class file
        std::vector<Transaction> transactions;  ///< those that hold it: ascending, each once, at least one
    };

    std::vector<ItemColumn> items;  ///< by item, ascending
    Count lines = 0;                ///< all of them, including empty ones
    /// For how many transactions each line stands; empty when each stands for one.
    std::vector<Count> weights;
    Count transactions = 0;          ///< N: the sum of the weights; at most most_transactions
    std::vector<std::string> names;  ///< of `items`, in their order; empty when items have no names
};

}  // namespace korv::tools
