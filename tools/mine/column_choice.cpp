#include "mine/column_choice.h"

#include <algorithm>

#include "common/error.h"
#include "common/nearest.h"
#include "common/utf8.h"

namespace korv::tools {

namespace {

/// The columns of a message.
constexpr std::size_t most_listed = 10;

/// Names like `word`, the closest first; all names in their order where they are few.
std::vector<std::string> names_to_list(std::string_view word, std::vector<std::string> header) {
    std::erase(header, "");  // a column without a name is not read
    return header.size() <= most_listed ? header : nearest(word, header, most_listed);
}

/// Throws Error for a word that should be the name of a column.
[[noreturn]] void fail_for_unknown(const std::string& option, const std::string& word,
                                   const std::vector<std::string>& header, const std::string& file) {
    const std::string names = all_shown(names_to_list(word, header));
    const std::string number = std::to_string(header.size());
    const std::string expected = header.size() <= most_listed
                                     ? "one of " + file + ": " + names
                                     : "one of the " + number + " of " + file + ", such as " + names;
    throw UsageError(option + ": found the column " + shown(word) + "; expected " + expected);
}

/// Which columns a pattern of the list matches.
std::vector<bool> matched(const std::string& option, const std::vector<std::string>& patterns,
                          const std::vector<std::string>& header, const std::string& file) {
    std::vector<bool> result(header.size());
    for (const std::string& pattern : patterns) {
        bool matches_one = false;
        for (std::size_t i = 0; i < header.size(); ++i) {
            const bool match = matches(pattern, header[i]);
            result[i] = result[i] || match;
            matches_one = matches_one || match;
        }
        if (!matches_one) {
            fail_for_unknown(option, pattern, header, file);
        }
    }
    return result;
}

/// Throws Error unless the column of a rule exists and is read.
void require_chosen(const std::string& option, const std::string& column,
                    const std::vector<std::string>& header, const std::vector<bool>& is_chosen,
                    const std::string& file) {
    const auto position = std::ranges::find(header, column);
    if (position == header.end()) {
        fail_for_unknown(option, column, header, file);
    }
    if (!is_chosen[static_cast<std::size_t>(position - header.begin())]) {
        throw UsageError(
            option + ": found the column " + shown(column) +
            ", which --columns, --ignore or --weight leaves out; expected a column that is read");
    }
}

}  // namespace

bool matches(std::string_view pattern, std::string_view name) {
    // Where to go on when the rest does not match: the last star stands for one byte more.
    std::string_view behind_star;
    std::string_view name_behind_star;
    bool has_star = false;
    while (!name.empty()) {
        if (pattern.starts_with('*')) {
            pattern.remove_prefix(1);
            behind_star = pattern;
            name_behind_star = name;
            has_star = true;
        } else if (pattern.starts_with('?')) {
            pattern.remove_prefix(1);
            name.remove_prefix(std::max<std::size_t>(first_character(name).bytes, 1));
        } else if (pattern.starts_with(name.front())) {
            pattern.remove_prefix(1);
            name.remove_prefix(1);
        } else if (has_star) {
            name_behind_star.remove_prefix(1);
            pattern = behind_star;
            name = name_behind_star;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*') == std::string_view::npos;
}

std::vector<std::size_t> chosen_columns(const std::vector<std::string>& header, const TableOptions& options,
                                        const std::string& file) {
    const std::vector<bool> named = matched("--columns", options.columns, header, file);
    const std::vector<bool> ignored = matched("--ignore", options.ignored, header, file);
    std::vector<bool> is_chosen(header.size());
    std::vector<std::size_t> chosen;
    for (std::size_t i = 0; i < header.size(); ++i) {
        const bool is_wanted = (options.columns.empty() || named[i]) && !ignored[i];
        is_chosen[i] = is_wanted && !header[i].empty() && header[i] != options.weight_column;
        if (is_chosen[i]) {
            chosen.push_back(i);
        }
    }
    if (!options.weight_column.empty() && std::ranges::find(header, options.weight_column) == header.end()) {
        fail_for_unknown("--weight", options.weight_column, header, file);
    }
    for (const BinRule& rule : options.bins) {
        if (!rule.column.empty()) {
            require_chosen("--bins", rule.column, header, is_chosen, file);
        }
    }
    for (const SplitRule& rule : options.splits) {
        require_chosen("--split", rule.column, header, is_chosen, file);
    }
    if (chosen.empty()) {
        throw UsageError(
            file + ": found no column that --columns, --ignore and --weight leave; expected one at least");
    }
    return chosen;
}

}  // namespace korv::tools
