#include "common/utf8.h"

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

}  // namespace

Character first_character(std::string_view text) {
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
    const bool is_surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < form->smallest || code > largest || is_surrogate) {
        return {};
    }
    return {code, form->bytes};
}

std::string valid_utf8(std::string_view text) {
    constexpr std::string_view replacement = "\xEF\xBF\xBD";
    std::string valid;
    while (!text.empty()) {
        const std::size_t bytes = first_character(text).bytes;
        valid += bytes == 0 ? replacement : text.substr(0, bytes);
        text.remove_prefix(std::max<std::size_t>(bytes, 1));
    }
    return valid;
}

}  // namespace korv::tools
