#include "common/error.h"

#include <algorithm>

namespace korv::tools {

namespace {

constexpr std::size_t most_shown = 40;

void append_shown(char c, std::string& text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= ' ' && byte != 0x7F) {
        text += c;
        return;
    }
    text += "\\x";
    text += digits[byte / 16];
    text += digits[byte % 16];
}

}  // namespace

Error input_error(std::string_view file, Place place, std::string_view found, std::string_view expected) {
    std::string message(file);
    message.append(":").append(std::to_string(place.line));
    message.append(":").append(std::to_string(place.column));
    message.append(": found ").append(found).append("; expected ").append(expected);
    return Error(message);  // NOLINT(modernize-return-braced-init-list): its constructor is explicit
}

Place place_of(std::string_view text, std::size_t position) {
    const std::string_view before = text.substr(0, position);
    const auto lines = static_cast<std::size_t>(std::ranges::count(before, '\n'));
    const std::size_t last_end = before.rfind('\n');
    return {lines + 1, last_end == std::string_view::npos ? position + 1 : position - last_end};
}

std::string shown(std::string_view text) {
    std::string result = "\"";
    for (const char c : text.substr(0, most_shown)) {
        append_shown(c, result);
    }
    result += text.size() > most_shown ? "...\"" : "\"";
    return result;
}

}  // namespace korv::tools
