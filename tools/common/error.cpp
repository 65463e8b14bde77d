#include "common/error.h"

#include <algorithm>

#include "common/utf8.h"

namespace korv::tools {

namespace {

constexpr std::size_t most_shown = 40;

/// How many bytes of a text are shown: as many as 40 bytes hold whole characters.
std::size_t shown_bytes(std::string_view text) {
    if (text.size() <= most_shown) {
        return text.size();
    }
    std::size_t bytes = 0;
    for (;;) {
        const std::size_t next = std::max<std::size_t>(first_character(text.substr(bytes)).bytes, 1);
        if (bytes + next > most_shown) {
            return bytes;
        }
        bytes += next;
    }
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
    const std::size_t bytes = shown_bytes(text);
    return "\"" + printable(text.substr(0, bytes)) + (bytes < text.size() ? "...\"" : "\"");
}

}  // namespace korv::tools
