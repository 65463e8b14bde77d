#pragma once

#include "common/text_input.h"
#include "mine/database.h"

namespace korv::tools {

/// Reads baskets: each line is a transaction, with names of items and `separator` between them. A name that
/// holds the separator is in double quotes. Items are numbered from 1 in the order in which they first occur.
/// Cells without a name are ignored, and a name that is repeated in a transaction counts once; a line without
/// names is an empty transaction. Throws Error, with the place, when the input does not have this form, and
/// when there is no item at all.
Database read_basket(const TextInput& input, char separator);

}  // namespace korv::tools
