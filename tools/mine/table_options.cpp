#include "mine/table_options.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>
#include <string_view>

#include "base/number_text.h"
#include "common/error.h"

namespace korv::tools {

namespace {

/// The points of "10,20,30"; nothing when they are not ascending numbers, or are no points for lack of a
/// comma.
std::optional<std::vector<std::string>> parse_points(std::string_view text) {
    std::vector<std::string> points;
    double last = -std::numeric_limits<double>::infinity();
    while (!text.empty()) {
        const std::size_t comma = text.find(',');
        if (comma == std::string_view::npos && points.empty()) {
            return std::nullopt;
        }
        const std::string_view point = text.substr(0, comma);
        const auto number = parse_number<double>(point);
        if (!number || !std::isfinite(*number) || *number <= last) {
            return std::nullopt;
        }
        points.emplace_back(point);
        last = *number;
        text.remove_prefix(std::min(point.size() + 1, text.size()));
    }
    return points.empty() ? std::nullopt : std::optional(points);
}

}  // namespace

std::optional<BinRule> parse_bin_rule(const std::string& text) {
    const std::size_t equals = text.rfind('=');
    const bool for_all = equals == std::string::npos;
    const std::string_view rest = std::string_view(text).substr(for_all ? 0 : equals + 1);
    const std::string column = for_all ? "" : text.substr(0, equals);
    if (equals == 0) {
        return std::nullopt;
    }
    if (const auto bins = parse_number<std::size_t>(rest)) {
        return *bins > 0 ? std::optional(BinRule{column, *bins}) : std::nullopt;
    }
    const auto points = parse_points(rest);
    return points && !for_all ? std::optional(BinRule{column, points->size() + 1, *points}) : std::nullopt;
}

std::optional<SplitRule> parse_split_rule(const std::string& text) {
    const std::size_t equals = text.size() < 2 ? std::string::npos : text.rfind('=', text.size() - 2);
    if (equals == std::string::npos || equals == 0) {
        return std::nullopt;
    }
    const std::string separator = text.substr(equals + 1);
    return SplitRule{text.substr(0, equals), separator == "tab" ? "\t" : separator};
}

void check_rules(const TableOptions& options) {
    std::set<std::string> columns;
    const auto require_new = [&columns](const std::string& option, const std::string& column) {
        if (!columns.insert(column).second) {
            throw Error(option + ": found a second rule for " +
                        (column.empty() ? "all columns" : "the column " + shown(column)) +
                        "; expected one at most");
        }
    };
    for (const BinRule& rule : options.bins) {
        require_new("--bins", rule.column);
        if (rule.column.empty() && options.only_true) {
            throw Error(
                "--bins: found a rule for all columns, and --only-true; expected one of the two, or "
                "the name of a column in --bins");
        }
    }
    for (const SplitRule& rule : options.splits) {
        require_new("--split", rule.column);
    }
    if (!options.weight_column.empty()) {
        require_new("--weight", options.weight_column);
    }
}

}  // namespace korv::tools
