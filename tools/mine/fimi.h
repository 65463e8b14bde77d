#pragma once

#include "common/text_input.h"
#include "mine/database.h"
#include "mine/database_builder.h"

namespace korv::tools {

/// Reads transactions in the FIMI format: each line is a transaction, with items as decimal numbers below
/// 2^32 and blanks or tabs between them. An item that is repeated in a transaction counts once. Lines end
/// with LF or CR LF; a line without items is an empty transaction.
class FimiReader {
public:
    /// `weighted`: each line begins with how many times the transaction occurs; see take_weight.
    explicit FimiReader(bool weighted = false) : weighted_(weighted) {}

    /// Reads the transactions of one more input, which is not needed afterwards. Throws Error, with the
    /// place, for anything but transactions, and where there are more than most_transactions.
    void add(const TextInput& input);

    /// The transactions of all inputs in their order. Call this once, last.
    Database finish() { return builder_.finish(); }

private:
    bool weighted_;
    DatabaseBuilder builder_;
};

}  // namespace korv::tools
