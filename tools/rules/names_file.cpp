#include "rules/names_file.h"

#include <cstddef>
#include <string_view>
#include <unordered_map>

#include "base/number_text.h"
#include "common/error.h"
#include "common/lines.h"
#include "mine/named_items.h"

namespace korv::tools {

namespace {

std::size_t position_in(std::string_view part, const TextInput& input) {
    return static_cast<std::size_t>(part.data() - input.text.data());
}

/// Throws Error about a part of the input.
[[noreturn]] void fail(std::string_view part, const TextInput& input, const std::string& found,
                       const std::string& expected) {
    throw input_error(input.name, place_of(input.text, position_in(part, input)), found, expected);
}

std::string found_in(std::string_view part) {
    return part.empty() ? "nothing" : shown(part);
}

/// The number at the beginning of a line, which is taken out with the tab behind it.
Item take_item(std::string_view& line, const TextInput& input) {
    const std::string_view word = line.substr(0, line.find('\t'));
    const auto item = parse_number<Item>(word);
    if (!item) {
        fail(word, input, found_in(word), "an item number");
    }
    line.remove_prefix(word.size());
    if (line.empty()) {
        fail(line, input, "nothing behind the item number", "a tab and a name");
    }
    line.remove_prefix(1);
    return *item;
}

}  // namespace

std::map<Item, std::string> read_names(const TextInput& input) {
    std::map<Item, std::string> names;
    std::unordered_map<std::string_view, Item> items;
    for_each_line(input.text, [&](std::string_view line) {
        const std::string_view whole = line;
        const Item item = take_item(line, input);
        if (line.empty()) {
            fail(line, input, "nothing", "a name");
        }
        check_name(line, position_in(line, input), input);
        if (!names.try_emplace(item, line).second) {
            fail(whole, input, "the item " + std::to_string(item) + " again", "each item once");
        }
        const auto [earlier, is_new] = items.try_emplace(line, item);
        if (!is_new) {
            fail(line, input, "the name " + shown(line) + " of the item " + std::to_string(earlier->second),
                 "a different name for each item");
        }
    });
    return names;
}

}  // namespace korv::tools
