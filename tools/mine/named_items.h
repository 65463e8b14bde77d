#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/itemset.h"
#include "common/text_input.h"
#include "mine/column_dictionary.h"

namespace korv::tools {

/// Gives items numbers by their names, from 1, in the order in which the names first occur.
class NamedItems {
public:
    /// The number of the item with this name, which gets the next number when it is new. O(length).
    Item number_of(std::string_view name) { return names_.number_of(name).number + 1; }

    /// The number of items so far, which is also the largest number.
    std::size_t size() const { return names_.size(); }

    /// The names in the order of the numbers.
    std::vector<std::string> names() const;

private:
    ColumnDictionary names_;
};

/// Throws Error when a text cannot be a name, or part of one: when it holds a control character (below
/// U+0020, or from U+007F to U+009F) or bytes that are not UTF-8. `position` is where the cell with this text
/// begins in the input; the message has the place of the first such byte, or of the cell where quotes within
/// it are doubled before. O(length).
void check_name(std::string_view name, std::size_t position, const TextInput& input);

/// The text of the names file: a line for each item, with its number, TAB and its name.
std::string names_file(const std::vector<std::string>& names);

}  // namespace korv::tools
