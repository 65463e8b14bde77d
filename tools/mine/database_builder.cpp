#include "mine/database_builder.h"

#include <algorithm>
#include <string>
#include <utility>

#include "common/error.h"

namespace korv::tools {

std::size_t DatabaseBuilder::position_of_other(Item item) {
    const std::size_t next = database_.items.size();
    if (item >= small_items) {
        const auto [position, is_new] = large_positions_.try_emplace(item, next);
        if (is_new) {
            database_.items.push_back({item, {}});
        }
        return position->second;
    }
    if (item >= small_positions_.size()) {
        small_positions_.resize(std::size_t{item} + 1, nowhere);
    }
    small_positions_[item] = static_cast<std::uint32_t>(next);
    database_.items.push_back({item, {}});
    return next;
}

void DatabaseBuilder::begin_transaction(Count weight) {
    if (weight > most_transactions - database_.transactions) {
        throw Error("found more than " + std::to_string(most_transactions) +
                    " transactions; expected at most so many");
    }
    if (weight != 1 && database_.weights.empty()) {
        database_.weights.assign(database_.lines, 1);
    }
    if (weight != 1 || !database_.weights.empty()) {
        database_.weights.push_back(weight);
    }
    ++database_.lines;
    database_.transactions += weight;
}

Database DatabaseBuilder::finish() {
    std::ranges::sort(database_.items, {}, &Database::ItemColumn::item);
    return std::move(database_);
}

}  // namespace korv::tools
