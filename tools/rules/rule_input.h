#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/itemset.h"
#include "common/text_input.h"
#include "engine/classes.h"
#include "mine/database.h"
#include "mine/mining_request.h"
#include "mine/reading.h"
#include "rules/item_names.h"

namespace korv::tools {

/// Where rules come from.
struct InputRequest {
    std::vector<std::string> paths;  ///< a class file, transactions or rule files; "-" is standard input
    bool is_rule_file = false;       ///< whether the inputs are said to be rule files
    /// Whether the input is a class file; seen from its first lines where that is not given.
    std::optional<bool> is_class_file;
    ReadingOptions reading;             ///< of transactions, and of `database`
    MiningRequest mining;               ///< of transactions; its min_supports hold one
    bool has_bins = false;              ///< whether --bins says it for all columns: K, or none
    std::optional<Count> transactions;  ///< N, for a class file without a database
    std::string database;               ///< path of the transactions of a class file; empty for none
    std::string names;                  ///< path of a names file; empty for the default
    std::string holdout;                ///< path of transactions that confirm rules; empty for none
    std::size_t max_items = 6;          ///< no essential itemset is mined that has more; 0 for any
    bool needs_transactions = false;    ///< which then are not mined; a class file needs its database
};

/// The classes that rules are derived from.
struct RuleInput {
    ClassMap classes;
    Count transactions = 0;  ///< N
    ItemNames names;
    std::optional<Database> database;  ///< where the transactions are at hand
    std::optional<Database> holdout;   ///< other transactions, with the items of these: see read_holdout
    /// What the summary says of the input: whole lines, without line ends.
    std::vector<std::string> notes;
    /// The lines of the class file in the order of `classes`, for messages; empty for transactions.
    std::vector<std::uint32_t> lines;
    std::string path;        ///< of the class file, for messages
    std::string names_path;  ///< of the names file that was read; empty for none
};

/// Tells how the mining goes. Returns false to end it.
using MiningGoOn = std::function<bool(const MiningProgress&)>;

/// Reads a class file, or transactions and mines them.
///
/// Of transactions of numbers (fimi), the items are named as `names` says, else by the file beside the first
/// input that has the extension .names, where there is one.
///
/// Of a class file, the items are named as `names` says, else by the file beside it that has the extension
/// .names, where there is one, else as the database does. Where a file names them and the database has names,
/// too, its items are known by their names (see number_by_names). With a database, the supports of all
/// classes are counted. Whether the classes agree with each other is left to require_agreement, which needs
/// indexes that rules are derived with, too.
///
/// Of a table, columns of more than 8 distinct numbers are cut into 4 bins unless request.has_bins, or
/// unless a rule says otherwise for one. Where
/// there are more classes than allowed, by default 1,000,000, smaller itemsets are mined: see mine_bounded.
/// Where no item is frequent enough for a class, there are none, and a note says why.
///
/// Where request.needs_transactions, no classes are mined, and those of a class file only name its items.
///
/// Throws Error for what is wrong with an input (see class_file.h, reading.h and names_file.h), for a support
/// that is not that of the database; UsageError for options that do not go with the input, and for a class
/// file without the number of transactions; OutOfMemory; MiningStopped where `go_on` returned false.
RuleInput read_input(const InputRequest& request, const MiningGoOn& go_on);

/// The same, of which the first input was opened by open_input.
RuleInput read_input(TextStream first, const InputRequest& request, const MiningGoOn& go_on);

/// Opens the first input. Throws UsageError where standard input is needed twice, and Error as TextStream
/// does.
TextStream open_input(const InputRequest& request);

/// Whether the inputs are rule files: as the request says, or else as the first one begins.
bool are_rule_files(const TextStream& first, const InputRequest& request);

/// The transactions of a class file, request.database, and the names of its items, as read_input has them; no
/// classes, which are not read. Throws Error for what is wrong with names and database.
RuleInput context_of_class_file(const InputRequest& request);

/// What is known of the rules in rule files: names, N and the database, all where the request has them; no
/// classes. Where no names file is asked for, it is the one beside the first rule file that is called like
/// it, or else like the label in its name, with the extension .names. Where nothing says N it is 0.
///
/// Throws Error for what is wrong with names and database, and UsageError for options that do not go with
/// rule files.
RuleInput context_of_rule_files(const InputRequest& request);

/// The path of the names file beside another file: its name with the extension .names. Empty where there is
/// no such file, and for "-".
std::string names_beside(const std::string& file);

}  // namespace korv::tools
