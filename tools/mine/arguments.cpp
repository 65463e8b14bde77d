#include "mine/arguments.h"

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <utility>

#include "common/error.h"
#include "common/output_place.h"
#include "mine/argument_check.h"
#include "mine/command_line.h"
#include "mine/completions.h"
#include "mine/mining_arguments.h"
#include "mine/reading_arguments.h"

namespace korv::tools {

namespace {

/// What an estimate is for when no minimum support is given.
const std::vector<Threshold> usual_min_supports = {{50, true}, {20, true}, {10, true},
                                                   {5, true},  {2, true},  {1, true}};

constexpr std::size_t most_estimates = 10;

/// The options as they are typed.
struct Words {
    MiningWords mining;
    ReadingWords reading;
};

void add_output_options(CLI::App& app, Arguments& arguments) {
    app.add_option("-o,--output", arguments.output, "The class file; - for standard output")
        ->check(argument_check(is_path, "the name of a file"))
        ->type_name(file_type)
        ->capture_default_str();
    app.add_option("--names", arguments.names,
                   "Where the names of the items go, for baskets and tables: item TAB name (default: beside "
                   "the class file, with the extension .names)")
        ->check(argument_check(is_path, "the name of a file"))
        ->type_name(file_type);
    app.add_flag("--partial", arguments.keeps_partial,
                 "Write the classes found so far when --max-classes or --max-seconds ends the work");
    app.add_flag("--estimate", arguments.is_estimate,
                 "Say how many classes the minimum supports would bring (-s 5%,2%,1%; default: "
                 "50%,20%,10%,5%,2%,1%), and write no class file")
        ->excludes("--output")
        ->excludes("--names")
        ->excludes("--partial");
    app.add_flag("-q,--quiet", arguments.quiet, "No progress and no summary on standard error");
}

/// Checks that there are as many minimum supports as are needed, and adds those that go without saying.
void complete_min_supports(const Arguments& arguments, MiningRequest& request) {
    std::vector<Threshold>& min_supports = request.min_supports;
    if (!arguments.is_estimate && min_supports.empty()) {
        throw CLI::RequiredError("--min-support (or --estimate, which shows what to expect)");
    }
    if (!arguments.is_estimate && min_supports.size() > 1) {
        throw CLI::ValidationError("--min-support", "found " + std::to_string(min_supports.size()) +
                                                        " of them; expected one, unless for --estimate");
    }
    if (min_supports.size() > most_estimates) {
        throw CLI::ValidationError("--min-support", "found " + std::to_string(min_supports.size()) +
                                                        " of them; expected at most " +
                                                        std::to_string(most_estimates));
    }
    if (min_supports.empty()) {
        min_supports = usual_min_supports;
    }
}

}  // namespace

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

std::variant<Arguments, CommandLineEnd> read_command_line(int argc, char** argv,
                                                          const MiningProgram& program) {
    Arguments arguments;
    Words words;
    CLI::App app(program.description, program.name);
    app.set_version_flag("--version", program.name + " " KORV_VERSION);
    app.add_option("TRANSACTIONS", arguments.transactions,
                   "The database, one transaction per line, in one file or several; - for standard input")
        ->type_name(file_type)
        ->required();
    add_output_options(app, arguments);
    add_mining_options(app, words.mining);
    app.get_option("--estimate")->excludes("--max-seconds");  // it has a time of its own
    add_reading_options(app, words.reading);
    if (program.add_options) {
        program.add_options(app);
    }
    add_completions_option(app, {});
    app.failure_message(complaint);
    try {
        app.parse(argc, argv);
        arguments.mining = mining_request(app, words.mining);
        complete_min_supports(arguments, arguments.mining);
    } catch (const CLI::ParseError& error) {
        std::ostringstream out;
        std::ostringstream err;
        const int status = app.exit(error, out, err);
        return CommandLineEnd{status, out.str(), err.str()};
    }
    arguments.reading = reading_options(app, words.reading);
    if (arguments.reading.format && !arguments.names.empty()) {
        names_path(arguments.names, *arguments.reading.format, arguments.output);
    }
    return arguments;
}

Arguments parse_arguments(int argc, char** argv) {
    auto line = read_command_line(
        argc, argv,
        {.name = "korv-mine",
         .description = "Makes a class file for korv: the closed itemsets of a transaction database under "
                        "disjunction, with their supports and essential itemsets."});
    if (const auto* const end = std::get_if<CommandLineEnd>(&line)) {
        std::cout << end->out;
        std::cerr << end->err;
        std::exit(end->status);
    }
    return std::get<Arguments>(std::move(line));
}

}  // namespace korv::tools
