#pragma once

#include <map>
#include <string>

#include "base/itemset.h"
#include "mine/database.h"

namespace korv::tools {

/// Gives the items of a database the numbers that they have in `names`, by their names; those that are not
/// there get numbers above all others. Nothing changes where not a single name is in both, nor in a database
/// without names: then its items are known by their numbers. O(items * log items).
void number_by_names(const std::map<Item, std::string>& names, Database& database);

}  // namespace korv::tools
