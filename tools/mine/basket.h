#pragma once

#include <cstddef>
#include <vector>

#include "common/csv.h"
#include "common/text_input.h"
#include "mine/database.h"
#include "mine/database_builder.h"
#include "mine/named_items.h"

namespace korv::tools {

/// Reads baskets: each line is a transaction, with names of items and a separator between them. A name that
/// holds the separator is in double quotes. Items are numbered from 1 in the order in which they first occur.
/// Cells without a name are ignored, and a name that is repeated in a transaction counts once; a line without
/// names is an empty transaction.
class BasketReader {
public:
    /// `weighted`: each line begins with how many times the transaction occurs; see take_weight.
    explicit BasketReader(char separator, bool weighted = false)
        : separator_(separator), weighted_(weighted) {}

    /// Reads the baskets of one more input from the position `begin` on. The input is not needed afterwards.
    /// Throws Error, with the place, for anything but baskets, and where there are more than
    /// most_transactions.
    void add(const TextInput& input, std::size_t begin = 0);

    /// The transactions of all inputs in their order, with the names of the items, in the order of their
    /// numbers. Call this once, last.
    Database finish();

private:
    void add_items(const std::vector<CsvCell>& row, const TextInput& input);

    char separator_;
    bool weighted_;
    NamedItems items_;
    DatabaseBuilder builder_;
};

}  // namespace korv::tools
