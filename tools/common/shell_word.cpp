#include "common/shell_word.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "common/printable.h"

namespace korv::tools {

namespace {

/// A word that a terminal cannot show as it is, spelt for bash: $'a\x1Bb'.
std::string spelt_word(const std::string& word) {
    std::string escaped;
    for (const char c : word) {
        escaped += c == '\'' || c == '\\' ? std::string{'\\', c} : std::string(1, c);
    }
    return "$'" + printable(escaped) + "'";
}

}  // namespace

std::string shell_word(const std::string& word) {
    const auto is_plain = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 ||
               std::string_view("./_-+,:@%").find(c) != std::string_view::npos;
    };
    if (!word.empty() && std::ranges::all_of(word, is_plain)) {
        return word;
    }
    if (printable(word) != word) {
        return spelt_word(word);
    }
    std::string quoted = "'";
    for (const char c : word) {
        quoted += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return quoted + "'";
}

}  // namespace korv::tools
