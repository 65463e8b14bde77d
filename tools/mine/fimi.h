#pragma once

#include "common/text_input.h"
#include "mine/database.h"

namespace korv::tools {

/// Reads transactions in the FIMI format: each line is a transaction, with items as decimal numbers below
/// 2^32 and blanks or tabs between them. An item that is repeated in a transaction counts once. Lines end
/// with LF or CR LF; a line without items is an empty transaction. Throws Error, with the place, for anything
/// else, and when there is no item at all.
Database read_fimi(const TextInput& input);

}  // namespace korv::tools
