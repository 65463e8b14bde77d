#pragma once

#include <string_view>

namespace korv::tools {

/// Calls `visit` with each line of a text, without its line end, which is LF or CR LF. The last line may lack
/// one; no empty line follows the last line end.
template <typename Visit>
void for_each_line(std::string_view text, Visit visit) {
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(line.size() < text.size() ? line.size() + 1 : line.size());
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        visit(line);
    }
}

}  // namespace korv::tools
