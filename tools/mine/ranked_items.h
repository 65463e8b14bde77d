#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "mine/database.h"

namespace korv::tools {

/// The position of an item in RankedItems.
using Rank = std::uint32_t;

/// The items of a database as the walk takes them.
///
/// Items in the same transactions are one here: no essential itemset holds two of them, each can stand for
/// the others in any, and a closure holds all of them or none. Those that can be in essential itemsets come
/// first, by rising support, so that the most common ones, which leave the fewest candidates essential, have
/// the most of them.
struct RankedItems {
    std::vector<Itemset> items;                              ///< by rank: ascending, at least one
    std::vector<std::span<const Transaction>> transactions;  ///< by rank: ascending, in the database
    std::vector<Count> supports;                             ///< by rank: in transactions
    Rank frequent = 0;                                       ///< so many ranks have frequent items
    Count lines = 0;                                         ///< of the database
    std::span<const Count> weights;                          ///< of its lines; empty when each is 1

    Rank size() const { return static_cast<Rank>(items.size()); }

    /// For how many transactions a line stands.
    Count weight(Transaction line) const { return weights.empty() ? 1 : weights[line]; }
};

/// The number of transactions that hold an item.
Count support_of(const Database::ItemColumn& column, const Database& database);

/// Items in the same transactions: positions in a list of items, ascending.
using Twins = std::vector<std::size_t>;

/// The wanted items, positions in `items`, each with its twins among them, in the order of their first ones.
std::vector<Twins> with_twins(const std::vector<Database::ItemColumn>& items,
                              const std::vector<std::size_t>& wanted);

/// Puts groups of twins, which are in the order of their first items, into that of their ranks. `supports`:
/// of the items, in transactions. Returns how many groups are of frequent items, which are in at least
/// `least_in_essentials`.
Rank rank_groups(std::vector<Twins>& groups, const std::vector<Count>& supports, Count least_in_essentials);

/// Ranks the items in at least `least_in_essentials` transactions, which are the frequent ones, and behind
/// them the others in at least `least_in_closures`. `database` must outlive the result.
RankedItems ranked_items(const Database& database, Count least_in_essentials, Count least_in_closures);

}  // namespace korv::tools
