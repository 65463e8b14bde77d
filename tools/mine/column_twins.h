#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "mine/database.h"

namespace korv::tools {

/// Groups of columns whose items are in the same transactions: one column is the other with other words. A
/// column is the items from the end of the column before to its own end; one without items is in no group.
/// Groups have at least two columns, ascending, and are in the order of their first. Costs one pass over all
/// transactions of all items.
std::vector<std::vector<std::size_t>> twin_columns(const std::vector<Database::ItemColumn>& items,
                                                   std::span<const std::size_t> ends);

}  // namespace korv::tools
