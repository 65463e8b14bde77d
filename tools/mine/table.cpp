#include "mine/table.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "base/number_text.h"
#include "common/csv.h"
#include "common/error.h"
#include "mine/database_builder.h"
#include "mine/named_items.h"

namespace korv::tools {

namespace {

using Row = std::vector<CsvCell>;

struct Table {
    Row header;
    std::vector<Row> rows;  ///< each with as many cells as the header, or with none
};

std::optional<double> number_in(const CsvCell& cell) {
    const auto number = parse_number<double>(cell.text);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

void check_header(const Row& header, const TextInput& input) {
    std::set<std::string> names;
    for (const CsvCell& cell : header) {
        check_name(cell.text, cell.position, input);
        if (cell.text.empty()) {
            throw input_error(input.name, place_of(input.text, cell.position), "a column without a name",
                              "a name for each column");
        }
        if (!names.insert(cell.text).second) {
            throw input_error(input.name, place_of(input.text, cell.position), shown(cell.text),
                              "a name of a column that no other has");
        }
    }
}

Table parse(const TextInput& input, char separator) {
    CsvReader reader(input, separator);
    Table table;
    if (!reader.next(table.header) || table.header.empty()) {
        throw input_error(input.name, {1, 1}, "nothing", "a line with the names of the columns");
    }
    check_header(table.header, input);
    for (Row row; reader.next(row);) {
        if (!row.empty() && row.size() != table.header.size()) {
            throw input_error(input.name, place_of(input.text, row.front().position),
                              "a line of " + std::to_string(row.size()),
                              std::to_string(table.header.size()) + " cells, as many as the header has");
        }
        for (const CsvCell& cell : row) {
            check_name(cell.text, cell.position, input);
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

/// The cells of one column that are not empty.
std::vector<const CsvCell*> cells_of(const Table& table, std::size_t column) {
    std::vector<const CsvCell*> cells;
    for (const Row& row : table.rows) {
        if (!row.empty() && !row[column].text.empty()) {
            cells.push_back(&row[column]);
        }
    }
    return cells;
}

/// The number of bins into which a column is to be cut; nothing when it is not to be cut.
std::optional<std::size_t> bins_of(const CsvCell& header, const std::vector<const CsvCell*>& cells,
                                   const std::vector<BinRule>& rules, const TextInput& input) {
    const auto is_number = [](const CsvCell* cell) { return number_in(*cell).has_value(); };
    const auto rule_for = [&rules](const std::string& column) {
        return std::ranges::find(rules, column, &BinRule::column);
    };
    if (const auto rule = rule_for(header.text); rule != rules.end()) {
        const auto other = std::ranges::find_if_not(cells, is_number);
        if (other != cells.end()) {
            throw input_error(input.name, place_of(input.text, (*other)->position), shown((*other)->text),
                              "a number, since --bins cuts the column " + shown(header.text));
        }
        return rule->bins;
    }
    const auto rule = rule_for("");
    const bool applies = rule != rules.end() && std::ranges::all_of(cells, is_number);
    return applies ? std::optional(rule->bins) : std::nullopt;
}

/// The label of the bin for each number of a column.
std::map<double, std::string> bin_labels(const std::vector<const CsvCell*>& cells, std::size_t bins) {
    struct Value {
        std::string text;
        std::size_t count = 0;
    };
    std::map<double, Value> values;
    for (const CsvCell* const cell : cells) {
        Value& value = values[*number_in(*cell)];
        value.text = value.count == 0 ? cell->text : value.text;
        ++value.count;
    }
    // The first position of a number among all sorted numbers decides its bin.
    std::map<std::size_t, std::pair<std::string, std::string>> ends;
    std::map<double, std::size_t> bin_of;
    std::size_t smaller = 0;
    for (const auto& [number, value] : values) {
        const std::size_t bin = smaller * std::min(bins, cells.size()) / cells.size();
        ends.try_emplace(bin, value.text, value.text).first->second.second = value.text;
        bin_of[number] = bin;
        smaller += value.count;
    }
    std::map<double, std::string> labels;
    for (const auto& [number, bin] : bin_of) {
        const auto& [first, last] = ends[bin];
        std::string& label = labels[number] = first;
        if (first != last) {
            label.append("..").append(last);
        }
    }
    return labels;
}

std::string item_name(const CsvCell& header, const std::string& value) {
    std::string name = header.text;
    name.append("=").append(value);
    return name;
}

/// The items of one column by the text of its cells. Items that are new get their numbers here.
std::map<std::string, Item> items_of(const CsvCell& header, const std::vector<const CsvCell*>& cells,
                                     std::optional<std::size_t> bins, const TextInput& input,
                                     NamedItems& items) {
    const std::size_t earlier = items.size();
    const auto new_item = [&](const CsvCell& cell, const std::string& value) {
        const Item item = items.number_of(item_name(header, value));
        if (item <= earlier) {
            throw input_error(input.name, place_of(input.text, cell.position),
                              shown(item_name(header, value)), "an item that no column before has");
        }
        return item;
    };
    std::map<std::string, Item> item_of;
    if (!bins) {
        for (const CsvCell* const cell : cells) {
            item_of.try_emplace(cell->text, new_item(*cell, cell->text));
        }
        return item_of;
    }
    const std::map<double, std::string> labels = bin_labels(cells, *bins);
    for (const auto& [number, label] : labels) {
        items.number_of(item_name(header, label));  // from the smallest
    }
    for (const CsvCell* const cell : cells) {
        item_of.try_emplace(cell->text, new_item(*cell, labels.at(*number_in(*cell))));
    }
    return item_of;
}

void check_rules(const std::vector<BinRule>& rules, const Table& table, const TextInput& input) {
    for (const BinRule& rule : rules) {
        if (!rule.column.empty() &&
            std::ranges::find(table.header, rule.column, &CsvCell::text) == table.header.end()) {
            std::string columns;
            for (const CsvCell& cell : table.header) {
                columns += (columns.empty() ? "" : ", ") + shown(cell.text);
            }
            throw Error("--bins: found the column " + shown(rule.column) + "; expected one of " + input.name +
                        ": " + columns);
        }
    }
}

}  // namespace

Database read_table(const TextInput& input, char separator, const std::vector<BinRule>& rules) {
    const Table table = parse(input, separator);
    check_rules(rules, table, input);

    NamedItems items;
    std::vector<std::map<std::string, Item>> item_of;  // by column, then by text
    for (std::size_t column = 0; column < table.header.size(); ++column) {
        const CsvCell& header = table.header[column];
        const std::vector<const CsvCell*> cells = cells_of(table, column);
        item_of.push_back(items_of(header, cells, bins_of(header, cells, rules, input), input, items));
    }

    DatabaseBuilder builder;
    for (const Row& row : table.rows) {
        builder.begin_transaction();
        for (std::size_t column = 0; column < row.size(); ++column) {
            if (!row[column].text.empty()) {
                builder.add(item_of[column].at(row[column].text));
            }
        }
    }
    Database database = builder.finish();
    if (database.items.empty()) {
        throw Error(input.name + ": found no item; expected a header and one transaction a line");
    }
    database.names = std::move(items).names();
    return database;
}

}  // namespace korv::tools
