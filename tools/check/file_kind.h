#pragma once

#include <optional>
#include <string_view>

namespace korv::tools {

/// A kind of file that is given in the place of a class file.
struct OtherFile {
    std::string_view found;
    std::string_view expected;  ///< and what to do with such a file
};

/// What a text is that is no class file, as its first ten lines tell: a rule file of korv, a names file, or
/// transactions as numbers, baskets or a table. Nothing where it may be a class file, damaged or not.
std::optional<OtherFile> other_file(std::string_view text);

}  // namespace korv::tools
