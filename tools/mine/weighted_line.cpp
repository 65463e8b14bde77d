#include "mine/weighted_line.h"

#include <algorithm>

#include "base/number_text.h"
#include "common/error.h"

namespace korv::tools {

Count take_weight(std::string_view& line, const TextInput& input) {
    constexpr std::string_view blanks = " \t";
    line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
    const std::string_view word = line.substr(0, line.find_first_of(blanks));
    const auto weight = parse_number<Count>(word);
    if (!weight || *weight == 0) {
        const auto position = static_cast<std::size_t>(line.data() - input.text.data());
        throw input_error(
            input.name, place_of(input, position), word.empty() ? "no number" : shown(word),
            "how many times the transaction occurs, a number from 1 to 4294967295, and a blank");
    }
    line.remove_prefix(std::min(word.size() + 1, line.size()));
    return *weight;
}

}  // namespace korv::tools
