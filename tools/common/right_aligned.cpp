#include "common/right_aligned.h"

#include <algorithm>

namespace korv::tools {

std::string right_aligned(const std::vector<std::vector<std::string>>& rows) {
    std::vector<std::size_t> widths(rows.empty() ? 0 : rows.front().size());
    for (const std::vector<std::string>& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths.at(i) = std::max(widths.at(i), row[i].size());
        }
    }
    std::string text;
    for (const std::vector<std::string>& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            text += std::string(widths[i] - row[i].size() + (i == 0 ? 0 : 3), ' ') + row[i];
        }
        text += '\n';
    }
    return text;
}

}  // namespace korv::tools
