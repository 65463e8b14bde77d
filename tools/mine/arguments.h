#pragma once

#include <optional>
#include <string>
#include <vector>

#include "mine/miner.h"
#include "mine/reading.h"

namespace korv::tools {

/// A minimum support as it is given: a number of transactions, or a percentage of all of them.
struct Threshold {
    double value = 0.0;
    bool is_percentage = false;
};

/// Parses a whole number ("100"), or a number with a percent sign ("2.5%"). Returns nothing for anything
/// else.
std::optional<Threshold> parse_threshold(const std::string& text);

/// The threshold as a number of transactions, in a database of `transactions`: a percentage is rounded up.
/// Throws Error when the result is 0 or larger than `transactions`.
Count in_transactions(const Threshold& threshold, Count transactions);

/// What the command line asks for.
struct Arguments {
    std::vector<std::string> transactions;  ///< paths, or "-" for standard input; at least one
    ReadingOptions reading;
    std::string output = "-";  ///< path, or "-" for standard output
    std::string names;         ///< path of the names file; empty where it was not given
    Threshold min_support;
    MiningOptions mining;  ///< all but the minimum support
    bool quiet = false;
};

/// Where the names of items go by default: beside the class file, with ".names" in place of its extension.
/// Empty for standard output, a device or a pipe.
std::string default_names(const std::string& output);

/// Where the names of items go, for transactions of this format: `given`, or the default for `output`; empty
/// for fimi, which has none. Throws Error where they were asked for and there are none.
std::string names_path(const std::string& given, Format format, const std::string& output);

/// Reads the command line. When it asks for help or the version, or when it is wrong, prints that and ends
/// the program. Throws Error for rules that contradict each other.
Arguments parse_arguments(int argc, char** argv);

}  // namespace korv::tools
