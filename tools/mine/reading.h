#pragma once

#include <optional>
#include <string>
#include <vector>

#include "common/text_input.h"
#include "mine/database.h"
#include "mine/format_guess.h"
#include "mine/table.h"

namespace korv::tools {

/// How transactions are to be read.
struct ReadingOptions {
    std::optional<Format> format;  ///< guessed where it is not given
    /// Of baskets and tables. Where it is not given, it is that of a separator_line, or guessed.
    std::optional<char> separator;
    bool weighted = false;  ///< of fimi and baskets: see take_weight
    TableOptions table;
    /// The options of the command line that go with tables alone, for a message where there is no table.
    std::vector<std::string> given_for_tables;
};

/// How transactions were read.
struct ReadingReport {
    Format format = Format::fimi;
    std::string format_seen;        ///< what the format was guessed from; empty where it was given
    std::optional<char> separator;  ///< of baskets and tables
    bool separator_guessed = false;
    Count empty_transactions = 0;  ///< without an item; each as often as its weight says
    std::optional<TableReport> table;
};

/// Reads transactions from files, one after the other, as if they were one; each text is freed before the
/// next is read. "-" is standard input. All of them have one format and one separator: those of the first in
/// which anything is written. A separator_line of that separator is skipped in each text. Items without
/// numbers of their own are numbered across all files. Fills `report`.
///
/// Throws Error where a file cannot be read or does not have the format, where the format or the separator
/// cannot be told, where the first text seems to be a class file, where options do not go with the format,
/// where there is no item at all, and where standard input is named twice.
Database read_database(const std::vector<std::string>& paths, const ReadingOptions& options,
                       ReadingReport& report);

/// The same where the text of the first of the files is at hand.
Database read_database(TextInput first, const std::vector<std::string>& paths, const ReadingOptions& options,
                       ReadingReport& report);

/// Throws UsageError where standard input is named twice, since it has an end only once.
void require_standard_input_once(const std::vector<std::string>& paths);

/// Throws Error: there is no item in these files.
[[noreturn]] void refuse_without_items(const std::vector<std::string>& paths);

/// The number of transactions without an item. O(lines + occurrences of items).
Count empty_transactions(const Database& database);

/// Throws Error where options do not go with the format that was given. Where none was, read_database does.
void check_together(const ReadingOptions& options);

/// A description of how transactions were read, such as "table with ";" (guessed from rows of 3 cells under a
/// first line of distinct names)".
std::string description(const ReadingReport& report);

}  // namespace korv::tools
