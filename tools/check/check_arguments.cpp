#include "check/check_arguments.h"

#include <CLI/CLI.hpp>
#include <cstdint>
#include <cstdlib>
#include <iostream>

#include "base/number_text.h"
#include "check/check_status.h"
#include "check/finding_catalogue.h"
#include "mine/argument_check.h"
#include "mine/command_line.h"
#include "mine/completions.h"
#include "mine/database.h"
#include "mine/reading_arguments.h"

namespace korv::tools {

namespace {

/// The options as they are typed.
struct Words {
    std::string transactions;
    std::string sample;
    std::string seed = "1";
    std::string most_items = "100";
    std::string most = "20";
    ReadingWords reading;
};

constexpr const char* whole_number = "a whole number";
constexpr const char* no_path = "the name of a file";

std::optional<Count> parse_transactions(const std::string& text) {
    const auto number = parse_number<Count>(text);
    return number && *number >= 1 && *number <= most_transactions ? number : std::nullopt;
}

std::optional<std::uint32_t> parse_sample(const std::string& text) {
    const auto number = parse_number<std::uint32_t>(text);
    return number && *number >= 1 ? number : std::nullopt;
}

void add_input_options(CLI::App& app, CheckArguments& arguments, Words& words) {
    app.add_option("CLASSFILE", arguments.path, "The class file; - for standard input")
        ->type_name(file_type)
        ->required();
    app.add_option("-n,--database-size", words.transactions,
                   "Number of transactions that the classes were derived from: no support may be larger")
        ->check(argument_check(parse_transactions,
                               "a whole number from 1 to " + std::to_string(most_transactions)));
    app.add_option("--database", arguments.database,
                   "The transactions that the classes were derived from: counts each support, closure and "
                   "essential itemset again")
        ->check(argument_check(is_path, no_path))
        ->type_name(file_type)
        ->excludes("--database-size");
    app.add_option("--sample", words.sample, "Count only so many classes again, chosen by chance")
        ->check(argument_check(parse_sample, "a whole number from 1 on"))
        ->needs("--database");
    app.add_option("--seed", words.seed, "Another number chooses other classes for --sample")
        ->check(argument_check(parse_number<std::uint32_t>, whole_number))
        ->capture_default_str();
    app.add_option("--rules", arguments.rules,
                   "Rule files that korv wrote: counts their supports, confidences and bounds again")
        ->check(argument_check(is_path, no_path))
        ->type_name(file_type)
        ->needs("--database");
    app.add_option(
           "--names", arguments.names,
           "The names of the items, where those of the database have names: lines of an item, a tab and "
           "its name (default: the name of the class file with the extension .names)")
        ->check(argument_check(is_path, no_path))
        ->type_name(file_type)
        ->needs("--database");
}

void add_note_options(CLI::App& app, CheckArguments& arguments, Words& words) {
    app.add_flag_callback(
        "--notes", [&arguments] { arguments.notes = NoteChoice::shown; },
        "Show each note; otherwise notes are counted");
    app.add_flag_callback(
           "--no-notes", [&arguments] { arguments.notes = NoteChoice::none; },
           "Look for no notes, which takes less time")
        ->excludes("--notes");
    app.add_option("--large", words.most_items, "A class of more items than this is worth a note")
        ->check(argument_check(parse_number<std::uint32_t>, whole_number))
        ->capture_default_str();
}

void add_output_options(CLI::App& app, CheckArguments& arguments, Words& words) {
    app.add_option("--fix", arguments.mended,
                   "Write the file mended, where that needs no guess: line ends, order, what is there twice "
                   "and alike; - for standard output")
        ->check(argument_check(is_path, no_path))
        ->type_name(file_type);
    app.add_option("--max", words.most, "Show so many findings, and count the others by code; 0 for all")
        ->check(argument_check(parse_number<std::uint32_t>, std::string(whole_number) + "; 0 for all"))
        ->capture_default_str();
    app.add_flag_callback(
        "--json", [&arguments] { arguments.format = FindingFormat::json; },
        "Write each finding, and the last line, as an object of JSON");
    app.add_flag("-q,--quiet", arguments.quiet, "Write nothing: the exit status tells");
    app.add_flag_callback(
        "--codes",
        [] {
            std::cout << catalogue_text();
            std::exit(0);
        },
        "List all codes with their severity, whether --fix mends them, and their meaning, and exit");
}

}  // namespace

CheckArguments parse_check_arguments(int argc, char** argv) {
    CheckArguments arguments;
    Words words;
    CLI::App app(
        "Checks a class file of korv: what korv would misread, supports that no database has, and what is "
        "missing.",
        "korv-check");
    app.set_version_flag("--version", "korv-check " KORV_VERSION);
    add_input_options(app, arguments, words);
    add_note_options(app, arguments, words);
    add_output_options(app, arguments, words);
    add_reading_options(app, words.reading);
    add_completions_option(app, {});
    app.failure_message(complaint);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        std::exit(app.exit(error) == 0 ? 0 : static_cast<int>(CheckStatus::not_checked));
    }
    if (app.count("--database-size") > 0) {
        arguments.transactions = parse_transactions(words.transactions);
    }
    if (app.count("--sample") > 0) {
        arguments.sample.classes = parse_number<std::uint32_t>(words.sample);
    }
    arguments.sample.seed = *parse_number<std::uint32_t>(words.seed);
    arguments.reading = reading_options(app, words.reading);
    arguments.most_items = *parse_number<std::uint32_t>(words.most_items);
    arguments.most = *parse_number<std::uint32_t>(words.most);
    return arguments;
}

}  // namespace korv::tools
