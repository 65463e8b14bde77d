#include "named_items.h"

#include "error.h"

namespace korv::tools {

Item NamedItems::number_of(const std::string& name) {
    const auto [position, is_new] = numbers_.try_emplace(name, static_cast<Item>(names_.size() + 1));
    if (is_new) {
        names_.push_back(name);
    }
    return position->second;
}

void check_name(const CsvCell& cell, const TextInput& input) {
    if (cell.text.find_first_of("\t\n") != std::string::npos) {
        throw input_error(input.name, place_of(input.text, cell.position), shown(cell.text),
                          "a name without tabs and line ends");
    }
}

std::string names_file(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += std::to_string(i + 1) + '\t' + names[i] + '\n';
    }
    return text;
}

}  // namespace korv::tools
