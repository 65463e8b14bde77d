#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "engine/classes.h"

namespace korv::tools {

/// What korv reads from a place of a class file on.
struct KorvRecord {
    Itemset closed_itemset;
    data of_class;
    std::size_t end = 0;    ///< where it reads on
    bool is_class = false;  ///< whether it has an item; korv reads nothing behind a record that has none
};

/// Reads a record from `begin` on, by korv's own reader. O(bytes of the record).
KorvRecord read_as_korv(std::string_view text, std::size_t begin);

/// What was read, in words: "the class 1 2 with support 5 and the essential itemsets {1} and {2 3}". Long
/// itemsets and lists are cut off.
std::string description(const KorvRecord& record);

}  // namespace korv::tools
