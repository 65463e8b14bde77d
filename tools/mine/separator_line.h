#pragma once

#include <cstddef>
#include <optional>

#include "common/text_input.h"

namespace korv::tools {

/// A first line that says what stands between the cells of the others, such as "sep=;".
struct SeparatorLine {
    char separator;
    std::size_t end;  ///< where the next line begins, or the end of the text
};

/// The first line of a text where it says what the separator is, as spreadsheet programs write and read it:
/// "sep=", in small or capital letters, one of likely_separators, and nothing else. Nothing for any other
/// line.
std::optional<SeparatorLine> separator_line(const TextInput& input);

}  // namespace korv::tools
