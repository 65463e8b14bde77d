#pragma once

#include <string>
#include <vector>

#include "base/itemset.h"

namespace korv::tools {

/// The number of a transaction, from 0.
using Transaction = Count;

/// A transaction database, item by item.
struct Database {
    struct ItemColumn {
        Item item;                              ///< its number in the class file
        std::vector<Transaction> transactions;  ///< those that hold it: ascending, each once, at least one
    };

    std::vector<ItemColumn> items;   ///< by item, ascending
    Count transactions = 0;          ///< all of them, including empty ones
    std::vector<std::string> names;  ///< of `items`, in their order; empty when items have no names
};

}  // namespace korv::tools
