#pragma once

#include <map>
#include <string>
#include <vector>

#include "mine/database.h"

namespace korv::tools {

/// The transactions of each item, by its name.
using NamedColumns = std::map<std::string, std::vector<Transaction>>;

inline NamedColumns named_columns(const Database& database) {
    NamedColumns columns;
    for (std::size_t i = 0; i < database.items.size(); ++i) {
        columns[database.names.at(i)] = database.items[i].transactions;
    }
    return columns;
}

}  // namespace korv::tools
