#include "mine/database_builder.h"

#include <algorithm>
#include <utility>

namespace korv::tools {

void DatabaseBuilder::add(Item item) {
    const auto [position, is_new] = positions_.try_emplace(item, database_.items.size());
    if (is_new) {
        database_.items.push_back({item, {}});
    }
    const Transaction current = database_.lines - 1;
    std::vector<Transaction>& transactions = database_.items[position->second].transactions;
    if (transactions.empty() || transactions.back() != current) {
        transactions.push_back(current);
    }
}

Database DatabaseBuilder::finish() {
    std::ranges::sort(database_.items, {}, &Database::ItemColumn::item);
    return std::move(database_);
}

}  // namespace korv::tools
