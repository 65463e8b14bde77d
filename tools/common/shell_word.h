#pragma once

#include <string>

namespace korv::tools {

/// A word as it is typed in a shell: in single quotes, unless it holds only characters that do not need them.
/// What a terminal cannot show is spelt for bash: $'a\x1Bb'.
std::string shell_word(const std::string& word);

}  // namespace korv::tools
