#pragma once

#include <unordered_map>

#include "base/itemset.h"
#include "engine/classes.h"
#include "mine/database.h"

namespace korv::tools {

/// The supports of single items, as far as they are known.
using ItemSupports = std::unordered_map<Item, Count>;

/// The supports of the items that are keys by themselves. O(keys).
ItemSupports supports_of_items(const ClassMap& classes);

/// The supports of all items of a database. O(occurrences of items).
ItemSupports supports_of_items(const Database& database);

}  // namespace korv::tools
