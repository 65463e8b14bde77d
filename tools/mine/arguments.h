#pragma once

#include <optional>
#include <string>
#include <vector>

#include "mine/miner.h"
#include "mine/table_options.h"

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

/// How transactions are written.
enum class Format {
    fimi,    ///< see fimi.h
    basket,  ///< see basket.h
    table,   ///< see table.h
};

/// What the command line asks for.
struct Arguments {
    std::string transactions;  ///< path, or "-" for standard input
    Format format = Format::fimi;
    char separator = ',';       ///< of baskets and tables
    std::vector<BinRule> bins;  ///< of tables
    std::string output = "-";   ///< path, or "-" for standard output
    std::string names;          ///< path of the names file; empty for none
    Threshold min_support;
    MiningOptions mining;  ///< all but the minimum support
    bool quiet = false;
};

/// Parses one byte, or "tab". Returns nothing for anything else, and for a quote and a line end, which cannot
/// be separators.
std::optional<char> parse_separator(const std::string& text);

/// Where the names of items go by default: beside the class file, with ".names" in place of its extension.
/// Empty for standard output, a device or a pipe.
std::string default_names(const std::string& output);

/// Reads the command line. When it asks for help or the version, or when it is wrong, prints that and ends
/// the program.
Arguments parse_arguments(int argc, char** argv);

}  // namespace korv::tools
