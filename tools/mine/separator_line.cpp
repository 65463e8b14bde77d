#include "mine/separator_line.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "mine/format_guess.h"

namespace korv::tools {

std::optional<SeparatorLine> separator_line(const TextInput& input) {
    constexpr std::string_view beginning = "sep=";
    const std::string_view text = input.text;
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    line.remove_suffix(line.ends_with('\r') ? 1 : 0);
    const auto in_small_letters = [](unsigned char c) { return std::tolower(c); };
    if (line.size() != beginning.size() + 1 ||
        likely_separators.find(line.back()) == std::string_view::npos ||
        !std::ranges::equal(line.substr(0, beginning.size()), beginning, {}, in_small_letters)) {
        return std::nullopt;
    }
    return SeparatorLine{line.back(), std::min(end + 1, text.size())};
}

}  // namespace korv::tools
