#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/itemset.h"
#include "common/text_input.h"

namespace korv::tools {

/// Gives items numbers by their names, from 1, in the order in which the names first occur.
class NamedItems {
public:
    /// The number of the item with this name, which gets the next number when it is new.
    Item number_of(const std::string& name);

    /// The number of items so far, which is also the largest number.
    std::size_t size() const { return names_.size(); }

    /// The names in the order of the numbers. Call this once, last.
    std::vector<std::string> names() && { return std::move(names_); }

private:
    std::unordered_map<std::string, Item> numbers_;
    std::vector<std::string> names_;
};

/// Throws Error when a text of the input, at `position`, cannot be a name, since the names file has a line
/// for each name, with a tab in it.
void check_name(std::string_view name, std::size_t position, const TextInput& input);

/// The text of the names file: a line for each item, with its number, TAB and its name.
std::string names_file(const std::vector<std::string>& names);

}  // namespace korv::tools
