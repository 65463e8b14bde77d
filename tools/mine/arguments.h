#pragma once

#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "mine/mining_request.h"
#include "mine/reading.h"

namespace CLI {
class App;
}

namespace korv::tools {

/// What the command line asks for.
struct Arguments {
    std::vector<std::string> transactions;  ///< paths, or "-" for standard input; at least one
    ReadingOptions reading;
    MiningRequest mining;        ///< with one minimum support, unless an estimate is asked for
    bool is_estimate = false;    ///< whether to say what the minimum supports would bring, and no more
    bool keeps_partial = false;  ///< whether the classes found so far are written when a limit ends the work
    std::string output = "-";    ///< path, or "-" for standard output
    std::string names;           ///< path of the names file; empty where it was not given
    bool quiet = false;
};

/// Where the names of items go by default: beside the class file, with ".names" in place of its extension.
/// Empty for standard output, a device or a pipe.
std::string default_names(const std::string& output);

/// Where the names of items go, for transactions of this format: `given`, or the default for `output`; empty
/// for fimi, which has none. Throws Error where they were asked for and there are none.
std::string names_path(const std::string& given, Format format, const std::string& output);

/// What differs between the programs that mine.
struct MiningProgram {
    std::string name;
    std::string description;
    /// Adds the options that it has besides those of korv-mine; null for none.
    std::function<void(CLI::App& app)> add_options = {};
};

/// How a program ends whose command line asks for help or the version, or is wrong.
struct CommandLineEnd {
    int status = 0;
    std::string out;  ///< for standard output
    std::string err;  ///< for standard error
};

/// Reads the command line of a program that mines, or says how the program ends. Throws Error for options
/// that contradict each other.
std::variant<Arguments, CommandLineEnd> read_command_line(int argc, char** argv,
                                                          const MiningProgram& program);

/// Reads the command line of korv-mine. When it asks for help or the version, or when it is wrong, prints
/// that and ends the program. Throws Error for options that contradict each other.
Arguments parse_arguments(int argc, char** argv);

}  // namespace korv::tools
