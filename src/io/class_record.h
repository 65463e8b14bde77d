#pragma once

#include <string>
#include <vector>

#include "base/itemset.h"

namespace korv {

/// Appends a record of a class file: the items of `closed_itemset`, TAB, the support, TAB, the essential
/// itemsets, each with a blank before it and a comma behind it, and a line end. Items and essential itemsets
/// keep their order. There must be at least one essential itemset.
void append_class_record(const Itemset& closed_itemset, Count support, const std::vector<Itemset>& essentials,
                         std::string& text);

}  // namespace korv
