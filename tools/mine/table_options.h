#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace korv::tools {

/// A rule that numbers are to be cut into bins: into so many, or at points.
struct BinRule {
    std::string column;                    ///< its name; empty for all columns that hold nothing but numbers
    std::size_t bins;                      ///< at least 1; without meaning where there are points
    std::vector<std::string> points = {};  ///< finite numbers as they are typed, ascending; each begins a bin
    /// A rule for all columns cuts those of more than so many distinct numbers; at least those of more
    /// numbers than bins.
    std::size_t more_than = 0;

    /// How many distinct numbers a column that a rule for all columns leaves as it is has at most.
    std::size_t most_uncut() const { return std::max(bins, more_than); }
};

/// A rule that a cell holds several answers, each of them an item.
struct SplitRule {
    std::string column;
    std::string separator;  ///< of answers; at least one byte
};

/// What becomes of the columns of a table. Names and words are compared byte for byte.
struct TableOptions {
    std::vector<std::string> columns = {};  ///< those that are read, with wildcards; empty for all
    std::vector<std::string> ignored = {};  ///< those that are not read all the same, with wildcards
    /// Cells that are no item, besides empty ones.
    std::vector<std::string> missing = {"NA", "NaN", "null", "?"};
    std::vector<BinRule> bins = {};
    std::vector<SplitRule> splits = {};
    bool only_true = false;          ///< cells say yes or no, and an item is the name of a column
    std::string weight_column = {};  ///< says how many transactions a line stands for; empty for none
};

/// Parses "4", for all columns of numbers, "age=4", for one column, or "age=10,20,30" for points. A comma
/// behind a single point tells it from a number of bins: "age=18,". The last equals sign ends the name.
/// Returns nothing for anything else, and for points that do not ascend.
std::optional<BinRule> parse_bin_rule(const std::string& text);

/// Parses a column and a separator, "languages=;". The last equals sign that has something behind it ends the
/// name. The word tab stands for a tab. Returns nothing for anything else.
std::optional<SplitRule> parse_split_rule(const std::string& text);

/// Throws Error for rules that contradict each other: two for the same column or two for all columns, and one
/// for all columns together with only_true.
void check_rules(const TableOptions& options);

}  // namespace korv::tools
