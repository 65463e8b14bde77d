#include "common/printable.h"

#include <algorithm>
#include <array>

namespace korv::tools {

namespace {

/// What the first byte of a character looks like, by the number of bytes of the character.
struct Form {
    unsigned char mask;
    unsigned char value;
    std::size_t bytes;
    char32_t smallest;  ///< of all code points that need so many bytes
};

constexpr std::array<Form, 4> forms = {{
    {0x80, 0x00, 1, 0x0},
    {0xE0, 0xC0, 2, 0x80},
    {0xF0, 0xE0, 3, 0x800},
    {0xF8, 0xF0, 4, 0x10000},
}};

struct Range {
    char32_t first;
    char32_t last;
};

constexpr std::array<Range, 6> not_shown = {{
    {0x00, 0x1F},      // control characters
    {0x7F, 0x9F},      // delete, and more control characters
    {0x61C, 0x61C},    // a mark of direction
    {0x200E, 0x200F},  // marks of direction
    {0x2028, 0x202E},  // line and paragraph separators, embeddings and overrides of direction
    {0x2066, 0x2069},  // isolates of direction
}};

/// A code point, and the number of bytes that it takes in a text.
struct Character {
    char32_t code = 0;
    std::size_t bytes = 0;  ///< 0 for what is no character
};

Character first_character(std::string_view text) {
    constexpr Range surrogates = {0xD800, 0xDFFF};
    constexpr char32_t largest = 0x10FFFF;
    if (text.empty()) {
        return {};
    }
    const auto lead = static_cast<unsigned char>(text.front());
    const auto* const form =
        std::ranges::find_if(forms, [lead](const Form& each) { return (lead & each.mask) == each.value; });
    if (form == forms.end() || text.size() < form->bytes) {
        return {};
    }
    auto code = static_cast<char32_t>(lead & static_cast<unsigned char>(~form->mask));
    for (const char each : text.substr(1, form->bytes - 1)) {
        const auto byte = static_cast<unsigned char>(each);
        if ((byte & 0xC0U) != 0x80U) {
            return {};
        }
        code = code << 6U | (byte & 0x3FU);
    }
    const bool is_surrogate = code >= surrogates.first && code <= surrogates.last;
    if (code < form->smallest || code > largest || is_surrogate) {
        return {};
    }
    return {code, form->bytes};
}

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

std::size_t character_bytes(std::string_view text) {
    return first_character(text).bytes;
}

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
