#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "mine/database.h"

namespace korv::tools {

/// Turns transactions, one after the other, into a Database.
class DatabaseBuilder {
public:
    /// Adds an item to the transaction that was begun last. To add it again has no effect.
    void add(Item item);

    /// Begins a transaction. It stays empty unless items are added.
    void begin_transaction() {
        ++database_.lines;
        ++database_.transactions;
    }

    /// The database of all transactions. Call this once, last.
    Database finish();

private:
    Database database_;
    std::unordered_map<Item, std::size_t> positions_;  ///< in `database_.items`, which are not sorted yet
};

}  // namespace korv::tools
