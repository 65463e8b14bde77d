#include "mine/arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "base/number_text.h"
#include "common/atomic_output.h"
#include "common/error.h"
#include "mine/argument_check.h"
#include "mine/reading_arguments.h"

namespace korv::tools {

namespace {

/// A message of CLI11 in the form of all others.
std::string complaint(const CLI::App* app, const CLI::Error& error) {
    return app->get_name() + ": " + error.what() + "; see " + app->get_name() + " --help\n";
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

std::string default_names(const std::string& output) {
    return output == "-" || is_special(output)
               ? ""
               : std::filesystem::path(output).replace_extension(".names").string();
}

std::string names_path(const std::string& given, Format format, const std::string& output) {
    if (format != Format::fimi) {
        return given.empty() ? default_names(output) : given;
    }
    if (!given.empty()) {
        throw Error(
            "--names: goes with --format basket or table only; found fimi, whose items have no names");
    }
    return "";
}

namespace {

/// The options as they are typed.
struct Words {
    std::string min_support;
    std::string closure_items = "frequent";
    ReadingWords reading;
};

void add_options(CLI::App& app, Arguments& arguments, Words& words) {
    app.set_version_flag("--version", "korv-mine " KORV_VERSION);
    app.add_option("TRANSACTIONS", arguments.transactions,
                   "The database, one transaction per line, in one file or several; - for standard input")
        ->required();
    app.add_option(
           "-s,--min-support", words.min_support,
           "Smallest number of transactions that hold all items of an essential itemset: a count, or a "
           "percentage of all transactions such as 2.5%")
        ->required()
        ->check(argument_check(parse_threshold, "a number of transactions, or a percentage such as 2.5%"));
    app.add_option("-o,--output", arguments.output, "The class file; - for standard output")
        ->capture_default_str();
    app.add_option("--max-size", arguments.mining.max_size, "Largest number of items of an essential itemset")
        ->check(CLI::Range(1, 1'000'000'000));
    app.add_option("--closure-items", words.closure_items,
                   "Items that a closed itemset can have: those in --min-support transactions, or all")
        ->check(CLI::IsMember({"frequent", "all"}))
        ->capture_default_str();
    app.add_option(
        "--names", arguments.names,
        "Where the names of the items go, for baskets and tables: item TAB name (default: beside the class "
        "file, with the extension .names)");
    app.add_flag("-q,--quiet", arguments.quiet, "No progress and no summary on standard error");
    add_reading_options(app, words.reading);
}

}  // namespace

Arguments parse_arguments(int argc, char** argv) {
    Arguments arguments;
    Words words;
    CLI::App app(
        "Makes a class file for korv: the closed itemsets of a transaction database under disjunction, "
        "with their supports and frequent essential itemsets.",
        "korv-mine");
    add_options(app, arguments, words);
    app.failure_message(complaint);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        std::exit(app.exit(error));
    }

    arguments.min_support = *parse_threshold(words.min_support);
    arguments.mining.closure_over_all = words.closure_items == "all";
    arguments.reading = reading_options(app, words.reading);
    if (arguments.reading.format && !arguments.names.empty()) {
        names_path(arguments.names, *arguments.reading.format, arguments.output);
    }
    return arguments;
}

}  // namespace korv::tools
