#pragma once

#include <functional>
#include <istream>
#include <utility>
#include <vector>

#include "base/itemset.h"
#include "engine/classes.h"

namespace korv {

/// Records of a class file, in its order: closed itemset and data.
using Records = std::vector<std::pair<Itemset, data>>;

/// The classes of the records; of two records of the same closed itemset the later one stays. No threshold is
/// applied. O(total length of the itemsets + records * log records).
ClassMap to_classes(Records records);

/// The classes of the records that `read_record` reads, one at each call, until it returns false.
ClassMap read_classes(const std::function<bool(Itemset& itemset, data& of_class)>& read_record);

/// The classes of a class file: of its records up to its end, or to the first one without items. See
/// ClassFileReader for what becomes of malformed records.
ClassMap read_classes(std::istream& input);

}  // namespace korv
