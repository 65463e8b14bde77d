#include "rules/rule_input.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <limits>
#include <map>
#include <string_view>
#include <utility>

#include "base/number_text.h"
#include "common/class_file.h"
#include "common/error.h"
#include "common/lines.h"
#include "common/quantity.h"
#include "common/shell_word.h"
#include "common/text_input.h"
#include "mine/arguments.h"
#include "mine/summary.h"
#include "rules/bounded_mining.h"
#include "rules/holdout_input.h"
#include "rules/names_file.h"
#include "rules/numbered_by_names.h"
#include "rules/rule_file.h"
#include "rules/support_counter.h"

namespace korv::tools {

namespace {

constexpr std::size_t default_max_classes = 1'000'000;
/// What korv-rules derives from so many is done within some 20 s on one core, unless --max-classes is given.
/// (Measured: 19 to 100 microseconds for each, in dense tables of few rows with the longest closures most.)
constexpr std::size_t most_essentials = 250'000;
constexpr std::size_t default_bins = 4;
constexpr std::size_t most_numbers_left_uncut = 8;

/// A line of the notes, as korv-mine writes its summary.
std::string note(const std::string& label, const std::string& value) {
    return label + std::string(20 - label.size(), ' ') + value;
}

void add_lines(std::string_view text, std::vector<std::string>& notes) {
    for_each_line(text, [&notes](std::string_view line) { notes.emplace_back(line); });
}

std::map<Item, std::string> names_of(const Database& database) {
    std::map<Item, std::string> names;
    for (std::size_t i = 0; i < database.names.size(); ++i) {
        names.emplace(database.items[i].item, database.names[i]);
    }
    return names;
}

/// The path of a file without the extension .gz.
std::filesystem::path without_gz(const std::string& file) {
    std::filesystem::path path = file;
    return path.extension() == ".gz" ? path.replace_extension() : path;
}

}  // namespace

std::string names_beside(const std::string& file) {
    if (file == "-") {
        return "";
    }
    const std::string names = default_names(without_gz(file).string());
    std::error_code failed;  // what cannot be looked at is not there
    return names != file && std::filesystem::exists(names, failed) ? names : "";
}

namespace {

/// The names file beside a rule file: called like it, or like the label in its name, which korv makes of the
/// file, the label and two thresholds: intra_exact_LABEL_10_0.8.txt. Empty where there is none.
std::string names_beside_rule_file(const std::string& file) {
    std::string names = names_beside(file);
    if (!names.empty()) {
        return names;
    }
    const std::filesystem::path path = without_gz(file);
    const std::string name = path.filename().string();
    for (const std::string_view kind : {"intra_exact_", "intra_approx_", "inter_exact_", "inter_approx_"}) {
        const std::size_t thresholds = name.rfind('_', name.rfind('_') - 1);
        if (name.starts_with(kind) && thresholds != std::string::npos && thresholds > kind.size()) {
            const std::string label = name.substr(kind.size(), thresholds - kind.size());
            return names_beside((path.parent_path() / (label + ".txt")).string());
        }
    }
    return "";
}

std::string names_of_paths(const std::vector<std::string>& paths) {
    std::string names;
    for (const std::string& path : paths) {
        names += (names.empty() ? "" : ", ") + (path == "-" ? "standard input" : path);
    }
    return names;
}

/// Reads the names from the file that was asked for, or else from the one that is beside the input; where
/// that is empty there is none.
void read_item_names(const InputRequest& request, const std::string& beside, RuleInput& input) {
    input.names_path = request.names.empty() ? beside : request.names;
    if (!input.names_path.empty()) {
        input.notes.push_back(note("names", names_of_paths({input.names_path})));
        input.names = ItemNames(read_names(read_text(input.names_path)));
    }
}

/// A file beside a class file that may hold its transactions; empty where there is none.
std::string transactions_beside(const std::string& class_file) {
    for (const char* const extension : {".csv", ".tsv", ".dat", ".txt"}) {
        std::string path = std::filesystem::path(class_file).replace_extension(extension).string();
        std::error_code failed;
        if (path != class_file && std::filesystem::is_regular_file(path, failed)) {
            return path;
        }
    }
    return "";
}

/// The first option that is given for transactions; empty where there is none.
std::string option_for_transactions(const InputRequest& request) {
    const ReadingOptions& reading = request.reading;
    const MiningRequest& mining = request.mining;
    const bool is_read_only = !request.database.empty() || !request.holdout.empty();
    const std::array<std::pair<bool, const char*>, 9> given = {{
        {!is_read_only && reading.format, "--format"},
        {!is_read_only && reading.separator, "--separator"},
        {!is_read_only && reading.weighted, "--weighted"},
        {mining.min_joint.has_value(), "--min-joint"},
        {mining.min_own.has_value(), "--min-own"},
        {mining.max_size.has_value(), "--max-size"},
        {mining.closure_over_all, "--closure-items"},
        {mining.max_classes.has_value(), "--max-classes"},
        {mining.max_seconds.has_value(), "--max-seconds"},
    }};
    const auto* const found = std::ranges::find_if(given, [](const auto& each) { return each.first; });
    if (found != given.end()) {
        return found->second;
    }
    return is_read_only || reading.given_for_tables.empty() ? "" : reading.given_for_tables.front();
}

/// The classes in the order of their lines.
std::vector<NodeRef> by_line(const ClassFile& file) {
    std::vector<NodeRef> nodes(file.classes.size());
    auto line = file.lines.begin();
    for (NodeRef node = file.classes.begin(); node != file.classes.end(); ++node, ++line) {
        nodes[*line - 1] = node;
    }
    return nodes;
}

/// Throws Error unless an itemset of a class has its support in the database.
void require_support(const Itemset& itemset, std::size_t line, Count support, SupportCounter& counter,
                     const ClassFile& file, const std::string& database) {
    const Count counted = counter.count(itemset);
    if (counted != support) {
        std::string items;
        append_items(itemset, items);
        throw input_error(file.name, {line, 1}, "the support " + std::to_string(support),
                          std::to_string(counted) + ", the support of " + shown(items) + " in " + database);
    }
}

/// Throws Error for the first class, by its line, whose support is not that of its itemsets in the database.
void require_supports(const ClassFile& file, const Database& database, const std::string& name) {
    SupportCounter counter(database);
    std::size_t line = 1;
    for (const NodeRef node : by_line(file)) {
        const Count support = node->second.support;
        require_support(node->first, line, support, counter, file, name);
        for (const Itemset& essential : node->second.essentials) {
            require_support(essential, line, support, counter, file, name);
        }
        ++line;
    }
}

void check_class_request(const InputRequest& request, const std::string& name) {
    if (request.paths.size() > 1) {
        throw UsageError(request.paths[1] + ": found a second input behind the class file " + name +
                         "; expected one class file, or files of transactions alone");
    }
    const std::string option = option_for_transactions(request);
    if (!option.empty()) {
        throw UsageError(option + ": goes with transactions only; " + name + " is a class file");
    }
    if (request.database.empty() && request.needs_transactions) {
        throw UsageError("--exclusions: found the class file " + name +
                         "; expected transactions as the input, or --database FILE besides the class file");
    }
    if (request.database.empty() && !request.transactions) {
        const std::string beside = transactions_beside(request.paths.front());
        throw UsageError(name +
                         ": found a class file, which does not say how many transactions there are; expected "
                         "--database-size N (-n N), or --database FILE" +
                         (beside.empty() ? "" : ", such as --database " + shell_word(beside)));
    }
}

void check_rule_file_request(const InputRequest& request) {
    const std::string names = names_of_paths(request.paths);
    const bool is_one = request.paths.size() == 1;
    if (request.needs_transactions) {
        throw UsageError(std::string("--exclusions: found the rule ") + (is_one ? "file " : "files ") +
                         names + "; expected transactions as the input, or a class file and --database FILE");
    }
    const std::string option = option_for_transactions(request);
    if (!option.empty()) {
        throw UsageError(option + ": goes with transactions only; " + names +
                         (is_one ? " is a rule file" : " are rule files"));
    }
}

/// Reads the transactions of classes or rules. `check` is told that they are read.
template <typename Check>
ReadingReport read_its_database(const InputRequest& request, RuleInput& input, const Check& check) {
    ReadingReport report;
    input.database = read_database({request.database}, request.reading, report);
    number_by_names(input.names.all(), *input.database);
    if (input.names_path.empty()) {
        input.names = ItemNames(names_of(*input.database));
    }
    const std::string name = names_of_paths({request.database});
    check(name);
    input.transactions = input.database->transactions;
    if (request.transactions && *request.transactions != input.transactions) {
        throw UsageError("--database-size: found " + std::to_string(*request.transactions) + "; expected " +
                         std::to_string(input.transactions) + " as in " + name + ", or no such option");
    }
    return report;
}

/// Reads the transactions of a class file, and counts all of its supports.
void read_database_of_classes(const InputRequest& request, const ClassFile& file, RuleInput& input) {
    const ReadingReport report = read_its_database(
        request, input, [&](const std::string& name) { require_supports(file, *input.database, name); });
    input.notes.push_back(
        note("database", names_of_paths({request.database}) + ", which has all supports of the classes"));
    add_lines(summary_of_input(*input.database, report), input.notes);
}

/// Rules are always confirmed by the transactions that they were found in.
void require_other_transactions(const InputRequest& request) {
    std::vector<std::string> paths = request.paths;
    paths.push_back(request.database);
    for (const std::string& path : paths) {
        std::error_code failed;  // what cannot be looked at is told of where it is read
        if (std::filesystem::equivalent(path, request.holdout, failed)) {
            throw UsageError("--holdout: found " + shown(request.holdout) +
                             ", the input itself; expected other transactions than those of the rules");
        }
    }
}

/// Reads the transactions that confirm rules, where there are some. `reading`: how to.
void add_holdout(const InputRequest& request, const ReadingOptions& reading, RuleInput& input) {
    if (request.holdout.empty()) {
        return;
    }
    require_other_transactions(request);
    input.holdout = read_holdout(request.holdout, reading, input.names);
    input.notes.push_back(note("holdout", names_of_paths({request.holdout}) + ", " +
                                              with_commas(input.holdout->transactions) + " transactions"));
}

RuleInput read_class_input(TextInput text, const InputRequest& request) {
    check_class_request(request, text.name);
    RuleInput input;
    ClassFile file = read_class_file(std::move(text));
    const std::string how = request.is_class_file ? "" : " (seen from its first lines)";
    input.notes.push_back(note("class file", file.name + how));
    input.notes.push_back(note("classes", with_commas(file.classes.size())));
    read_item_names(request, names_beside(request.paths.front()), input);
    if (request.database.empty()) {
        input.transactions = *request.transactions;
        input.notes.push_back(note("transactions", with_commas(input.transactions)));
    } else {
        read_database_of_classes(request, file, input);
    }
    input.path = file.name;
    input.classes = std::move(file.classes);
    input.lines = std::move(file.lines);
    add_holdout(request, request.reading, input);
    return input;
}

void check_transactions_request(const InputRequest& request, const std::string& name) {
    const char* const option = request.transactions        ? "--database-size"
                               : !request.database.empty() ? "--database"
                                                           : nullptr;
    if (option != nullptr) {
        throw UsageError(
            std::string(option) + ": goes with a class file only; " + name +
            " holds transactions, as far as its first lines tell (--format classes says that it is "
            "a class file)");
    }
}

/// The options of reading, with the bins that go without saying.
ReadingOptions with_default_bins(const InputRequest& request) {
    ReadingOptions reading = request.reading;
    if (!request.has_bins && !reading.table.only_true) {
        reading.table.bins.push_back(
            {.column = "", .bins = default_bins, .points = {}, .more_than = most_numbers_left_uncut});
    }
    return reading;
}

/// What is to be mined, with what goes without saying.
MiningOptions options_of(const InputRequest& request, Count transactions) {
    MiningRequest mining = request.mining;
    if (!mining.max_size && request.max_items > 0) {
        mining.max_size = request.max_items;
    }
    mining.max_classes = mining.max_classes.value_or(default_max_classes);
    return mining_options(mining, mining.min_supports.front(), transactions);
}

/// Whether there are essential itemsets of the largest size that was mined, so that there may be larger ones.
bool may_be_larger(const BoundedMining& mined) {
    std::size_t largest = 0;
    mined.classes.for_each([&largest](const MinedClass& each) {
        largest = std::max(largest, each.essentials.back().size());  // the last one has the most items
    });
    return largest == mined.options.max_size;
}

/// "ITEMSETS of more than 6 items".
std::string larger_ones(const std::string& itemsets, const BoundedMining& mined) {
    const std::size_t most = mined.options.max_size;
    return itemsets + " of more than " + with_commas(most) + (most == 1 ? " item" : " items");
}

void add_notes_on(const BoundedMining& mined, std::vector<std::string>& notes) {
    notes.push_back(note("classes", with_commas(mined.classes.size())));
    if (mined.is_reduced) {
        notes.push_back(
            larger_ones("Itemsets", mined) + " are left out, since with them there are more than " +
            (mined.has_too_many_essentials
                 ? with_commas(most_essentials) + " essential itemsets: --max-classes " +
                       std::to_string(default_max_classes) + " takes them all the same"
                 : with_commas(mined.options.max_classes) + " classes: --max-classes allows more") +
            ", a higher --min-support brings fewer");
    } else if (may_be_larger(mined)) {
        notes.push_back(larger_ones("Essential itemsets", mined) +
                        " were not looked for: --max-size, by default --max-items, says how many they have");
    }
}

/// Mines the classes of transactions.
void mine_input(const InputRequest& request, const MiningGoOn& go_on, RuleInput& input) {
    try {
        const BoundedMining mined = mine_bounded(
            *input.database, options_of(request, input.transactions), go_on,
            request.mining.max_classes ? std::numeric_limits<std::size_t>::max() : most_essentials);
        add_notes_on(mined, input.notes);
        input.classes = class_map(mined.classes);
    } catch (const NoClasses& error) {
        input.notes.emplace_back(error.what());  // and so no rule, which is no fault of the input
    }
}

RuleInput read_transactions(TextInput text, const InputRequest& request, const MiningGoOn& go_on) {
    check_transactions_request(request, text.name);
    RuleInput input;
    ReadingReport report;
    input.database = read_database(std::move(text), request.paths, with_default_bins(request), report);
    input.transactions = input.database->transactions;
    add_lines(summary_of_input(*input.database, report), input.notes);
    input.names = ItemNames(names_of(*input.database));
    read_item_names(request, report.format == Format::fimi ? names_beside(request.paths.front()) : "", input);
    if (request.needs_transactions) {
        return input;
    }
    ReadingOptions as_seen = request.reading;
    as_seen.format = report.format;
    as_seen.separator = report.separator;
    add_holdout(request, as_seen, input);
    within_memory([&] { mine_input(request, go_on, input); },
                  [&] { return "while mining " + names_of_paths(request.paths); });
    return input;
}

/// Standard input has an end only once.
void require_standard_input_once(const InputRequest& request) {
    const bool is_input = std::ranges::find(request.paths, "-") != request.paths.end();
    const std::array<std::pair<bool, const char*>, 4> uses = {{
        {is_input, "the input"},
        {request.database == "-", "the database (--database)"},
        {request.names == "-", "the names file (--names)"},
        {request.holdout == "-", "the other transactions (--holdout)"},
    }};
    std::string found;
    std::size_t number = 0;
    for (const auto& [is_used, use] : uses) {
        if (is_used) {
            found += (number++ == 0 ? "" : " and ") + std::string(use);
        }
    }
    if (number > 1) {
        throw UsageError("-: found as " + found + "; expected standard input at most once");
    }
}

/// Whether an input is a class file.
bool is_class_file(const TextInput& text, const InputRequest& request) {
    if (request.is_class_file) {
        return *request.is_class_file;
    }
    // Where there is a database besides, the format is that of the transactions in it.
    const bool is_open = !request.database.empty() || !request.reading.format;
    return is_open && looks_like_class_file(text.text);
}

}  // namespace

RuleInput read_input(const InputRequest& request, const MiningGoOn& go_on) {
    return read_input(open_input(request), request, go_on);
}

RuleInput read_input(TextStream first, const InputRequest& request, const MiningGoOn& go_on) {
    return within_memory(
        [&] {
            TextInput text = {first.name(), first.rest()};
            return is_class_file(text, request) ? read_class_input(std::move(text), request)
                                                : read_transactions(std::move(text), request, go_on);
        },
        [&] { return "while reading " + names_of_paths(request.paths); });
}

TextStream open_input(const InputRequest& request) {
    require_standard_input_once(request);
    return TextStream(request.paths.front());
}

bool are_rule_files(const TextStream& first, const InputRequest& request) {
    const bool is_open = !request.is_class_file && (!request.database.empty() || !request.reading.format);
    return request.is_rule_file || (is_open && looks_like_rule_file(first.beginning()));
}

RuleInput context_of_class_file(const InputRequest& request) {
    return within_memory(
        [&] {
            require_standard_input_once(request);
            RuleInput input;
            read_item_names(request, names_beside(request.paths.front()), input);
            read_its_database(request, input, [](const std::string&) {});
            return input;
        },
        [&] { return "while reading " + names_of_paths({request.database}); });
}

RuleInput context_of_rule_files(const InputRequest& request) {
    return within_memory(
        [&] {
            check_rule_file_request(request);
            RuleInput input;
            const std::string how = request.is_rule_file ? "" : " (seen from the first lines)";
            const std::size_t more = request.paths.size() - 1;
            input.notes.push_back(note(more == 0 ? "rule file" : "rule files",
                                       names_of_paths({request.paths.front()}) +
                                           (more == 0 ? "" : " and " + with_commas(more) + " more") + how));
            read_item_names(request, names_beside_rule_file(request.paths.front()), input);
            input.transactions = request.transactions.value_or(0);
            if (!request.database.empty()) {
                const ReadingReport report = read_its_database(request, input, [](const std::string&) {});
                input.notes.push_back(note("database", names_of_paths({request.database})));
                add_lines(summary_of_input(*input.database, report), input.notes);
            } else if (request.transactions) {
                input.notes.push_back(note("transactions", with_commas(input.transactions)));
            }
            if (request.database.empty()) {
                input.notes.push_back(
                    note("conclusions", "not counted, so there is no lift; --database FILE counts them"));
            }
            return input;
        },
        [&] { return "while reading " + names_of_paths({request.database}); });
}

}  // namespace korv::tools
