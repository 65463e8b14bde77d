#include "mine/table.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/number_text.h"
#include "mine/column_choice.h"
#include "mine/column_twins.h"
#include "mine/named_items.h"

namespace korv::tools {

namespace {

/// Tells the places of positions in a text that ascend, in one pass over the text.
class PlaceFinder {
public:
    explicit PlaceFinder(const TextInput& input) : text_(input.text), place_(place_of(input, 0)) {}

    Place next(std::size_t position) {
        const Place step = place_of(text_.substr(position_), position - position_);
        place_.column = step.line == 1 ? place_.column + step.column - 1 : step.column;
        place_.line += step.line - 1;
        position_ = position;
        return place_;
    }

private:
    std::string_view text_;
    std::size_t position_ = 0;
    Place place_;
};

/// An error about the form of the table.
FormError form_error(const TextInput& input, std::size_t position, const std::string& found,
                     const std::string& expected) {
    return FormError(input_error(input.name, place_of(input, position), found, expected));
}

Error error_at(const TextInput& input, std::size_t position, const std::string& found,
               const std::string& expected) {
    return input_error(input.name, place_of(input, position), found, expected);
}

std::string in_cells(std::size_t number) {
    return std::to_string(number) + (number == 1 ? " cell" : " cells");
}

/// Throws Error unless each column has a name, and one that no other has. The first of several may have none:
/// other programs write the labels of lines into such a column.
void check_header(const std::vector<CsvCell>& header, const TextInput& input) {
    std::unordered_set<std::string_view> names;
    for (const CsvCell& cell : header) {
        check_name(cell.text, cell.position, input);
        const bool may_be_unnamed = &cell == &header.front() && header.size() > 1;
        if (cell.text.empty() && !may_be_unnamed) {
            const bool is_last = &cell == &header.back();
            throw form_error(input, cell.position, "a column without a name",
                             is_last ? "a name for each column, and no separator behind the last"
                                     : "a name for each column");
        }
        if (!names.insert(cell.text).second) {
            throw form_error(input, cell.position, "the name " + shown(cell.text) + " twice in the header",
                             "a different name for each column");
        }
    }
}

/// Whether a column has a name that people give to counts.
bool is_name_of_counts(std::string_view name) {
    constexpr std::array<std::string_view, 8> names = {"count", "counts", "freq",   "frequency",
                                                       "n",     "number", "weight", "weights"};
    std::string small(name);
    std::ranges::transform(small, small.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return std::ranges::find(names, small) != names.end();
}

}  // namespace

TableReader::TableReader(char separator, TableOptions options)
    : separator_(separator), options_(std::move(options)) {
    check_rules(options_);
}

void TableReader::add(const TextInput& input, std::size_t begin) {
    CsvReader reader(input, separator_);
    reader.move_to(begin);
    std::vector<CsvCell> cells;
    if (!reader.next(cells) || cells.empty()) {
        throw input_error(input.name, place_of(input, begin), "nothing",
                          "a line with the names of the columns");
    }
    const Line header = {cells, reader.line_position(), input};
    if (header_.empty()) {
        take_header(header);
    } else {
        require_same_header(header);
    }
    add_lines(input, reader.position());
}

void TableReader::add_lines(const TextInput& input, std::size_t begin) {
    CsvReader reader(input, separator_);
    reader.move_to(begin);
    for (std::vector<CsvCell> cells; reader.next(cells);) {
        add_line({cells, reader.line_position(), input});
    }
    note_other_cells(input);
}

void TableReader::take_header(const Line& header) {
    check_header(header.cells, header.input);
    std::vector<std::string> names;
    for (const CsvCell& cell : header.cells) {
        names.emplace_back(cell.text);
    }
    take_header(names, header.input.name);
}

void TableReader::take_header(const std::vector<std::string>& names, const std::string& file) {
    header_ = names;
    file_ = file;
    report_.has_labels = header_.front().empty();
    cells_ = chosen_columns(header_, options_, file_);
    for (const std::size_t cell : cells_) {
        columns_.emplace_back(header_[cell], options_);
    }
    if (!options_.weight_column.empty()) {
        weight_cell_ = std::ranges::find(header_, options_.weight_column) - header_.begin();
    }
}

void TableReader::require_same_header(const Line& header) const {
    if (header.cells.size() != header_.size()) {
        throw form_error(header.input, header.position, "a header of " + in_cells(header.cells.size()),
                         std::to_string(header_.size()) + ", as many as that of " + file_);
    }
    for (std::size_t i = 0; i < header_.size(); ++i) {
        if (header.cells[i].text != header_[i]) {
            throw form_error(header.input, header.cells[i].position, shown(header.cells[i].text),
                             shown(header_[i]) + ", as in the header of " + file_);
        }
    }
}

void TableReader::add_line(const Line& line) {
    if (!line.cells.empty() && line.cells.size() != header_.size()) {
        const bool is_last_empty = line.cells.back().text.empty();
        throw form_error(
            line.input, line.position,
            "a line of " + in_cells(line.cells.size()) + (is_last_empty ? ", the last of them empty" : ""),
            std::to_string(header_.size()) + ", as many as the header has");
    }
    const std::uint64_t weight = weight_of(line);
    if (weight == 0) {
        ++report_.left_out;
        return;
    }
    add_transactions(line, weight);
    const CsvCell empty = {{}, line.position};
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        columns_[i].add(line.cells.empty() ? empty : line.cells[cells_[i]], line.input);
    }
}

/// For how many transactions a line stands.
std::uint64_t TableReader::weight_of(const Line& line) const {
    if (!weight_cell_) {
        return 1;
    }
    const std::string_view text = line.cells.empty() ? "" : line.cells[*weight_cell_].text;
    if (const auto weight = parse_number<std::uint64_t>(text)) {
        return *weight;
    }
    throw error_at(line.input, line.cells.empty() ? line.position : line.cells[*weight_cell_].position,
                   line.cells.empty() ? "a blank line" : shown(text),
                   "a whole number in the column " + shown(options_.weight_column) +
                       ", for how many transactions the line stands");
}

void TableReader::add_transactions(const Line& line, std::uint64_t weight) {
    if (weight > most_transactions - database_.transactions) {
        throw error_at(line.input, line.position,
                       "more than " + std::to_string(most_transactions) + " transactions",
                       "at most that many");
    }
    ++database_.lines;
    database_.transactions += static_cast<Count>(weight);
    if (weight_cell_) {
        database_.weights.push_back(static_cast<Count>(weight));
    }
}

/// Notes where columns have their first cells that are no numbers, while the input is there.
void TableReader::note_other_cells(const TextInput& input) {
    std::vector<std::pair<std::size_t, std::size_t>> found;  // position and column
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (columns_[i].other_position() && !other_cells_.contains(i)) {
            found.emplace_back(*columns_[i].other_position(), i);
        }
    }
    std::ranges::sort(found);
    PlaceFinder places(input);
    for (const auto& [position, i] : found) {
        const TableColumn& column = columns_[i];
        other_cells_[i] = {column.name(), column.other_text(), input.name, places.next(position), false};
    }
}

Database TableReader::finish() {
    report_uncut();
    report_cut();
    report_identifiers();
    report_counts();
    if (std::ranges::all_of(database_.weights, [](Count weight) { return weight == 1; })) {
        database_.weights.clear();
    }
    std::vector<std::size_t> ends;
    for (TableColumn& column : columns_) {
        column.move_to(database_);
        ends.push_back(database_.items.size());
    }
    if (database_.items.empty()) {
        refuse_table_without_items(file_);
    }
    std::vector<std::string> column_names;
    std::ranges::transform(columns_, std::back_inserter(column_names), &TableColumn::name);
    require_different_names(column_names, ends, database_.names, file_);
    report_twins(ends);
    return std::move(database_);
}

void TableReader::report_uncut() {
    for (auto& [i, cell] : other_cells_) {
        if (columns_[i].has_more_values_than_bins()) {
            cell.has_numbers = columns_[i].has_numbers();
            report_.uncut.push_back(std::move(cell));
        }
    }
}

void TableReader::report_cut() {
    for (const TableColumn& column : columns_) {
        if (column.is_cut_for_many_numbers()) {
            report_.cut.push_back(column.name());
        }
    }
}

void TableReader::report_identifiers() {
    for (const TableColumn& column : columns_) {
        if (column.is_identifier()) {
            report_.identifiers.push_back(column.name());
        }
    }
}

/// A column of counts has a telling name and whole numbers; the other columns, at least two, are of few
/// values, and no two lines have the same of all of them.
void TableReader::report_counts() {
    constexpr std::size_t least_columns = 3;
    if (weight_cell_ || columns_.size() < least_columns) {
        return;
    }
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (is_name_of_counts(columns_[i].name()) && columns_[i].holds_whole_numbers() &&
            are_combinations_distinct(i)) {
            report_.counts = columns_[i].name();
            return;
        }
    }
}

/// Whether each line has another combination of values than all others, a column left aside, though no
/// column alone tells the lines apart: each value is in two lines, on average.
bool TableReader::are_combinations_distinct(std::size_t besides) const {
    std::vector<std::uint64_t> combinations(database_.lines);  // hashes
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (i == besides) {
            continue;
        }
        if (columns_[i].distinct_cells() * 2 > database_.lines) {
            return false;
        }
        columns_[i].mix_into(combinations);
    }
    std::ranges::sort(combinations);
    return std::ranges::adjacent_find(combinations) == combinations.end();
}

void TableReader::report_twins(const std::vector<std::size_t>& ends) {
    for (const std::vector<std::size_t>& group : twin_columns(database_.items, ends)) {
        std::vector<std::string>& names = report_.twins.emplace_back();
        for (const std::size_t column : group) {
            names.push_back(columns_[column].name());
        }
    }
}

TableReader::Part TableReader::take_part() {
    return {std::move(columns_), std::move(other_cells_), std::move(database_), report_.left_out};
}

void refuse_table_without_items(const std::string& file) {
    throw Error(file + ": found no item; expected a header and one transaction a line");
}

void require_different_names(const std::vector<std::string>& columns, const std::vector<std::size_t>& ends,
                             const std::vector<std::string>& names, const std::string& file) {
    // It takes an equals sign in the name of a column: those of "a" and "a=b" can both be "a=b=c".
    if (std::ranges::none_of(columns,
                             [](const std::string& name) { return name.find('=') != std::string::npos; })) {
        return;
    }
    std::unordered_map<std::string_view, std::size_t> column_of;
    std::size_t item = 0;
    for (std::size_t column = 0; column < ends.size(); ++column) {
        for (; item < ends[column]; ++item) {
            const std::string& name = names[item];
            const auto [earlier, is_new] = column_of.try_emplace(name, column);
            if (!is_new) {
                throw Error(file + ": found the item " + shown(name) + " in the columns " +
                            shown(columns[earlier->second]) + " and " + shown(columns[column]) +
                            "; expected a different name for each item");
            }
        }
    }
}

}  // namespace korv::tools
