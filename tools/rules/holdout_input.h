#pragma once

#include <string>

#include "mine/database.h"
#include "mine/reading.h"
#include "rules/item_names.h"

namespace korv::tools {

/// Reads transactions in which rules are to be counted that were found in others.
///
/// `options`: how the others were read. `names`: of their items. Where the transactions of `path` have names
/// of items, too, each item gets the number that its name has in `names`; otherwise items are known by their
/// numbers. Where an item of `names` is a bin of numbers, as of a column that was cut into so many bins
/// ("age=18..25", "age=7"), a number of the same column belongs to the bin that it lies in, or to none.
///
/// Throws Error as read_database does, and where not a single item of `path` is known by its name.
Database read_holdout(const std::string& path, const ReadingOptions& options, const ItemNames& names);

}  // namespace korv::tools
