#pragma once

#include <map>
#include <string>

#include "base/itemset.h"
#include "common/text_input.h"

namespace korv::tools {

/// Reads a names file: a line for each item, with its number, a tab and its name, in any order. The last line
/// end may be missing, and lines may end with CR LF. Throws Error, with the place, for any other line, for a
/// name that is empty, not UTF-8 or holds a control character, for an item that comes again, and for a name
/// that another item has.
std::map<Item, std::string> read_names(const TextInput& input);

}  // namespace korv::tools
