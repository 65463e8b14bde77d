#include "rules/holdout_input.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "base/number_text.h"
#include "common/error.h"
#include "rules/numbered_by_names.h"

namespace korv::tools {

namespace {

/// The options without bins whose limits depend on the numbers that are read.
ReadingOptions without_quantiles(ReadingOptions options) {
    std::erase_if(options.table.bins, [](const BinRule& rule) { return rule.points.empty(); });
    return options;
}

std::optional<double> finite_number(std::string_view text) {
    const auto number = parse_number<double>(text);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

/// A bin of numbers, by the name of its item.
struct Bin {
    double smallest;
    double largest;
    std::string name;
};

/// The bin that a value such as "18..25" or "7" says; nothing for any other one.
std::optional<Bin> bin_of(std::string_view value, const std::string& name) {
    constexpr std::string_view dots = "..";
    const std::size_t gap = value.find(dots);
    const auto smallest = finite_number(value.substr(0, gap));
    const auto largest =
        gap == std::string_view::npos ? smallest : finite_number(value.substr(gap + dots.size()));
    return smallest && largest ? std::optional(Bin{*smallest, *largest, name}) : std::nullopt;
}

/// The column and the value of a name such as "age=18"; nothing for a name without an equals sign.
std::optional<std::pair<std::string_view, std::string_view>> parts_of(std::string_view name) {
    const std::size_t sign = name.find('=');
    return sign == std::string_view::npos
               ? std::nullopt
               : std::optional(std::pair(name.substr(0, sign), name.substr(sign + 1)));
}

/// The bins by their columns.
std::map<std::string, std::vector<Bin>, std::less<>> bins_among(const std::map<Item, std::string>& names) {
    std::map<std::string, std::vector<Bin>, std::less<>> bins;
    for (const auto& [item, name] : names) {
        const auto parts = parts_of(name);
        auto bin = parts ? bin_of(parts->second, name) : std::nullopt;
        if (bin) {
            bins[std::string(parts->first)].push_back(std::move(*bin));
        }
    }
    return bins;
}

/// Gives items of numbers the names of their bins. Items of the same name become one.
void put_into_bins(const std::map<Item, std::string>& names, Database& database) {
    const auto bins = bins_among(names);
    std::set<std::string_view> known;
    for (const auto& [item, name] : names) {
        known.insert(name);
    }
    const auto new_name = [&](const std::string& name) {
        if (known.contains(name)) {
            return name;
        }
        const auto parts = parts_of(name);
        const auto number = parts ? finite_number(parts->second) : std::nullopt;
        const auto column = number ? bins.find(parts->first) : bins.end();
        if (column == bins.end()) {
            return name;
        }
        const auto bin = std::ranges::find_if(column->second, [&number](const Bin& each) {
            return each.smallest <= *number && *number <= each.largest;
        });
        return bin == column->second.end() ? name : bin->name;
    };
    std::map<std::string, std::size_t> position;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < database.items.size(); ++i) {
        const auto [found, is_new] = position.try_emplace(new_name(database.names[i]), kept);
        if (is_new) {
            database.names[kept] = found->first;
            if (kept != i) {
                database.items[kept] = std::move(database.items[i]);
            }
            ++kept;
            continue;
        }
        std::vector<Transaction>& lines = database.items[found->second].transactions;
        const std::vector<Transaction>& more = database.items[i].transactions;
        std::vector<Transaction> all;
        std::ranges::set_union(lines, more, std::back_inserter(all));
        lines = std::move(all);
    }
    database.items.resize(kept);
    database.names.resize(kept);
}

}  // namespace

Database read_holdout(const std::string& path, const ReadingOptions& options, const ItemNames& names) {
    ReadingReport report;
    Database database = read_database({path}, without_quantiles(options), report);
    if (database.names.empty()) {
        return database;
    }
    const std::map<Item, std::string>& known = names.all();
    put_into_bins(known, database);
    const bool is_any_known = std::ranges::any_of(known, [&database](const auto& each) {
        return std::ranges::find(database.names, each.second) != database.names.end();
    });
    if (!is_any_known) {
        throw Error((path == "-" ? "standard input" : path) +
                    ": found no item of the input, but items such as " + shown(database.names.front()) +
                    "; expected transactions of the same items");
    }
    number_by_names(known, database);
    return database;
}

}  // namespace korv::tools
