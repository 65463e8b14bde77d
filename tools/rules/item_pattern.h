#pragma once

#include "base/itemset.h"
#include "rules/item_names.h"
#include "rules/rule_request.h"

namespace korv::tools {

/// Which of `items` a pattern of --with and the like matches, in their order. A pattern is one or more of the
/// following, with `|` between two of them:
///
/// - the name of an item, in which `*` stands for any characters and `?` for one; a backslash before one of
///   * ? | # / \ takes that as it is;
/// - `/EXPRESSION/`, a regular expression (RE2) that is searched in names, or `/EXPRESSION/i`, which ignores
///   case; a backslash takes the next slash into the expression;
/// - `#NUMBER`, the number of an item.
///
/// What is exactly the name of an item is that item, whatever else it could mean: the whole pattern, or a
/// part. Throws Error, which names the option and the nearest names, for a part that matches no item, and for
/// a pattern that is not as above.
Itemset matching_items(const PatternWord& pattern, ItemSpan items, const ItemNames& names);

}  // namespace korv::tools
