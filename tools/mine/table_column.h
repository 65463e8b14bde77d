#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/csv.h"
#include "common/text_input.h"
#include "mine/column_dictionary.h"
#include "mine/column_numbers.h"
#include "mine/database.h"
#include "mine/table_options.h"

namespace korv::tools {

/// What a cell of a column stands for.
enum class Meaning {
    value,             ///< the item "column=cell"
    number,            ///< a bin of a column that is to be cut
    number_or_values,  ///< a bin where all cells are numbers and there are more of them than bins
    answers,           ///< several items "column=answer"
    flag,              ///< the item "column", or none
};

/// The items of a column, and its values: the distinct cells by their numbers in the dictionary.
struct ColumnItems {
    std::vector<std::string> names;     ///< of the items, in their order
    std::vector<std::uint32_t> begins;  ///< where in `of_values` the items of each value begin, and their end
    std::vector<std::uint32_t> of_values;
};

/// A column of a table while it is read: each distinct cell once, and a small number for each line.
class TableColumn {
public:
    /// What `options` make of the column with this name. They must outlive the column.
    TableColumn(std::string name, const TableOptions& options);

    /// Adds the cell of one more line. Throws Error, with the place, for one that cannot be what the column
    /// says that it is.
    void add(const CsvCell& cell, const TextInput& input) {
        const auto [number, is_new] = dictionary_.number_of(cell.text);
        if (is_new) {
            examine(cell, input);
        }
        lines_.push_back(number);
    }

    /// Adds a text that a column of the same options has in another part of the table, as `add` does, but to
    /// no line. Returns its number, from 0 in the order in which they were added.
    std::uint32_t add_value(std::string_view text);

    /// How many lines there are.
    std::size_t lines() const;

    /// The distinct texts in their order, and in how many transactions each is, where `weights` are those of
    /// the lines, or empty for one each.
    std::string_view text(std::uint32_t number) const { return dictionary_.text(number); }
    std::vector<std::uint64_t> cells_of_values(const std::vector<Count>& weights) const;

    /// The items of the column. `cells`: of each value in all parts of the table; only looked at where the
    /// column is cut.
    ColumnItems items(const std::vector<std::uint64_t>& cells) const;

    /// Moves the columns of the items that occur in these lines to the end of `database`, numbered from
    /// `first` on, and frees the cells. `items`: those of the values here, without names, in a column that
    /// has so many items. Call this once, last.
    void move_to(Database& database, Item first, ColumnItems items, std::size_t number_of_items);

    /// Moves the columns of the items that occur to the end of `database`, and their names, and frees the
    /// cells. Items get the next numbers. Call this once, last.
    void move_to(Database& database);

    const std::string& name() const { return name_; }

    /// The position of the first cell that is no number, in the input that was added last when it was found;
    /// nothing where there is none, or where nobody asked for numbers of all columns.
    std::optional<std::size_t> other_position() const { return other_position_; }
    /// The text of that cell.
    std::string other_text() const { return std::string(dictionary_.text(other_)); }
    /// Whether there is a number in the column, or what people take for one, such as "1,5" or "5%".
    bool has_numbers() const { return has_numbers_; }
    /// Whether `--bins K` would have cut the column, had all its cells been numbers.
    bool has_more_values_than_bins() const;
    /// Whether cells become bins. Call this before move_to.
    bool is_cut() const;
    /// Whether it is cut by a rule that is for columns of many distinct numbers. Call this before move_to.
    bool is_cut_for_many_numbers() const { return bins_ != nullptr && bins_->more_than > 0 && is_cut(); }
    /// Whether each cell is an item of its own, in one line alone: there are more than 20, all different, and
    /// at most one line in 20 has none. Such a column floods the names, and hardly makes a rule. One that is
    /// cut, split or of flags is none. Call this before move_to. O(distinct cells), and O(lines) where these
    /// are nearly as many.
    bool is_identifier() const {
        return is_identifier(lines(), [this] { return cells_of_values({}); });
    }

    /// The same for a table of which this has no lines: `lines` is how many there are, and `cells` gives in
    /// how many of them each value is.
    bool is_identifier(std::size_t lines, const std::function<std::vector<std::uint64_t>()>& cells) const;
    /// Whether each cell is a whole number. O(distinct cells). Call this before move_to.
    bool holds_whole_numbers() const;
    /// How many different cells there are, missing ones among them. Call this before move_to.
    std::size_t distinct_cells() const { return dictionary_.size(); }
    /// Mixes the cell of each line into the hash of that line, so that equal cells leave equal hashes equal.
    /// Call this before move_to. O(lines).
    void mix_into(std::vector<std::uint64_t>& hashes) const;

private:
    void examine(const CsvCell& cell, const TextInput& input);
    std::string way_out() const;
    void require_name(std::string_view text, const CsvCell& cell, const TextInput& input) const;
    void examine_number(const CsvCell& cell, const TextInput& input);
    bool is_missing(std::string_view text) const;
    std::size_t distinct_values() const;
    ColumnItems bin_items(const std::vector<std::uint64_t>& cells) const;
    ColumnItems value_items() const;
    ColumnItems answer_items() const;
    ColumnItems flag_items() const;
    std::size_t distinct_numbers() const;

    std::string name_;
    const TableOptions* options_;
    Meaning meaning_ = Meaning::value;
    const BinRule* bins_ = nullptr;
    std::string_view separator_;  ///< of answers
    ColumnDictionary dictionary_;
    ColumnNumbers lines_;          ///< the number of each line's cell in the dictionary
    std::vector<double> numbers_;  ///< of the texts in the dictionary, where they are to be cut; or NaN
    std::optional<std::size_t> other_position_;
    std::uint32_t other_ = 0;
    bool has_numbers_ = false;
};

}  // namespace korv::tools
