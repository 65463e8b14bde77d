#pragma once

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/itemset.h"
#include "common/csv.h"

namespace korv::tools {

/// Numbers items by their names, from 1, in the order in which they first come up.
class NamedItems {
public:
    /// The number of the item that is called so.
    Item number_of(const std::string& name);

    /// How many there are so far: the largest number.
    std::size_t size() const { return names_.size(); }

    /// The names in the order of the numbers. To be called once, last.
    std::vector<std::string> names() && { return std::move(names_); }

private:
    std::unordered_map<std::string, Item> numbers_;
    std::vector<std::string> names_;
};

/// Throws Error when a cell cannot be part of a name: the names file has a line for each and a tab in it.
void check_name(const CsvCell& cell, const TextInput& input);

/// The names file: for each item its number, TAB and its name.
std::string names_file(const std::vector<std::string>& names);

}  // namespace korv::tools
