#pragma once

#include <optional>
#include <string>
#include <vector>

#include "mine/miner.h"
#include "mine/table.h"

namespace korv::tools {

/// A minimum support as it is given: a number of transactions, or a part of all of them.
struct Threshold {
    double value = 0.0;
    bool is_percentage = false;
};

/// What `text` says: a whole number ("100"), or a number and a percent sign ("2.5%"). Nothing for anything
/// else.
std::optional<Threshold> parse_threshold(const std::string& text);

/// The threshold in transactions of a database of so many: a percentage is rounded up. Throws Error when that
/// is 0 or more than there are.
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
    MiningOptions mining;  ///< but for the minimum support
    bool quiet = false;
};

/// What `text` says: "4" for all columns of numbers, "age=4" for one column. Nothing for anything else.
std::optional<BinRule> parse_bin_rule(const std::string& text);

/// What `text` says: one byte, or "tab". Nothing for anything else, and for what cannot separate: a quote, a
/// line end.
std::optional<char> parse_separator(const std::string& text);

/// Where the names of items go by default: beside the class file, with ".names" in the place of its
/// extension. Empty for standard output, a device or a pipe.
std::string default_names(const std::string& output);

/// Reads the command line. Prints help, version or what is wrong with the arguments, and ends the program,
/// where they ask for that. Throws Error for rules that contradict each other.
Arguments parse_arguments(int argc, char** argv);

}  // namespace korv::tools
