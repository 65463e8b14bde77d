#include "rules/summary_lines.h"

#include <algorithm>

#include "common/quantity.h"

namespace korv::tools {

std::string aligned(const std::vector<SummaryLine>& lines, std::size_t number_width) {
    std::size_t width = 0;
    for (const SummaryLine& line : lines) {
        width = std::max(width, line.what.size());
    }
    std::string text;
    for (const SummaryLine& line : lines) {
        const std::string number = with_commas(line.number);
        text +=
            std::string(number_width - std::min(number.size(), number_width), ' ') + number + ' ' + line.what;
        if (!line.option.empty()) {
            text += std::string(width - line.what.size() + 5, ' ') + line.option;
        }
        text += '\n';
    }
    return text;
}

std::string counted(std::uint64_t number, const std::string& noun, const std::string& ending) {
    return with_commas(number) + " " + noun + (number == 1 ? "" : ending);
}

std::string keeps(const std::string& options, std::uint64_t number) {
    if (options.starts_with("without ")) {
        return (number == 1 ? "it is kept " : "they are kept ") + options;
    }
    return options + (number == 1 ? " keeps it" : " keeps them");
}

}  // namespace korv::tools
