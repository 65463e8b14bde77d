#include "mine/named_items.h"

#include <algorithm>
#include <cstdint>

#include "common/error.h"
#include "common/utf8.h"

namespace korv::tools {

namespace {

/// The first byte that cannot be in a name; the size of the text where there is none.
std::size_t first_unusable(std::string_view text) {
    std::size_t position = 0;
    while (position < text.size()) {
        const Character next = first_character(text.substr(position));
        const bool is_control = next.code < 0x20 || (next.code >= 0x7F && next.code <= 0x9F);
        if (next.bytes == 0 || is_control) {
            break;
        }
        position += next.bytes;
    }
    return position;
}

/// Where a byte of a cell's text is in the input: behind the opening quote where there is one, and unknown
/// where quotes before it are doubled. Then, that of the cell.
std::size_t position_in_input(std::string_view name, std::size_t offset, std::size_t position,
                              std::string_view input) {
    const std::string_view before = name.substr(0, offset + 1);
    const std::size_t begin = position + (input.substr(position).starts_with('"') ? 1 : 0);
    return input.substr(std::min(begin, input.size())).starts_with(before) ? begin + offset : position;
}

}  // namespace

std::vector<std::string> NamedItems::names() const {
    std::vector<std::string> names;
    names.reserve(size());
    for (std::uint32_t number = 0; number < size(); ++number) {
        names.emplace_back(names_.text(number));
    }
    return names;
}

void check_name(std::string_view name, std::size_t position, const TextInput& input) {
    const std::size_t offset = first_unusable(name);
    if (offset < name.size()) {
        const Place place = place_of(input, position_in_input(name, offset, position, input.text));
        const bool is_utf8 = first_character(name.substr(offset)).bytes > 0;
        throw input_error(input.name, place, shown(name),
                          is_utf8 ? "a name without control characters, such as tabs and line ends"
                                  : "a name in UTF-8 (iconv converts other encodings)");
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
