#pragma once

#include <string>
#include <vector>

#include "base/itemset.h"

namespace korv::tools {

/// Appends a record of a class file: the items of `closed_itemset`, TAB, the support, TAB, the essential
/// itemsets, each behind a blank and closed by a comma, and a line end. All in the order given; at least one
/// essential itemset is needed.
void append_class_record(const Itemset& closed_itemset, Count support, const std::vector<Itemset>& essentials,
                         std::string& text);

}  // namespace korv::tools
