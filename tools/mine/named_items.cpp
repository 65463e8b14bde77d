#include "mine/named_items.h"

#include "common/error.h"

namespace korv::tools {

Item NamedItems::number_of(const std::string& name) {
    const auto [position, is_new] = numbers_.try_emplace(name, static_cast<Item>(names_.size() + 1));
    if (is_new) {
        names_.push_back(name);
    }
    return position->second;
}

void check_name(std::string_view name, std::size_t position, const TextInput& input) {
    constexpr std::string_view forbidden("\t\n\r\0", 4);
    if (name.find_first_of(forbidden) != std::string_view::npos) {
        throw input_error(input.name, place_of(input.text, position), shown(name),
                          "a name in UTF-8 without tabs, line ends and NUL bytes");
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
