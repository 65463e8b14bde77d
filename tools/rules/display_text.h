#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace korv::tools {

// Texts in the columns of a terminal: most letters take one, those of East Asia and emoji two, marks that are
// set on a letter none. A character is what a reader takes for one: a letter with its marks, an emoji of
// several parts. Texts are printable ones (see printable.h) in UTF-8. All operations take linear time.

/// How many columns a text takes.
std::size_t display_width(std::string_view text);

/// A text that takes at most `width` columns: as it is, or its beginning and an ellipsis. `width`: at
/// least 1.
std::string shortened(std::string_view text, std::size_t width);

/// The lines of a text, each of at most `width` columns and without a blank at its end. It is parted at
/// blanks; where there is none to part at, between two characters. There is at least one line. A character
/// that alone is wider than `width` has a line of its own.
std::vector<std::string> wrapped(std::string_view text, std::size_t width);

/// Appends a text in lines of at most `width` columns, at least 20 of which are for the text: the first one
/// behind `first`, the others behind `indent`, which takes as many columns. Appends nothing for an empty
/// text.
void append_paragraph(const std::string& first, const std::string& indent, const std::string& text,
                      std::size_t width, std::string& out);

/// A text with blanks before it, up to so many columns.
std::string right_aligned(std::string_view text, std::size_t width);

/// A text with blanks behind it, up to so many columns.
std::string left_aligned(std::string_view text, std::size_t width);

}  // namespace korv::tools
