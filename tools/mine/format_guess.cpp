#include "mine/format_guess.h"

#include <algorithm>
#include <map>
#include <set>
#include <span>
#include <string_view>
#include <utility>

#include "base/number_text.h"
#include "common/csv.h"
#include "common/error.h"
#include "common/lines.h"
#include "mine/separator_line.h"

namespace korv::tools {

namespace {

constexpr std::string_view blanks = " \t";
constexpr std::string_view digits = "0123456789";

constexpr std::size_t most_lines = 1000;
constexpr std::size_t most_bytes = std::size_t{1} << 20;

using Row = std::vector<std::string>;

bool is_whole_number(std::string_view word) {
    return !word.empty() && word.find_first_not_of(digits) == std::string_view::npos;
}

std::string_view without_blanks_before(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text;
}

/// The line without how many times its transaction occurs; unchanged where that is not said.
std::string_view without_weight(std::string_view line) {
    const std::string_view rest = without_blanks_before(line);
    const std::string_view word = rest.substr(0, rest.find_first_of(blanks));
    return is_whole_number(word) ? rest.substr(std::min(word.size() + 1, rest.size())) : line;
}

/// The first lines of a text, without those that are blank.
struct Sample {
    TextInput text;
    bool is_all = true;                     ///< whether no line follows
    std::vector<std::size_t> numbers = {};  ///< of the lines, from 1, as they are in the whole text
};

Sample sample_of(const TextInput& input, bool weighted) {
    const auto stated = separator_line(input);
    std::string_view text = std::string_view(input.text).substr(stated ? stated->end : 0);
    Sample sample = {{input.name, {}}, text.size() <= most_bytes};
    if (!sample.is_all) {
        text = text.substr(0, most_bytes);
        const std::size_t last_end = text.rfind('\n');
        text = text.substr(0, last_end == std::string_view::npos ? text.size() : last_end + 1);
    }
    std::size_t number = stated ? 1 : 0;
    for_each_line(text, [&](std::string_view line) {
        ++number;
        line = weighted ? without_weight(line) : line;
        if (without_blanks_before(line).empty()) {
            return;
        }
        if (sample.numbers.size() == most_lines) {
            sample.is_all = false;
            return;
        }
        sample.text.text.append(line).append("\n");
        sample.numbers.push_back(number);
    });
    return sample;
}

/// What a line tells of numbers with blanks between them.
enum class Numbers {
    none,     ///< it holds anything else
    one,      ///< it is one number
    tabbed,   ///< several with tabs between them
    blanked,  ///< several with blanks between them
};

Numbers numbers_in(std::string_view line) {
    line = without_blanks_before(line);
    line = line.substr(0, line.find_last_not_of(blanks) + 1);
    const bool has_blank = line.find(' ') != std::string_view::npos;
    std::size_t count = 0;
    for (; !line.empty(); line = without_blanks_before(line)) {
        const std::string_view word = line.substr(0, line.find_first_of(blanks));
        if (!is_whole_number(word)) {
            return Numbers::none;
        }
        ++count;
        line.remove_prefix(word.size());
    }
    if (count == 1) {
        return Numbers::one;
    }
    return has_blank ? Numbers::blanked : Numbers::tabbed;
}

/// The lines of a sample, split at one separator.
struct Rows {
    char separator;
    std::vector<Row> rows;
    std::vector<std::size_t> lines = {};  ///< in which the rows begin, numbered from 1 in the whole text
    bool is_broken = false;               ///< whether quotes are not as they should be behind these rows

    std::size_t rows_with_separator() const {
        return static_cast<std::size_t>(
            std::ranges::count_if(rows, [](const Row& r) { return r.size() > 1; }));
    }
    bool occurs() const { return rows_with_separator() > 0; }
    bool occurs_first() const { return !rows.empty() && rows.front().size() > 1; }
    bool are_of_equal_length() const {
        return std::ranges::all_of(rows, [this](const Row& r) { return r.size() == rows.front().size(); });
    }
};

Rows rows_of(const Sample& sample, char separator) {
    Rows result = {separator, {}};
    CsvReader reader(sample.text, separator);
    std::size_t line = 0;  // of the sample
    try {
        for (std::vector<CsvCell> cells; reader.next(cells);) {
            result.lines.push_back(sample.numbers[line]);
            const std::string_view read =
                std::string_view(sample.text.text)
                    .substr(reader.line_position(), reader.position() - reader.line_position());
            line += static_cast<std::size_t>(std::ranges::count(read, '\n'));
            Row& row = result.rows.emplace_back();
            for (const CsvCell& cell : cells) {
                row.emplace_back(cell.text);
            }
        }
    } catch (const Error&) {
        // A cell in quotes may go on behind the sample.
        result.is_broken = sample.is_all;
    }
    return result;
}

/// The rows by each of the likely separators that occur. Those that break quotes are left out, unless all do.
std::vector<Rows> likely_rows(const Sample& sample) {
    std::vector<Rows> result;
    for (const char separator : likely_separators) {
        if (Rows rows = rows_of(sample, separator); rows.occurs()) {
            result.push_back(std::move(rows));
        }
    }
    if (std::ranges::any_of(result, [](const Rows& rows) { return !rows.is_broken; })) {
        std::erase_if(result, [](const Rows& rows) { return rows.is_broken; });
    }
    return result;
}

/// The only member for which `condition` holds; null when there is none or more than one.
template <typename Condition>
const Rows* only_one(const std::vector<Rows>& likely, Condition condition) {
    const auto first = std::ranges::find_if(likely, condition);
    const bool is_only = first != likely.end() && std::ranges::none_of(first + 1, likely.end(), condition);
    return is_only ? &*first : nullptr;
}

/// The rows by a separator that is in ten times as many lines as any other; null when there is none.
const Rows* by_dominance(const std::vector<Rows>& likely) {
    return only_one(likely, [&likely](const Rows& one) {
        return std::ranges::all_of(likely, [&one](const Rows& other) {
            return &one == &other || one.rows_with_separator() >= 10 * other.rows_with_separator();
        });
    });
}

/// The rows of what may be a table: the first line holds one of the separators, or one that makes all rows
/// equally long.
const Rows* by_header(const std::vector<Rows>& likely) {
    if (const Rows* const rows = only_one(likely, &Rows::occurs_first)) {
        return rows;
    }
    return only_one(likely,
                    [](const Rows& rows) { return rows.occurs_first() && rows.are_of_equal_length(); });
}

/// The rows of what may be baskets or a table; null in doubt.
const Rows* by_any(const std::vector<Rows>& likely) {
    const Rows* const equal =
        only_one(likely, [](const Rows& rows) { return rows.occurs_first() && rows.are_of_equal_length(); });
    const bool is_only_one_in_header = equal != nullptr && only_one(likely, &Rows::occurs_first) == equal;
    return is_only_one_in_header ? equal : by_dominance(likely);
}

std::string listed(const std::vector<Rows>& likely) {
    std::string text;
    for (std::size_t i = 0; i < likely.size(); ++i) {
        text += i == 0 ? "" : i + 1 < likely.size() ? ", " : " and ";
        text += shown_separator(likely[i].separator);
    }
    return text;
}

/// What the lengths of rows are.
struct Lengths {
    std::size_t smallest = 0;
    std::size_t largest = 0;
    std::size_t most_frequent = 0;
    std::size_t frequency = 0;  ///< of the most frequent one
};

Lengths lengths_of(const std::vector<Row>& rows) {
    std::map<std::size_t, std::size_t> counts;
    for (const Row& row : rows) {
        ++counts[row.size()];
    }
    const auto mode = std::ranges::max_element(counts, {}, [](const auto& each) { return each.second; });
    return {counts.begin()->first, counts.rbegin()->first, mode->first, mode->second};
}

/// Whether the first column holds labels of lines: it has no name, and another label in each line.
bool has_labels(const std::vector<Row>& rows) {
    std::set<std::string_view> labels;
    return rows.front().size() > 1 && rows.front().front().empty() &&
           std::ranges::all_of(rows.begin() + 1, rows.end(), [&labels](const Row& row) {
               return !row.front().empty() && labels.insert(row.front()).second;
           });
}

/// What keeps the first row from being the header of a table; empty when nothing does.
std::string flaw_of_header(const std::vector<Row>& rows) {
    std::set<std::string_view> names;
    for (const std::string& name : std::span(rows.front()).subspan(has_labels(rows) ? 1 : 0)) {
        if (name.empty()) {
            return "with an empty cell";
        }
        if (!names.insert(name).second) {
            return "with " + shown(name) + " twice";
        }
    }
    if (std::ranges::all_of(names,
                            [](std::string_view name) { return parse_number<double>(name).has_value(); })) {
        return "of numbers";
    }
    for (std::size_t i = 1; i < rows.size(); ++i) {
        for (const std::string& cell : rows[i]) {
            if (names.contains(cell)) {
                return "with " + shown(cell) + ", which occurs again below";
            }
        }
    }
    return "";
}

/// Whether rows of equal length seem to be baskets that were filled up with empty cells.
bool are_filled_up(const std::vector<Row>& rows) {
    std::set<std::size_t> lengths;
    for (const Row& row : rows) {
        const auto last =
            std::find_if(row.rbegin(), row.rend(), [](const auto& cell) { return !cell.empty(); });
        if (std::find(last, row.rend(), "") != row.rend()) {
            return false;
        }
        lengths.insert(static_cast<std::size_t>(row.rend() - last));
    }
    return lengths.size() > 2;
}

/// Whether all cells are whole numbers or empty.
bool are_numbers(const std::vector<Row>& rows) {
    return std::ranges::all_of(rows, [](const Row& row) {
        return std::ranges::all_of(row,
                                   [](const auto& cell) { return cell.empty() || is_whole_number(cell); });
    });
}

std::string cells(std::size_t count) {
    return std::to_string(count) + (count == 1 ? " cell" : " cells");
}

/// "2 cells", or "2 to 7 cells".
std::string cells(const Lengths& lengths) {
    const bool vary = lengths.smallest < lengths.largest;
    return (vary ? std::to_string(lengths.smallest) + " to " : "") + cells(lengths.largest);
}

FormatGuess guess_from_equal_rows(const Rows& rows) {
    const std::string seen = "rows of " + cells(rows.rows.front().size());
    if (rows.rows.size() == 1) {
        return {{}, rows.separator, "a single line of " + cells(rows.rows.front().size())};
    }
    if (const std::string flaw = flaw_of_header(rows.rows); !flaw.empty()) {
        return {{}, rows.separator, seen + " under a first line " + flaw};
    }
    if (are_filled_up(rows.rows)) {
        return {{}, rows.separator, seen + ", the last of which are often empty"};
    }
    return {Format::table, rows.separator, seen + " under a first line of distinct names"};
}

/// Doubt, since some rows have not as many cells as nearly all have.
FormatGuess guess_from_odd_row(const Rows& rows, std::size_t usual) {
    const auto odd = std::ranges::find_if(rows.rows, [usual](const Row& row) { return row.size() != usual; });
    const std::string seen =
        "a line of " + cells(odd->size()) + ", where nearly all have " + std::to_string(usual);
    return {{}, rows.separator, seen, rows.lines[static_cast<std::size_t>(odd - rows.rows.begin())]};
}

FormatGuess guess_from_varying_rows(const Rows& rows) {
    const Lengths lengths = lengths_of(rows.rows);
    const std::string seen = "lines of " + cells(lengths);
    const bool hardly_occurs = rows.rows_with_separator() * 10 < rows.rows.size();
    const bool are_nearly_equal = lengths.most_frequent > 1 && lengths.frequency * 4 > rows.rows.size() * 3;
    if (hardly_occurs || are_nearly_equal) {
        return guess_from_odd_row(rows, lengths.most_frequent);
    }
    if (rows.rows.front().size() == lengths.largest && flaw_of_header(rows.rows).empty()) {
        return {{}, rows.separator, seen + ", none longer than the first, which may be a header"};
    }
    return {Format::basket, rows.separator, seen};
}

FormatGuess guess_from_rows(const Rows& rows, bool weighted) {
    if (!rows.occurs()) {
        return {{}, rows.separator, "a single column"};
    }
    if (weighted) {
        const Lengths lengths = lengths_of(rows.rows);
        return {Format::basket, rows.separator, "numbers, each with " + cells(lengths)};
    }
    return rows.are_of_equal_length() ? guess_from_equal_rows(rows) : guess_from_varying_rows(rows);
}

/// How many lines are what kind of numbers.
using NumberCounts = std::map<Numbers, std::size_t>;

NumberCounts count_numbers(const Sample& sample) {
    NumberCounts counts;
    for_each_line(sample.text.text, [&counts](std::string_view line) { ++counts[numbers_in(line)]; });
    return counts;
}

/// What the lines tell about numbers alone; nothing when they are no fimi.
std::optional<FormatGuess> guess_from_numbers(const NumberCounts& counts) {
    if (!counts.contains(Numbers::none)) {
        return FormatGuess{Format::fimi, {}, "whole numbers with blanks between them"};
    }
    if (counts.contains(Numbers::blanked)) {
        return FormatGuess{Format::fimi, {}, "lines of whole numbers with blanks between them"};
    }
    return std::nullopt;
}

/// What the lines tell about cells.
FormatGuess guess_from_cells(const Sample& sample, const NumberCounts& numbers, const KnownOfText& known) {
    if (known.separator) {
        return guess_from_rows(rows_of(sample, *known.separator), known.weighted);
    }
    const std::vector<Rows> likely = likely_rows(sample);
    if (likely.empty()) {
        return {{}, {}, "a single column, without commas, semicolons, tabs or bars"};
    }
    const Rows* const rows = by_any(likely);
    if (rows == nullptr) {
        return {{}, {}, listed(likely) + ", each of which may be the separator", {}, true};
    }
    FormatGuess guess = guess_from_rows(*rows, known.weighted);
    if (!guess.format && rows->is_broken) {
        guess.seen += ", before a quote that is not closed, or is not the end of its cell";
    }
    if (guess.format == Format::basket && rows->separator == '\t' && numbers.contains(Numbers::tabbed)) {
        guess = {{}, '\t', "lines of numbers with tabs between them, and others"};
    }
    return guess;
}

}  // namespace

std::string word_for(Format format) {
    switch (format) {
        case Format::basket:
            return "basket";
        case Format::table:
            return "table";
        case Format::fimi:
            break;
    }
    return "fimi";
}

std::string shown_separator(char separator) {
    return separator == '\t' ? "tab" : shown(std::string_view(&separator, 1));
}

FormatGuess guess_format(const TextInput& input, const KnownOfText& known) {
    const Sample sample = sample_of(input, known.weighted);
    const NumberCounts numbers = count_numbers(sample);
    const auto fimi = guess_from_numbers(numbers);
    if (fimi && !separator_line(input)) {
        return *fimi;
    }
    FormatGuess guess = guess_from_cells(sample, numbers, known);
    const bool could_be_names = guess.format != Format::basket || known.separator ||
                                !are_numbers(rows_of(sample, *guess.separator).rows);
    if (!could_be_names) {
        // As names, the numbers would be items with other numbers.
        return {
            {}, guess.separator, "whole numbers with " + shown_separator(*guess.separator) + " between them"};
    }
    return guess;
}

FormatGuess guess_format_of_names(const TextInput& input, const KnownOfText& known) {
    const Sample sample = sample_of(input, known.weighted);
    NumberCounts numbers = count_numbers(sample);
    const auto lines = static_cast<std::size_t>(std::ranges::count(sample.text.text, '\n'));
    if (numbers[Numbers::none] * 2 <= lines) {
        return {{}, {}, "lines of whole numbers"};
    }
    return guess_from_cells(sample, numbers, known);
}

bool is_table_without_weights(const TextInput& input, std::optional<char> separator) {
    const Sample sample = sample_of(input, false);
    const std::string_view first = std::string_view(sample.text.text).substr(0, sample.text.text.find('\n'));
    return without_weight(first) == first && guess_format(input, {separator, false}).format == Format::table;
}

char guess_separator(const TextInput& input, Format format, bool weighted) {
    const std::vector<Rows> likely = likely_rows(sample_of(input, weighted));
    if (likely.empty()) {
        return ',';
    }
    const Rows* const rows = format == Format::table ? by_header(likely) : by_dominance(likely);
    if (rows != nullptr) {
        return rows->separator;
    }
    const bool is_header_alone = format == Format::table && std::ranges::none_of(likely, &Rows::occurs_first);
    if (is_header_alone) {
        return ',';
    }
    throw Error(input.name + ": found " + listed(likely) +
                ", each of which may be the separator; expected --separator to say which");
}

std::optional<char> another_separator(const TextInput& input, char separator, bool weighted) {
    const auto stated = separator_line(input);
    if (stated && stated->separator != separator) {
        return stated->separator;
    }
    const Sample sample = sample_of(input, weighted);
    const std::vector<Rows> likely = likely_rows(sample);
    const bool is_other = likely.size() == 1 && !rows_of(sample, separator).occurs();
    return is_other ? std::optional(likely.front().separator) : std::nullopt;
}

std::optional<OtherSeparator> other_separator_of_header(const TextInput& input, char separator) {
    const Sample sample = sample_of(input, false);
    const Rows rows = rows_of(sample, separator);
    if (rows.rows.empty() || rows.occurs_first()) {
        return std::nullopt;
    }
    std::optional<OtherSeparator> result;
    for (const Rows& other : likely_rows(sample)) {
        const bool is_in_most_rows = other.rows_with_separator() * 2 > other.rows.size();
        const std::size_t count = is_in_most_rows ? other.rows.front().size() - 1 : 0;
        if (count > (result ? result->count : 0)) {
            result = {other.separator, count};
        }
    }
    return result;
}

}  // namespace korv::tools
