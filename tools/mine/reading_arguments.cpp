#include "mine/reading_arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>

#include "common/csv.h"
#include "common/error.h"
#include "mine/argument_check.h"

namespace korv::tools {

namespace {

constexpr const char* group = "How transactions are read";

/// The word for no rule of bins.
constexpr const char* no_bins = "none";

/// The options that go with tables alone.
constexpr std::array options_for_tables = {"--columns", "--ignore",    "--missing", "--bins",
                                           "--split",   "--only-true", "--weight"};

void add_table_options(CLI::App& app, ReadingWords& words, Reader reader) {
    app.add_option(
           "--columns", words.columns,
           "Columns of the table to read, with commas between them; * and ? stand for any text and any "
           "character")
        ->group(group);
    app.add_option("--ignore", words.ignored, "Columns of the table to leave out, written as for --columns")
        ->group(group);
    app.add_option("--missing", words.missing,
                   "Words for cells without a value, with commas between them; '' for empty cells alone "
                   "(default: NA,NaN,null,?)")
        ->group(group);
    const bool takes_none = reader == Reader::rules;
    const auto is_bins = [takes_none](const std::string& text) {
        return (takes_none && text == no_bins) || parse_bin_rule(text).has_value();
    };
    app.add_option("--bins", words.bins,
                   std::string("Cut columns of numbers into so many bins of roughly equal size, 4 for all "
                               "columns, age=4 for one, or at points, age=18,65; ") +
                       (takes_none ? "none for no bins; " : "") + "may be repeated" +
                       (takes_none ? " (default: 4 for columns of more than 8 numbers)" : ""))
        ->check(argument_check(is_bins,
                               "a number of bins from 1 on, a column and a number of bins such "
                               "as age=4, or a column and ascending points such as age=18,65" +
                                   std::string(takes_none ? ", or none" : "")))
        ->take_all()
        ->allow_extra_args(false)
        ->group(group);
    app.add_option("--split", words.splits,
                   "Cells of this column hold several values with a separator between them, such as "
                   "languages=';' (or tab); may be repeated")
        ->check(argument_check(parse_split_rule, "a column and a separator such as languages=';'"))
        ->take_all()
        ->allow_extra_args(false)
        ->group(group);
    app.add_flag("--only-true", words.only_true,
                 "The table's cells say yes or no; an item is a column with yes, named after it")
        ->group(group);
    app.add_option("--weight", words.weight,
                   "The column of the table that says how many transactions a line stands for")
        ->group(group);
}

std::optional<Format> parse_format(const std::string& word) {
    constexpr std::array formats = {Format::fimi, Format::basket, Format::table};
    const auto* const found = std::ranges::find(formats, word, word_for);
    return found == formats.end() ? std::nullopt : std::optional(*found);
}

/// The words of a list that must not be empty where it is given.
std::vector<std::string> column_words(const CLI::App& app, const std::string& option,
                                      const std::string& text) {
    std::vector<std::string> words = parse_words(option, text);
    if (app.count(option) > 0 && words.empty()) {
        throw Error(option + ": found no name; expected names of columns with commas between them");
    }
    return words;
}

TableOptions table_options(const CLI::App& app, const ReadingWords& words) {
    TableOptions options;
    options.columns = column_words(app, "--columns", words.columns);
    options.ignored = column_words(app, "--ignore", words.ignored);
    if (app.count("--missing") > 0) {
        options.missing = parse_words("--missing", words.missing);
    }
    for (const std::string& word : words.bins) {
        if (word != no_bins) {
            options.bins.push_back(*parse_bin_rule(word));
        } else if (words.bins.size() > 1) {
            throw Error("--bins: found none among other rules; expected none alone, or rules");
        }
    }
    for (const std::string& word : words.splits) {
        options.splits.push_back(*parse_split_rule(word));
    }
    options.only_true = words.only_true;
    options.weight_column = words.weight;
    if (app.count("--weight") > 0 && words.weight.empty()) {
        throw Error("--weight: found no name; expected the name of a column");
    }
    check_rules(options);
    return options;
}

}  // namespace

std::optional<char> parse_separator(const std::string& text) {
    if (text == "tab") {
        return '\t';
    }
    const bool is_usable = text.size() == 1 && text != "\"" && text != "\n" && text != "\r";
    return is_usable ? std::optional(text.front()) : std::nullopt;
}

std::vector<std::string> parse_words(const std::string& option, const std::string& text) {
    const TextInput input = {option, text};
    CsvReader reader(input, ',');
    std::vector<std::string> words;
    for (std::vector<CsvCell> row; reader.next(row);) {
        for (const CsvCell& cell : row) {
            if (!cell.text.empty()) {
                words.emplace_back(cell.text);
            }
        }
    }
    return words;
}

void add_reading_options(CLI::App& app, ReadingWords& words, Reader reader) {
    std::vector<std::string> formats = {"fimi", "basket", "table"};
    if (reader == Reader::rules) {
        formats.insert(formats.begin(), {"classes", "rules"});
    }
    app.add_option(
           "--format", words.format,
           std::string(reader == Reader::rules ? "classes: a class file; rules: rule files of korv; " : "") +
               "fimi: items as numbers with blanks between them; basket: item names with separators "
               "between them; "
               "table: CSV with a header, each cell an item column=value (default: seen from the first "
               "lines)")
        ->check(CLI::IsMember(formats))
        ->group(group);
    app.add_option("--separator", words.separator,
                   "What separates the cells of baskets and tables: one byte, or tab (default: the comma, "
                   "semicolon, tab or bar of the first lines)")
        ->check(argument_check(parse_separator, "one byte, or tab"))
        ->group(group);
    app.add_flag("--weighted", words.weighted,
                 "Each line of fimi or baskets begins with how many times its transaction occurs, as uniq -c "
                 "writes it")
        ->group(group);
    add_table_options(app, words, reader);
}

ReadingOptions reading_options(const CLI::App& app, const ReadingWords& words) {
    ReadingOptions options;
    options.format = parse_format(words.format);
    if (app.count("--separator") > 0) {
        options.separator = parse_separator(words.separator);
    }
    options.weighted = words.weighted;
    for (const std::string option : options_for_tables) {
        const bool is_no_bins = option == "--bins" && words.bins == std::vector<std::string>{no_bins};
        if (app.count(option) > 0 && !is_no_bins) {
            options.given_for_tables.push_back(option);
        }
    }
    options.table = table_options(app, words);
    check_together(options);
    return options;
}

}  // namespace korv::tools
