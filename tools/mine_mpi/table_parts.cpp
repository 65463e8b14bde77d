#include "mine_mpi/table_parts.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <numeric>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace korv::tools {

namespace {

/// What a process tells of a column.
struct ColumnValues {
    std::vector<char> texts;  ///< the distinct cells, one behind the other
    std::vector<std::uint32_t> sizes;
    std::vector<std::uint64_t> cells;  ///< by value: the transactions that have it
    std::vector<std::uint64_t> lines;  ///< by value: the lines that have it
    std::vector<char> other;           ///< the first cell that is no number, and its file; empty for none
    std::vector<std::uint64_t> place;  ///< of that cell: line, column, and the size of its text
};

void send(Processes& processes, const ColumnValues& values) {
    processes.send(std::span<const char>(values.texts), 0);
    processes.send(std::span<const std::uint32_t>(values.sizes), 0);
    processes.send(std::span<const std::uint64_t>(values.cells), 0);
    processes.send(std::span<const std::uint64_t>(values.lines), 0);
    processes.send(std::span<const char>(values.other), 0);
    processes.send(std::span<const std::uint64_t>(values.place), 0);
}

ColumnValues receive_values(Processes& processes, int from) {
    ColumnValues values;
    values.texts = processes.receive<char>(from);
    values.sizes = processes.receive<std::uint32_t>(from);
    values.cells = processes.receive<std::uint64_t>(from);
    values.lines = processes.receive<std::uint64_t>(from);
    values.other = processes.receive<char>(from);
    values.place = processes.receive<std::uint64_t>(from);
    return values;
}

ColumnValues values_of(const TableReader::Part& part, std::size_t number) {
    const TableColumn& column = part.columns[number];
    ColumnValues values;
    for (std::uint32_t value = 0; value < column.distinct_cells(); ++value) {
        const std::string_view text = column.text(value);
        values.texts.insert(values.texts.end(), text.begin(), text.end());
        values.sizes.push_back(static_cast<std::uint32_t>(text.size()));
    }
    values.cells = column.cells_of_values(part.database.weights);
    values.lines = column.cells_of_values({});
    const auto other = part.other_cells.find(number);
    if (other != part.other_cells.end()) {
        const UncutColumn& cell = other->second;
        values.other.assign(cell.cell.begin(), cell.cell.end());
        values.other.insert(values.other.end(), cell.file.begin(), cell.file.end());
        values.place = {cell.place.line, cell.place.column, cell.cell.size()};
    }
    return values;
}

/// A column of the whole table, without its lines.
class WholeColumn {
public:
    WholeColumn(const std::string& name, const TableOptions& options) : column_(name, options) {}

    /// Adds the values of the next process. Returns their numbers in the whole column.
    std::vector<std::uint32_t> add(const ColumnValues& values) {
        std::vector<std::uint32_t> numbers;
        const char* begin = values.texts.data();
        for (std::size_t value = 0; value < values.sizes.size(); ++value) {
            const std::uint32_t number = column_.add_value({begin, values.sizes[value]});
            begin += values.sizes[value];
            cells_.resize(column_.distinct_cells());
            lines_of_values_.resize(column_.distinct_cells());
            cells_[number] += values.cells[value];
            lines_of_values_[number] += values.lines[value];
            numbers.push_back(number);
        }
        lines_ += std::accumulate(values.lines.begin(), values.lines.end(), std::size_t{0});
        if (!other_ && !values.place.empty()) {
            const auto end = values.other.begin() + static_cast<std::ptrdiff_t>(values.place[2]);
            other_ = {column_.name(), std::string(values.other.begin(), end),
                      std::string(end, values.other.end()), Place{values.place[0], values.place[1]}, false};
        }
        return numbers;
    }

    void tell(TableReport& report) {
        if (other_ && column_.has_more_values_than_bins()) {
            other_->has_numbers = column_.has_numbers();
            report.uncut.push_back(*other_);
        }
        if (column_.is_cut_for_many_numbers()) {
            report.cut.push_back(column_.name());
        }
        if (column_.is_identifier(lines_, [this] { return lines_of_values_; })) {
            report.identifiers.push_back(column_.name());
        }
    }

    ColumnItems items() const { return column_.items(cells_); }

private:
    TableColumn column_;
    std::vector<std::uint64_t> cells_;
    std::vector<std::uint64_t> lines_of_values_;
    std::size_t lines_ = 0;
    std::optional<UncutColumn> other_;
};

/// The items of some of the values.
ColumnItems items_of(const ColumnItems& items, const std::vector<std::uint32_t>& values) {
    ColumnItems some = {{}, {0}, {}};
    for (const std::uint32_t value : values) {
        const auto begin = items.of_values.begin();
        some.of_values.insert(some.of_values.end(), begin + items.begins[value],
                              begin + items.begins[value + 1]);
        some.begins.push_back(static_cast<std::uint32_t>(some.of_values.size()));
    }
    return some;
}

/// The items of the values of this process in a column, and how many the whole column has.
struct ItemsOfPart {
    ColumnItems items;
    std::uint32_t number = 0;
};

/// What the first process does for a column.
ItemsOfPart join(Processes& processes, const ColumnValues& own, WholeColumn& whole, TableReport& report,
                 std::vector<std::string>& names) {
    std::vector<std::vector<std::uint32_t>> numbers = {whole.add(own)};
    for (int from = 1; from < processes.size(); ++from) {
        numbers.push_back(whole.add(receive_values(processes, from)));
    }
    whole.tell(report);
    ColumnItems items = whole.items();
    const auto number = static_cast<std::uint32_t>(items.names.size());
    for (int to = 1; to < processes.size(); ++to) {
        const ColumnItems some = items_of(items, numbers[static_cast<std::size_t>(to)]);
        processes.send(std::span<const std::uint32_t>(some.begins), to);
        processes.send(std::span<const std::uint32_t>(some.of_values), to);
        processes.send(std::span<const std::uint32_t>(&number, 1), to);
    }
    ItemsOfPart result = {items_of(items, numbers.front()), number};
    std::ranges::move(items.names, std::back_inserter(names));
    return result;
}

/// What the others do.
ItemsOfPart ask(Processes& processes, const ColumnValues& own) {
    send(processes, own);
    ItemsOfPart result;
    result.items.begins = processes.receive<std::uint32_t>(0);
    result.items.of_values = processes.receive<std::uint32_t>(0);
    result.number = processes.receive<std::uint32_t>(0).front();
    return result;
}

}  // namespace

Database join_table_parts(Processes& processes, TableReader::Part part, const TableOptions& options,
                          const std::string& file, TableReport& report) {
    std::vector<std::string> columns;
    std::vector<std::size_t> ends;  // of the items of the columns
    Database& database = part.database;
    for (std::size_t number = 0; number < part.columns.size(); ++number) {
        TableColumn& column = part.columns[number];
        const ColumnValues own = values_of(part, number);
        ItemsOfPart items;
        if (processes.is_first()) {
            WholeColumn whole(column.name(), options);
            items = join(processes, own, whole, report, database.names);
        } else {
            items = ask(processes, own);
        }
        const std::size_t before = ends.empty() ? 0 : ends.back();
        column.move_to(database, static_cast<Item>(before + 1), std::move(items.items), items.number);
        columns.push_back(column.name());
        ends.push_back(before + items.number);
    }
    report.left_out = processes.sum(part.left_out);
    processes.together([&] {
        if (ends.empty() || ends.back() == 0) {
            refuse_table_without_items(file);
        }
        if (processes.is_first()) {
            require_different_names(columns, ends, database.names, file);
        }
    });
    if (std::ranges::all_of(database.weights, [](Count weight) { return weight == 1; })) {
        database.weights.clear();
    }
    return std::move(database);
}

}  // namespace korv::tools
