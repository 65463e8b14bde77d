#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace korv::tools {

/// A character in UTF-8.
struct Character {
    char32_t code = 0;
    std::size_t bytes = 0;  ///< 1 to 4; 0 for what is no character
};

/// The first character of a text. It has no bytes where the text is empty, or begins with bytes that are no
/// character: one that is cut off or written with more bytes than it needs, a surrogate, or one beyond
/// U+10FFFF.
Character first_character(std::string_view text);

/// A text of unknown origin with U+FFFD for each byte that is not UTF-8.
std::string valid_utf8(std::string_view text);

}  // namespace korv::tools
