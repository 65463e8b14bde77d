#include "mine/arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "base/number_text.h"
#include "common/error.h"
#include "common/output_place.h"
#include "common/printable.h"

namespace korv::tools {

namespace {

/// A check for CLI11: says what is wrong with a text that `parse` rejects; empty for any other text.
template <typename Parse>
auto check(Parse parse, const std::string& expected) {
    return [parse, expected](const std::string& text) {
        return parse(text) ? "" : "found " + shown(text) + "; expected " + expected;
    };
}

bool is_path(const std::string& text) {
    return !text.empty();
}

/// What is wrong with the command line. Its words are repeated as they were typed.
std::string complaint(const CLI::App*, const CLI::Error& error) {
    return printable(error.what()) + "\nRun with --help for more information.\n";
}

}  // namespace

std::optional<Threshold> parse_threshold(const std::string& text) {
    if (!text.ends_with('%')) {
        const auto count = parse_number<Count>(text);
        return count ? std::optional(Threshold{static_cast<double>(*count), false}) : std::nullopt;
    }
    const auto percentage = parse_number<double>(std::string_view(text).substr(0, text.size() - 1));
    if (!percentage || !std::isfinite(*percentage) || *percentage < 0) {
        return std::nullopt;
    }
    return Threshold{*percentage, true};
}

Count in_transactions(const Threshold& threshold, Count transactions) {
    // So that a percentage without an exact binary form is not rounded up to one transaction too many.
    constexpr double tolerance = 1e-9;
    const double count = threshold.is_percentage ? std::ceil(threshold.value / 100 * transactions - tolerance)
                                                 : threshold.value;
    if (count < 1 || count > transactions) {
        throw Error("--min-support: found " + std::to_string(static_cast<long long>(std::min(count, 1e18))) +
                    " transactions; expected at least 1 and at most " + std::to_string(transactions) +
                    ", the number of transactions in the input");
    }
    return static_cast<Count>(count);
}

std::optional<char> parse_separator(const std::string& text) {
    if (text == "tab") {
        return '\t';
    }
    const bool is_usable = text.size() == 1 && text != "\"" && text != "\n" && text != "\r";
    return is_usable ? std::optional(text.front()) : std::nullopt;
}

std::string default_names(const std::string& output) {
    return output == "-" || is_special(output)
               ? ""
               : std::filesystem::path(output).replace_extension(".names").string();
}

namespace {

/// The options as they are typed.
struct Words {
    std::string min_support;
    std::string closure_items = "frequent";
    std::string format = "fimi";
    std::string separator = ",";
    std::vector<std::string> bins;
};

void add_options(CLI::App& app, Arguments& arguments, Words& words) {
    app.set_version_flag("--version", "korv-mine " KORV_VERSION);
    app.add_option("TRANSACTIONS", arguments.transactions,
                   "The database, one transaction per line; - for standard input")
        ->required();
    app.add_option(
           "-s,--min-support", words.min_support,
           "Smallest number of transactions that hold all items of an essential itemset: a count, or a "
           "percentage of all transactions such as 2.5%")
        ->required()
        ->check(check(parse_threshold, "a number of transactions, or a percentage such as 2.5%"));
    app.add_option("-o,--output", arguments.output, "The class file; - for standard output")
        ->check(check(is_path, "the name of a file"))
        ->capture_default_str();
    app.add_option("--max-size", arguments.mining.max_size, "Largest number of items of an essential itemset")
        ->check(CLI::Range(1, 1'000'000'000));
    app.add_option("--closure-items", words.closure_items,
                   "Items that a closed itemset can have: those in --min-support transactions, or all")
        ->check(CLI::IsMember({"frequent", "all"}))
        ->capture_default_str();
    app.add_option("--format", words.format,
                   "fimi: items as numbers with blanks between them; basket: item names with separators "
                   "between them; "
                   "table: CSV with a header, each cell an item column=value")
        ->check(CLI::IsMember({"fimi", "basket", "table"}))
        ->capture_default_str();
    app.add_option("--separator", words.separator,
                   "What separates the cells of baskets and tables: one byte, or tab")
        ->check(check(parse_separator, "one byte, or tab"))
        ->capture_default_str();
    app.add_option(
           "--bins", words.bins,
           "Cut columns of numbers into so many bins of roughly equal size: 4 for all columns, age=4 for "
           "one; may be repeated")
        ->check(check(parse_bin_rule,
                      "a number of bins from 1 on, or a column and a number of bins such as age=4"))
        ->take_all()
        ->allow_extra_args(false);
    app.add_option("--names", arguments.names,
                   "Where the names of the items go, for baskets and tables: item TAB name (default: beside "
                   "the class "
                   "file, with the extension .names)")
        ->check(check(is_path, "the name of a file"));
    app.add_flag("-q,--quiet", arguments.quiet, "No progress and no summary on standard error");
}

Format format_of(std::string_view word) {
    if (word == "basket") {
        return Format::basket;
    }
    return word == "table" ? Format::table : Format::fimi;
}

/// Throws CLI::ValidationError for options that do not go with the format.
void check_together(const CLI::App& app, Format format) {
    const auto require = [&app](const std::string& option, bool allowed, const std::string& formats) {
        if (app.count(option) > 0 && !allowed) {
            throw CLI::ValidationError(option, "goes with --format " + formats + " only");
        }
    };
    require("--separator", format != Format::fimi, "basket or table");
    require("--names", format != Format::fimi, "basket or table");
    require("--bins", format == Format::table, "table");
}

}  // namespace

Arguments parse_arguments(int argc, char** argv) {
    Arguments arguments;
    Words words;
    CLI::App app(
        "Makes a class file for korv: the closed itemsets of a transaction database under disjunction, "
        "with their supports and frequent essential itemsets.",
        "korv-mine");
    app.failure_message(complaint);
    add_options(app, arguments, words);
    try {
        app.parse(argc, argv);
        arguments.format = format_of(words.format);
        check_together(app, arguments.format);
    } catch (const CLI::ParseError& error) {
        std::exit(app.exit(error));
    }

    arguments.min_support = *parse_threshold(words.min_support);
    arguments.mining.closure_over_all = words.closure_items == "all";
    arguments.separator = *parse_separator(words.separator);
    for (const std::string& word : words.bins) {
        arguments.bins.push_back(*parse_bin_rule(word));
    }
    if (arguments.names.empty() && arguments.format != Format::fimi) {
        arguments.names = default_names(arguments.output);
    }
    return arguments;
}

}  // namespace korv::tools
