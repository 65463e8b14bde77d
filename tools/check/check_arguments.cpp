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

namespace korv::tools {

namespace {

/// The options as they are typed.
struct Words {
    std::string transactions;
    std::string most = "20";
};

std::optional<Count> parse_transactions(const std::string& text) {
    const auto number = parse_number<Count>(text);
    return number && *number >= 1 && *number <= most_transactions ? number : std::nullopt;
}

void add_input_options(CLI::App& app, CheckArguments& arguments, Words& words) {
    app.add_option("CLASSFILE", arguments.path, "The class file; - for standard input")
        ->type_name(file_type)
        ->required();
    app.add_option("-n,--database-size", words.transactions,
                   "Number of transactions that the classes were derived from: no support may be larger")
        ->check(argument_check(parse_transactions,
                               "a whole number from 1 to " + std::to_string(most_transactions)));
}

void add_output_options(CLI::App& app, CheckArguments& arguments, Words& words) {
    app.add_option("--max", words.most, "Show so many findings, and count the others by code; 0 for all")
        ->check(argument_check(parse_number<std::uint32_t>, "a whole number; 0 for all"))
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
    add_output_options(app, arguments, words);
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
    arguments.most = *parse_number<std::uint32_t>(words.most);
    return arguments;
}

}  // namespace korv::tools
