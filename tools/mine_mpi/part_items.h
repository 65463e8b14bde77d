#pragma once

#include <cstdint>
#include <vector>

#include "mine/rank_order.h"
#include "mine/ranked_items.h"
#include "mine_mpi/part_reading.h"
#include "mine_mpi/processes.h"

namespace korv::tools {

/// The items of a database that is divided among processes, as the walk takes them: see RankedItems.
struct PartItems {
    /// Items, supports and order are those of the whole database, lines and transactions those of this
    /// process; so an item can have no transactions here.
    RankedItems ranked;
    RankOrder order;                ///< of these items
    std::uint64_t lines = 0;        ///< of the whole database
    std::uint64_t occurrences = 0;  ///< of these items in them
};

/// Ranks the items of the whole database as ranked_items does. `part` must outlive the result.
PartItems rank_part(Processes& processes, const PartOfDatabase& part, Count least_in_essentials,
                    Count least_in_closures);

/// A number that is the same however the transactions are divided, ordered or grouped, and that other items
/// or other transactions hardly ever share. O(lines + occurrences); takes 8 bytes a line while it works.
std::uint64_t fingerprint(Processes& processes, const PartItems& items);

/// Whether to represent sets of lines as bit vectors, as mine() decides it for the whole database.
bool is_dense(const PartItems& items);

}  // namespace korv::tools
