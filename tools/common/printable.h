#pragma once

#include <string>
#include <string_view>

namespace korv::tools {

/// A text of unknown origin, such as a file name, as a terminal can show it: on one line, in the order in
/// which it is stored, and without a command to the terminal. Control characters, line separators, what
/// changes the direction of writing, byte-order marks and blanks of no width are spelt as \xHH, byte by byte,
/// and so are bytes that are not UTF-8.
/// Everything else is unchanged, so a text that is printable stays as it is.
std::string printable(std::string_view text);

}  // namespace korv::tools
