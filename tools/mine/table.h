#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "common/csv.h"
#include "common/error.h"
#include "common/text_input.h"
#include "mine/database.h"
#include "mine/table_column.h"
#include "mine/table_options.h"

namespace korv::tools {

/// A column that a rule for all columns would have cut into bins, were it not for a cell that is no number.
struct UncutColumn {
    std::string name;
    std::string cell;  ///< the first one that is no number
    std::string file;
    Place place;  ///< of that cell
    /// Whether there are numbers in it, or what people take for some, such as "1,5" or "5%". Few people
    /// expect a column without any to be cut.
    bool has_numbers;
};

/// What the person who reads the rules should know about a table.
struct TableReport {
    std::vector<UncutColumn> uncut;  ///< in the order of the columns
    /// The names of columns that a rule for columns of many distinct numbers cut, in the order of the
    /// columns: see BinRule::more_than.
    std::vector<std::string> cut;
    /// The names of columns whose items are in the same transactions, so that they double every rule: see
    /// twin_columns.
    std::vector<std::vector<std::string>> twins;
    /// The names of columns in which hardly any two lines are alike, such as those of numbers of customers,
    /// in the order of the columns: see TableColumn::is_identifier.
    std::vector<std::string> identifiers;
    /// The name of a column that looks like how often its line occurs; empty where there is none: see
    /// TableReader::report_counts.
    std::string counts;
    std::size_t left_out = 0;  ///< lines with the weight 0
    bool has_labels = false;   ///< whether the first column has no name, and is left out
};

/// Reads tables: the first line has the names of the columns (the first of several columns may have none: it
/// holds labels of lines, and is left out), and each other line is a transaction, or as
/// many as the weight column says. A blank line is an empty transaction. A line with the weight 0 is left out
/// as if it were not there, once it has the right number of cells.
///
/// A cell is an item, "column=value"; a missing one is none. A column for which there is a rule is cut into
/// bins (see column_bins.h). A rule for all columns cuts those that hold nothing but numbers, more of them
/// than bins or than the rule says; a rule for one column takes precedence. A cell of a column that is to be
/// split holds several answers, without blanks around them, each of them the item "column=answer"; an answer
/// that is empty or missing is none. With only_true, a cell of any other column is the item "column" or none.
///
/// Items are numbered from 1, column by column: values and answers in the order in which they first occur,
/// bins from the smallest. While the tables are read, each column holds its distinct cells, and one to four
/// bytes for each line.
class TableReader {
public:
    /// Throws Error for options that contradict each other: see check_rules.
    TableReader(char separator, TableOptions options);
    TableReader(const TableReader&) = delete;
    TableReader& operator=(const TableReader&) = delete;

    /// Reads one more table, which begins at the position `begin`; its header must be that of the first. The
    /// input is not needed afterwards. Throws Error, with the place, when the input does not have the form of
    /// a table, when a cell is not what the options say, and when there are more than 2^31 - 1 transactions.
    /// Throws Error for options that name columns that do not exist.
    void add(const TextInput& input, std::size_t begin = 0);

    /// Begins with the header of a table whose first line is elsewhere: the names of its columns, and its
    /// name for messages. Call this instead of the first add.
    void take_header(const std::vector<std::string>& names, const std::string& file);

    /// Reads lines of a table that are not its first. Throws Error as add does.
    void add_lines(const TextInput& input) { add_lines(input, 0); }

    /// The transactions of all tables in their order, with the names of the items; at least one table was
    /// added. Throws Error when there is no item at all, and when columns have items of the same name. Call
    /// this once, last.
    Database finish();

    /// What there is to know about the tables. It is complete after finish().
    const TableReport& report() const { return report_; }

    /// What was read of a part of the tables, instead of finish(), for those who put parts together. The
    /// columns refer to the reader's options.
    struct Part {
        std::vector<TableColumn> columns;
        std::map<std::size_t, UncutColumn> other_cells;  ///< the first cell that is no number, by column
        Database database;                               ///< its lines and weights
        std::size_t left_out;                            ///< lines with the weight 0
    };
    Part take_part();

    /// The options of its columns.
    const TableOptions& options() const { return options_; }

private:
    /// A line, which begins at a position of the input.
    struct Line {
        const std::vector<CsvCell>& cells;
        std::size_t position;
        const TextInput& input;
    };

    void add_lines(const TextInput& input, std::size_t begin);
    void take_header(const Line& header);
    void require_same_header(const Line& header) const;
    void add_line(const Line& line);
    std::uint64_t weight_of(const Line& line) const;
    void add_transactions(const Line& line, std::uint64_t weight);
    void note_other_cells(const TextInput& input);
    void report_uncut();
    void report_cut();
    void report_identifiers();
    void report_counts();
    bool are_combinations_distinct(std::size_t besides) const;
    void report_twins(const std::vector<std::size_t>& ends);

    char separator_;
    TableOptions options_;
    std::string file_;                 ///< the first one
    std::vector<std::string> header_;  ///< the names of all columns; empty until there is a table
    std::vector<TableColumn> columns_;
    std::vector<std::size_t> cells_;                  ///< the position of each of `columns_` in a line
    std::optional<std::size_t> weight_cell_;          ///< the position of the weight column in a line
    std::map<std::size_t, UncutColumn> other_cells_;  ///< cells that are no numbers, by `columns_`
    Database database_;                               ///< its lines and weights
    TableReport report_;
};

/// Throws Error when two columns have items of the same name. A column has the names from the end of the
/// column before to its own end. `file`: that of the table, for the message.
void require_different_names(const std::vector<std::string>& columns, const std::vector<std::size_t>& ends,
                             const std::vector<std::string>& names, const std::string& file);

/// Throws Error: there is no item in the tables that begin with this file.
[[noreturn]] void refuse_table_without_items(const std::string& file);

}  // namespace korv::tools
