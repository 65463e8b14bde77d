#pragma once

#include "common/text_input.h"
#include "mine/database.h"

namespace korv::tools {

/// Reads baskets: one transaction a line, names of items with `separator` between them, in double quotes
/// where a name holds it. Items are numbered from 1 in the order in which they first come up. Cells without a
/// name are left out, and a name that is repeated in a transaction counts once; a line without names is an
/// empty transaction. Throws Error, with the place, at what is no such file, and when there is no item at
/// all.
Database read_basket(const TextInput& input, char separator);

}  // namespace korv::tools
