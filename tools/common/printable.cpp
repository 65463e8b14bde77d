#include "common/printable.h"

#include <algorithm>
#include <array>

#include "common/utf8.h"

namespace korv::tools {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

constexpr std::array<Range, 9> not_shown = {{
    {0x00, 0x1F},      // control characters
    {0x7F, 0x9F},      // delete, and more control characters
    {0x61C, 0x61C},    // a mark of direction
    {0x200B, 0x200B},  // a blank of no width
    {0x200E, 0x200F},  // marks of direction
    {0x2028, 0x202E},  // line and paragraph separators, embeddings and overrides of direction
    {0x2060, 0x2060},  // what joins words, of no width
    {0x2066, 0x2069},  // isolates of direction
    {0xFEFF, 0xFEFF},  // the byte-order mark
}};

bool is_shown(const Character& character) {
    return character.bytes > 0 && std::ranges::none_of(not_shown, [&character](const Range& range) {
               return character.code >= range.first && character.code <= range.last;
           });
}

void append_spelt(std::string_view bytes, std::string& text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    for (const char each : bytes) {
        const auto byte = static_cast<unsigned char>(each);
        text += "\\x";
        text += digits[byte / 16];
        text += digits[byte % 16];
    }
}

}  // namespace

std::string printable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const Character character = first_character(text);
        const std::string_view bytes = text.substr(0, std::max<std::size_t>(character.bytes, 1));
        if (is_shown(character)) {
            result += bytes;
        } else {
            append_spelt(bytes, result);
        }
        text.remove_prefix(bytes.size());
    }
    return result;
}

}  // namespace korv::tools
