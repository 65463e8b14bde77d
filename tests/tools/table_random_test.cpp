// Random tables, read by TableReader and by a plain reading with maps of strings.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <random>
#include <set>

#include "mine/table.h"
#include "tools/named_database.h"

namespace korv::tools {
namespace {

using Names = std::vector<std::string>;

/// A table as it is meant, before it is written.
struct Table {
    Names header;
    std::vector<Names> rows;  ///< each with as many cells as the header, or with none for a blank line
};

std::string pick(const Names& words, std::mt19937& random) {
    return words[random() % words.size()];
}

/// A cell in one of the ways in which it can be written.
std::string written(const std::string& cell, std::mt19937& random) {
    const bool needs_quotes = cell.find_first_of(",\"") != std::string::npos;
    std::string text = cell;
    if (needs_quotes || random() % 4 == 0) {
        text = "\"";
        for (const char c : cell) {
            text += c == '"' ? "\"\"" : std::string(1, c);
        }
        text += '"';
    }
    return pick({"", "", "", " ", "\t "}, random) + text + pick({"", "", "", " ", "  "}, random);
}

std::string written(const Names& cells, std::mt19937& random) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        line += (i == 0 ? "" : ",") + written(cells[i], random);
    }
    return line + pick({"\n", "\n", "\r\n"}, random);
}

/// The table as one or two files.
std::vector<std::string> files_of(const Table& table, std::mt19937& random) {
    std::vector<std::string> files = {written(table.header, random)};
    for (const Names& row : table.rows) {
        if (files.size() == 1 && random() % 8 == 0) {
            files.push_back(written(table.header, random));
        }
        files.back() += row.empty() ? pick({"\n", " \t\n", "\r\n"}, random) : written(row, random);
    }
    return files;
}

const Names number_cells = {"1", "2", "2.0", "3", "10", "-1", "1e1", "0.5", "", "NA"};
const Names word_cells = {"x", "y", "NA", "?", "", "a;b", "b; a;;NA", "say \"hi\"", "p,q", "1", "null", "\""};
const Names flag_cells = {"1", "0", "yes", "No", "T", "", "?", "x", "FALSE"};
const Names weight_cells = {"1", "1", "1", "2", "5", "0"};

/// Options for columns n and m (numbers), v and w (words), s (answers) and k (weights); with only_true, m, v
/// and w are flags.
TableOptions random_options(std::mt19937& random) {
    TableOptions options;
    const auto often = [&random] { return random() % 2 == 0; };
    options.only_true = random() % 4 == 0;
    if (often()) {
        options.weight_column = "k";
    } else {
        options.ignored.emplace_back("k");
    }
    if (often()) {
        options.ignored.emplace_back("v");
    }
    if (options.only_true || often()) {
        options.splits = {{"s", ";"}};
    }
    if (options.only_true || often()) {
        options.bins.push_back(often() ? BinRule{"n", 1 + random() % 4}
                                       : BinRule{"n", 4, {"-0.5", "2", "3.5"}});
    }
    if (!options.only_true && often()) {
        options.bins.push_back({"", 1 + random() % 5});
    }
    return options;
}

Table random_table(const TableOptions& options, std::mt19937& random) {
    const std::map<std::string, Names> pools = {{"n", number_cells},
                                                {"m", options.only_true ? flag_cells : number_cells},
                                                {"v", options.only_true ? flag_cells : word_cells},
                                                {"w", options.only_true ? flag_cells : word_cells},
                                                {"s", word_cells},
                                                {"k", weight_cells}};
    Table table;
    for (const auto& [name, pool] : pools) {
        table.header.push_back(name);
    }
    std::ranges::shuffle(table.header, random);
    const bool has_blank_lines = options.weight_column.empty();
    for (std::size_t rows = random() % 12; rows > 0; --rows) {
        Names& row = table.rows.emplace_back();
        for (const std::string& name : table.header) {
            row.push_back(pick(pools.at(name), random));
        }
        if (has_blank_lines && random() % 8 == 0) {
            row.clear();
        }
    }
    return table;
}

/// The items of one column: those of each line, and all in the order of their numbers.
struct PlainColumn {
    std::vector<Names> lines;
    Names order;
};

bool is_missing(const std::string& cell) {
    return std::set<std::string>{"", "NA", "NaN", "null", "?"}.contains(cell);
}

bool is_number(const std::string& cell) {
    return cell.find_first_not_of("0123456789.-e") == std::string::npos;
}

/// One column, made item by item: `items_in` says the items of a cell that is not missing.
template <typename ItemsIn>
PlainColumn plain_column(const Names& cells, ItemsIn items_in) {
    PlainColumn column;
    for (const std::string& cell : cells) {
        column.lines.push_back(is_missing(cell) ? Names{} : items_in(cell));
        for (const std::string& item : column.lines.back()) {
            if (std::ranges::find(column.order, item) == column.order.end()) {
                column.order.push_back(item);
            }
        }
    }
    return column;
}

Names answers(const std::string& prefix, const std::string& cell) {
    Names items;
    std::string answer;
    for (const char c : cell + ";") {
        if (c != ';') {
            answer += c == ' ' && answer.empty() ? "" : std::string(1, c);
            continue;
        }
        if (!is_missing(answer)) {
            items.push_back(prefix + answer);
        }
        answer.clear();
    }
    return items;
}

/// Each cell as often as its weight says; sorted, equal numbers in the order of their lines.
Names sorted_numbers(const Names& cells, const std::vector<Count>& weights) {
    Names sorted;
    for (std::size_t line = 0; line < cells.size(); ++line) {
        if (!is_missing(cells[line])) {
            sorted.insert(sorted.end(), weights[line], cells[line]);
        }
    }
    std::ranges::stable_sort(sorted, {}, [](const std::string& cell) { return std::stod(cell); });
    return sorted;
}

std::string point_name(double number) {
    return number < -0.5 ? "..<-0.5" : number < 2 ? "-0.5..<2" : number < 3.5 ? "2..<3.5" : "3.5..";
}

std::map<double, std::string> bin_names(const Names& sorted, const BinRule& rule) {
    std::map<double, std::size_t> first;  // position of each number
    std::map<double, std::string> spelling;
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        first.try_emplace(std::stod(sorted[i]), i);
        spelling.try_emplace(std::stod(sorted[i]), sorted[i]);
    }
    std::map<std::size_t, std::vector<double>> numbers_of;  // by bin
    for (const auto& [number, position] : first) {
        numbers_of[position * std::min(rule.bins, sorted.size()) / sorted.size()].push_back(number);
    }
    std::map<double, std::string> names;
    for (const auto& [bin, all] : numbers_of) {
        for (const double number : all) {
            names[number] =
                all.size() == 1 ? spelling[number] : spelling[all.front()] + ".." + spelling[all.back()];
            names[number] = rule.points.empty() ? names[number] : point_name(number);
        }
    }
    return names;
}

PlainColumn plain_bins(const std::string& name, const Names& cells, const std::vector<Count>& weights,
                       const BinRule& rule) {
    const std::map<double, std::string> names = bin_names(sorted_numbers(cells, weights), rule);
    PlainColumn column = plain_column(
        cells, [&](const std::string& cell) { return Names{name + "=" + names.at(std::stod(cell))}; });
    column.order.clear();
    for (const auto& [number, label] : names) {
        const std::string item = std::string(name).append("=").append(label);
        if (column.order.empty() || column.order.back() != item) {
            column.order.push_back(item);
        }
    }
    return column;
}

/// Whether the rule for all columns cuts this one.
bool is_cut(const Names& cells, std::size_t bins) {
    std::set<double> different;
    for (const std::string& cell : cells) {
        if (is_missing(cell)) {
            continue;
        }
        if (!is_number(cell)) {
            return false;
        }
        different.insert(std::stod(cell));
    }
    return different.size() > bins;
}

/// The rule for a column, or the one for all where its name is empty; nothing where there is none.
const BinRule* rule_for(const std::string& name, const TableOptions& options) {
    const auto rule = std::ranges::find(options.bins, name, &BinRule::column);
    return rule == options.bins.end() ? nullptr : &*rule;
}

PlainColumn plain_reading(const std::string& name, const Names& cells, const std::vector<Count>& line_weights,
                          const TableOptions& options) {
    if (const BinRule* const rule = rule_for(name, options)) {
        return plain_bins(name, cells, line_weights, *rule);
    }
    if (name == "s" && !options.splits.empty()) {
        return plain_column(cells, [&](const std::string& cell) { return answers(name + "=", cell); });
    }
    if (options.only_true) {
        const std::set<std::string> yes = {"1", "yes", "T", "x"};
        return plain_column(cells,
                            [&](const std::string& c) { return yes.contains(c) ? Names{name} : Names{}; });
    }
    if (const BinRule* const rule = rule_for("", options); rule != nullptr && is_cut(cells, rule->bins)) {
        return plain_bins(name, cells, line_weights, *rule);
    }
    return plain_column(cells, [&](const std::string& cell) { return Names{name + "=" + cell}; });
}

/// What is to be read of a table.
struct Expected {
    Names names;
    NamedColumns items;
    std::vector<Count> weights;  ///< of all lines
    std::vector<Names> twins;
};

/// The lines that stand for any transaction. Notes their weights.
std::vector<Names> weighed_rows(const Table& table, const TableOptions& options,
                                std::vector<Count>& weights_of) {
    const auto k = static_cast<std::size_t>(std::ranges::find(table.header, "k") - table.header.begin());
    std::vector<Names> rows;
    for (const Names& row : table.rows) {
        const Count weight = options.weight_column.empty() ? 1 : static_cast<Count>(std::stoul(row[k]));
        if (weight > 0) {
            rows.push_back(row);
            weights_of.push_back(weight);
        }
    }
    return rows;
}

std::vector<Transaction> lines_of(const std::string& item, const PlainColumn& column) {
    std::vector<Transaction> lines;
    for (Transaction line = 0; line < column.lines.size(); ++line) {
        if (std::ranges::find(column.lines[line], item) != column.lines[line].end()) {
            lines.push_back(line);
        }
    }
    return lines;
}

Expected expected(const Table& table, const TableOptions& options) {
    Expected result;
    const std::vector<Names> rows = weighed_rows(table, options, result.weights);
    std::map<std::multiset<std::vector<Transaction>>, std::size_t> group_of;
    for (std::size_t column = 0; column < table.header.size(); ++column) {
        const std::string& name = table.header[column];
        if (name == "k" || std::ranges::find(options.ignored, name) != options.ignored.end()) {
            continue;
        }
        Names cells;
        for (const Names& row : rows) {
            cells.push_back(row.empty() ? "" : row[column]);
        }
        const PlainColumn plain = plain_reading(name, cells, result.weights, options);
        std::multiset<std::vector<Transaction>> transactions;
        for (const std::string& item : plain.order) {
            result.names.push_back(item);
            result.items[item] = lines_of(item, plain);
            transactions.insert(result.items[item]);
        }
        if (!transactions.empty()) {
            const auto [group, is_new] = group_of.try_emplace(transactions, result.twins.size());
            result.twins.resize(result.twins.size() + (is_new ? 1 : 0));
            result.twins[group->second].push_back(name);
        }
    }
    std::erase_if(result.twins, [](const Names& group) { return group.size() == 1; });
    return result;
}

void compare(const Table& table, const TableOptions& options, const std::vector<std::string>& files) {
    SCOPED_TRACE(testing::PrintToString(files) + (options.only_true ? " with only_true" : ""));
    const Expected plain = expected(table, options);
    TableReader reader(',', options);
    for (const std::string& file : files) {
        reader.add({"a.csv", file});
    }
    if (plain.names.empty()) {
        EXPECT_THROW(reader.finish(), Error);
        return;
    }
    const Database database = reader.finish();
    EXPECT_EQ(database.names, plain.names);
    EXPECT_EQ(named_columns(database), plain.items);
    EXPECT_EQ(database.lines, plain.weights.size());
    EXPECT_EQ(database.transactions, std::accumulate(plain.weights.begin(), plain.weights.end(), Count{0}));
    EXPECT_EQ(database.weights.empty() ? std::vector<Count>(database.lines, 1) : database.weights,
              plain.weights);
    EXPECT_EQ(reader.report().twins, plain.twins);
}

TEST(RandomTables, AreReadAsAPlainReadingReadsThem) {
    for (unsigned seed = 0; seed < 20'000 && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const TableOptions options = random_options(random);
        const Table table = random_table(options, random);
        compare(table, options, files_of(table, random));
    }
}

}  // namespace
}  // namespace korv::tools
