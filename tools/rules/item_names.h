#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/itemset.h"

namespace korv::tools {

/// The names of items. An item without a name is named by its number.
class ItemNames {
public:
    ItemNames() = default;
    explicit ItemNames(std::map<Item, std::string> names);

    /// The name of an item, or its number.
    std::string name(Item item) const;

    /// A column of a table: items whose names have the form column=value, at least two of one column. The
    /// first equals sign ends the name of the column.
    struct Column {
        std::string name;
        Itemset items;  ///< ascending
    };

    /// All columns, by name.
    const std::vector<Column>& columns() const { return columns_; }

    /// The column of an item; nullptr when it is in none.
    const Column* column_of(Item item) const;

    /// The value of an item that is in a column: what follows the equals sign in its name.
    std::string_view value(Item item) const;

    /// All names by item.
    const std::map<Item, std::string>& all() const { return names_; }

private:
    std::map<Item, std::string> names_;
    std::vector<Column> columns_;
    std::map<Item, std::size_t> column_of_;  ///< position in `columns_`
};

}  // namespace korv::tools
