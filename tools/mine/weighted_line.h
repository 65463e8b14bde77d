#pragma once

#include <string_view>

#include "base/itemset.h"
#include "common/text_input.h"

namespace korv::tools {

/// Takes from the beginning of a line how many times its transaction occurs, as `uniq -c` writes it: blanks,
/// the number, and a blank unless the line ends there. The transaction is left in `line`, which is a part of
/// the input's text. Throws Error, with the place, where there is no whole number of at least 1.
Count take_weight(std::string_view& line, const TextInput& input);

}  // namespace korv::tools
