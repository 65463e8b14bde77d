#include "rules/rule_arguments.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <limits>
#include <map>
#include <thread>
#include <utility>

#include "base/number_text.h"
#include "common/error.h"
#include "common/nearest.h"
#include "common/shell_word.h"
#include "mine/argument_check.h"
#include "mine/command_line.h"
#include "mine/completions.h"
#include "mine/mining_arguments.h"
#include "mine/reading_arguments.h"
#include "rules/rules_database.h"
#include "rules/rules_page.h"
#include "rules/where.h"

namespace korv::tools {

namespace {

constexpr const char* choice_group = "Which rules";
constexpr const char* order_group = "How they are told";
constexpr const char* output_group = "Output";

/// How many rules a terminal gets.
constexpr std::size_t top_on_terminal = 20;
constexpr std::size_t most_suggestions = 3;
/// What is not done by threads takes most of the time with more of them, each of which needs memory.
constexpr unsigned most_threads_by_default = 8;
constexpr unsigned most_threads = 256;

/// What a word on the command line stands for.
template <typename Value>
using Word = std::pair<std::string_view, Value>;

constexpr std::array wordings = {Word<Wording>{"shortest", Wording::shortest},
                                 Word<Wording>{"full", Wording::full}};
constexpr std::array readings = {Word<Readings>{"one", Readings::one}, Word<Readings>{"all", Readings::all}};
constexpr std::array extensions = {
    Word<RuleFormat>{".txt", RuleFormat::words},      Word<RuleFormat>{".csv", RuleFormat::csv},
    Word<RuleFormat>{".tsv", RuleFormat::tsv},        Word<RuleFormat>{".jsonl", RuleFormat::jsonl},
    Word<RuleFormat>{".db", RuleFormat::sqlite},      Word<RuleFormat>{".sqlite", RuleFormat::sqlite},
    Word<RuleFormat>{".sqlite3", RuleFormat::sqlite}, Word<RuleFormat>{".dot", RuleFormat::dot},
    Word<RuleFormat>{".gv", RuleFormat::dot},         Word<RuleFormat>{".html", RuleFormat::html},
    Word<RuleFormat>{".htm", RuleFormat::html}};
constexpr std::array graphs = {Word<GraphKind>{"lattice", GraphKind::lattice},
                               Word<GraphKind>{"rules", GraphKind::rules}};

/// What a word stands for in a table; nothing for any other text.
template <typename Table>
auto value_of_word(const Table& table, std::string_view text)
    -> std::optional<typename Table::value_type::second_type> {
    const auto* const found = std::ranges::find(table, text, [](const auto& each) { return each.first; });
    return found == table.end() ? std::nullopt : std::optional(found->second);
}

/// The words of a table, for a check of CLI11.
template <typename Table>
std::vector<std::string> words_of(const Table& table) {
    std::vector<std::string> words;
    std::ranges::transform(table, std::back_inserter(words),
                           [](const auto& each) { return std::string(each.first); });
    return words;
}

/// The options as they are typed.
struct Words {
    MiningWords mining;
    ReadingWords reading;
    std::string transactions;
    std::string min_confidence;
    std::map<std::string, std::vector<std::string>> patterns;  ///< by option
    std::string forms;
    std::string kinds;
    std::string max_items = "6";
    std::string max_premise_items = "0";
    std::string max_conclusion_items = "0";
    std::string min_lift;
    bool is_of_exclusions = false;
    std::string alpha;
    std::string wording = "shortest";
    std::string readings = "one";
    std::string prune;
    std::string sort = "leverage";
    std::string top;
    std::string per_conclusion = "0";
    std::string format;
    std::string graph = "lattice";
    std::string page_limit = "200000";
    std::string color = "auto";
    std::string measures;
    std::string threads;
};

/// The options that say nothing of exclusions.
constexpr std::array options_of_rules = {
    "--database-size",  "--if",          "--if-not",     "--then",     "--then-not",  "--forms",
    "--kinds",          "--max-if",      "--max-then",   "--min-lift", "--where",     "--test",
    "--holdout",        "--wording",     "--readings",   "--prune",    "--sort",      "--measures",
    "--per-conclusion", "--count",       "--verify",     "--min-own",  "--min-joint", "--max-size",
    "--closure-items",  "--max-classes", "--max-seconds"};

/// An option that takes patterns of items.
struct PatternOption {
    const char* name;
    PatternPlace place;
    bool is_wanted;
    const char* help;
};

constexpr std::array pattern_options = {
    PatternOption{"--with", PatternPlace::either, true,
                  "Only rules with such an item on either side: a name, in which * and ? stand for others, "
                  "/a regular expression/, or #17 for a number; a|b means either, and repeated options all "
                  "hold"},
    PatternOption{"--without", PatternPlace::either, false, "No rules with such an item"},
    PatternOption{"--if", PatternPlace::premise, true, "Only rules with such an item in the premise"},
    PatternOption{"--if-not", PatternPlace::premise, false, "No rules with such an item in the premise"},
    PatternOption{"--then", PatternPlace::conclusion, true, "Only rules with such an item in the conclusion"},
    PatternOption{"--then-not", PatternPlace::conclusion, false,
                  "No rules with such an item in the conclusion"}};

/// Whether a text can be a pattern or a condition, which say more of what is wrong with them.
bool has_text(const std::string& text) {
    return !text.empty();
}

/// Parses a finite number that is not negative, as such or per cent. Returns nothing for anything else.
std::optional<double> parse_ratio(const std::string& text) {
    const bool is_percentage = text.ends_with('%');
    // 68.9% is the number that 0.689 is; a quotient may be another one.
    const auto number = parse_number<double>(is_percentage ? text.substr(0, text.size() - 1) + "e-2" : text);
    return number && std::isfinite(*number) && *number >= 0 ? number : std::nullopt;
}

std::optional<double> parse_confidence(const std::string& text) {
    const auto confidence = parse_ratio(text);
    return confidence && *confidence <= 1 ? confidence : std::nullopt;
}

/// Parses the most that a probability may be.
std::optional<double> parse_alpha(const std::string& text) {
    const auto alpha = parse_confidence(text);
    return alpha && *alpha > 0 ? alpha : std::nullopt;
}

/// Parses N.
std::optional<Count> parse_transactions(const std::string& text) {
    const auto number = parse_number<Count>(text);
    return number && *number >= 1 && *number <= most_transactions ? number : std::nullopt;
}

std::optional<unsigned> parse_threads(const std::string& text) {
    const auto number = parse_number<unsigned>(text);
    return number && *number >= 1 && *number <= most_threads ? number : std::nullopt;
}

/// As many as there are cores that the program may use.
unsigned default_threads() {
    return std::clamp(std::thread::hardware_concurrency(), 1U, most_threads_by_default);
}

/// Parses how many rules a page takes.
std::optional<std::size_t> parse_page_limit(const std::string& text) {
    const auto number = parse_number<std::uint32_t>(text);
    return number && *number >= 1 && *number <= most_page_limit ? number : std::nullopt;
}

/// Parses the name of a measure, with a plus sign before it for ascending order.
std::optional<std::pair<Measure, bool>> parse_sort(const std::string& text) {
    const bool is_ascending = text.starts_with('+');
    const auto measure = measure_named(std::string_view(text).substr(is_ascending ? 1 : 0));
    return measure ? std::optional(std::pair(*measure, is_ascending)) : std::nullopt;
}

/// The check of an option whose words are measures.
std::string unknown_measure(const std::string& name) {
    return "found " + shown(name) + "; expected a measure such as " +
           all_shown(nearest(name, names_of_measures(), most_suggestions)) +
           " (--help-measures explains all)";
}

/// Adds an option that is a whole number, of which 0 means any.
CLI::Option* add_limit(CLI::App& app, const std::string& name, std::string& word, const char* group,
                       const std::string& help) {
    return app.add_option(name, word, help)
        ->check(argument_check(parse_number<std::uint32_t>, "a whole number; 0 for any"))
        ->group(group);
}

void add_input_options(CLI::App& app, RuleArguments& arguments, Words& words) {
    app.add_option("INPUT", arguments.input.paths,
                   "A class file, transactions in one file or several, or rule files of korv; - for standard "
                   "input")
        ->check(argument_check(is_path, "the name of a file"))
        ->type_name(file_type)
        ->required();
    app.add_option("-n,--database-size", words.transactions,
                   "Number of transactions that the classes or rules were derived from")
        ->check(argument_check(parse_transactions,
                               "a whole number from 1 to " + std::to_string(most_transactions)));
    app.add_option("--database", arguments.input.database,
                   "The transactions that the classes or rules were derived from: gives their number, "
                   "settles every support, checks every class and counts the rules of rule files")
        ->check(argument_check(is_path, "the name of a file"))
        ->type_name(file_type)
        ->excludes("--database-size");
    app.add_option(
           "--names", arguments.input.names,
           "The names of the items: lines of an item, a tab and its name (default: the name of the "
           "class file, of the first rule file or of transactions of numbers, with the extension .names), "
           "where there is such a file")
        ->check(argument_check(is_path, "the name of a file"))
        ->type_name(file_type);
}

void add_choice_options(CLI::App& app, RuleArguments& arguments, Words& words) {
    app.add_option(
           "-c,--min-confidence", words.min_confidence,
           "Smallest confidence of a rule, such as 0.8 or 80%; of bounds, the lower one (default: 0.8)")
        ->check(argument_check(parse_confidence, "a number from 0 to 1, or a percentage"))
        ->group(choice_group);
    for (const PatternOption& option : pattern_options) {
        app.add_option(option.name, words.patterns[option.name], option.help)
            ->check(argument_check(has_text, "a pattern of items"))
            ->take_all()
            ->allow_extra_args(false)
            ->group(choice_group);
    }
    app.add_option(
           "--forms", words.forms,
           "Only these forms, with commas between them: or-or, none-none, or-none, none-or, 1 to 4 for "
           "the same, or labels such as R121")
        ->group(choice_group);
    app.add_option("--kinds", words.kinds, "Only these kinds: exact, approximative, bounded")
        ->group(choice_group);
    add_limit(app, "--max-items", words.max_items, choice_group,
              "Largest number of items on both sides together; 0 for any")
        ->capture_default_str();
    add_limit(app, "--max-if", words.max_premise_items, choice_group,
              "Largest number of items in the premise; 0 for any");
    add_limit(app, "--max-then", words.max_conclusion_items, choice_group,
              "Largest number of items in the conclusion; 0 for any");
    app.add_option("--min-lift", words.min_lift, "Smallest lift of a rule; 0 for any (default: more than 1)")
        ->check(argument_check(parse_ratio, "a number from 0 on"))
        ->group(choice_group);
    app.add_option("--where", arguments.rules.where,
                   "Only rules of which this holds, such as 'lift > 1.2 and support >= 50'; "
                   "--help-measures names the measures")
        ->check(argument_check(has_text, "a condition such as 'lift > 1.2'"))
        ->group(choice_group);
    app.add_flag("--test", arguments.rules.is_tested,
                 "Only rules that chance alone would hardly produce, however many were looked at")
        ->group(choice_group);
    app.add_option("--holdout", arguments.input.holdout,
                   "Only rules that these other transactions confirm; tells their counts there")
        ->check(argument_check(is_path, "the name of a file"))
        ->type_name(file_type)
        ->group(choice_group);
}

void add_exclusion_options(CLI::App& app, Words& words) {
    app.add_flag(
           "--exclusions", words.is_of_exclusions,
           "In the place of rules, pairs and triples of items that are together less often than by chance; "
           "needs transactions")
        ->group(choice_group);
    app.add_option(
           "--alpha", words.alpha,
           "How probable it may be at most that chance alone brings a single rule through --test or "
           "--holdout, or one of --exclusions, of which 1 tells all that are together less often than by "
           "chance (default: 0.05)")
        ->check(argument_check(parse_alpha, "a number above 0 and up to 1, or a percentage"))
        ->group(choice_group);
}

void add_order_options(CLI::App& app, Words& words) {
    app.add_option("--wording", words.wording,
                   "Sides by the fewest items that say the same, or by all items as korv writes them")
        ->check(CLI::IsMember(words_of(wordings)))
        ->capture_default_str()
        ->group(order_group);
    app.add_option("--readings", words.readings,
                   "The best rule of each association, or all rules that tell of it")
        ->check(CLI::IsMember(words_of(readings)))
        ->capture_default_str()
        ->group(order_group);
    app.add_option(
           "--prune", words.prune,
           "Leave out rules that are weaker than one of the same conclusion (same), or than any other "
           "one (full), and besides those that are hardly better than a shorter one (default: productive); "
           "for "
           "more than some millions of rules, the default is same")
        ->check(CLI::IsMember(words_of(prunes)))
        ->group(order_group);
    app.add_option("--sort", words.sort,
                   "The measure by which rules are ordered; +NAME for the smallest first")
        ->check([](const std::string& text) {
            return parse_sort(text) ? "" : unknown_measure(text.starts_with('+') ? text.substr(1) : text);
        })
        ->capture_default_str()
        ->group(order_group);
    add_limit(app, "--top", words.top, order_group,
              "Only the first so many rules; 0 for all (default: 20 on a terminal, all otherwise)");
    add_limit(app, "--per-conclusion", words.per_conclusion, order_group,
              "Only the first so many rules of each conclusion; 0 for all");
}

void add_output_options(CLI::App& app, RuleArguments& arguments, Words& words) {
    app.add_option("-o,--output", arguments.output,
                   "The file that the rules go to, by its extension .txt, .csv, .tsv, .jsonl, .db, .sqlite, "
                   ".sqlite3, .dot, .gv, .html or .htm; - for standard output")
        ->check(argument_check(is_path, "the name of a file"))
        ->type_name(file_type)
        ->capture_default_str()
        ->group(output_group);
    app.add_option(
           "--to", words.format,
           "Sentences, a table as wide as the terminal, columns for other programs, a database of SQLite, "
           "a graph for Graphviz, or a page to look through in a browser (default: by the extension of the "
           "output); without one, a table on a "
           "terminal and words otherwise")
        ->check(CLI::IsMember(words_of(rule_formats)))
        ->group(output_group);
    app.add_option("--graph", words.graph,
                   "What a graph shows: the classes that rules are derived from, or the rules")
        ->check(CLI::IsMember(words_of(graphs)))
        ->capture_default_str()
        ->group(output_group);
    app.add_option("--page-limit", words.page_limit,
                   "The most rules that a page takes, the first ones of all; up to 1000000")
        ->check(argument_check(parse_page_limit, "a whole number from 1 to 1000000"))
        ->capture_default_str()
        ->group(output_group);
    app.add_option("--color", words.color, "Colour in tables; auto: on a terminal, unless NO_COLOR is set")
        ->check(CLI::IsMember({"auto", "always", "never"}))
        ->capture_default_str()
        ->group(output_group);
    app.add_option("--measures", words.measures,
                   "Further measures to tell, with commas between them, or all; --help-measures names them")
        ->group(output_group);
    app.add_flag_callback(
           "--help-measures",
           [] {
               std::cout << help_on_measures();
               std::exit(0);
           },
           "Explain the measures, and exit")
        ->group(output_group);
    app.add_flag("--count", arguments.is_count,
                 "Write no rule; say how many there are of each form and kind, how many bytes each format "
                 "would take, and what korv itself would write")
        ->excludes("--to")
        ->group(output_group);
    app.add_flag("--verify", arguments.verifies,
                 "Count each rule that is written again in the transactions, plainly")
        ->group(output_group);
    app.add_option("-j,--threads", words.threads,
                   "Number of threads that look for rules; the rules are the same with any number "
                   "(default: the number of cores, at most " +
                       std::to_string(most_threads_by_default) + ")")
        ->check(argument_check(parse_threads, "a whole number from 1 to " + std::to_string(most_threads)))
        ->group(output_group);
    app.add_flag("-q,--quiet", arguments.quiet, "No progress and no summary on standard error")
        ->group(output_group);
}

/// What options of mining mean where rules are derived.
void describe_mining_options(CLI::App& app) {
    app.get_option("--min-support")
        ->description(
            "Smallest support of a rule, and smallest number of transactions that hold an item of an "
            "essential itemset: a count, or a percentage of all transactions such as 2.5%; at least 3 "
            "transactions unless it is given (default: 1%)");
    app.get_option("--max-size")
        ->description("Largest number of items of an essential itemset (default: --max-items)");
    app.get_option("--max-classes")
        ->description(
            "Where there would be more classes, or more than 250000 essential itemsets unless it is given, "
            "itemsets of fewer items are mined, down to two (default: 1000000)");
}

/// What the options take whose checks do not list it.
std::vector<OptionWords> words_of_lists() {
    std::vector<std::string> sorts = names_of_measures();
    std::ranges::transform(names_of_measures(), std::back_inserter(sorts),
                           [](const std::string& name) { return "+" + name; });
    std::vector<std::string> measures = names_of_measures();
    measures.emplace_back("all");
    std::vector<std::string> kinds;
    std::ranges::transform(all_certainties, std::back_inserter(kinds),
                           [](Certainty kind) { return std::string(name_of(kind)); });
    return {{"--sort", sorts},
            {"--measures", measures, true},
            {"--kinds", kinds, true},
            {"--forms", {form_groups.begin(), form_groups.end()}, true}};
}

/// The words of a list with commas between them; throws Error for an empty one.
std::vector<std::string> words_of_list(const std::string& option, const std::string& text) {
    std::vector<std::string> words = parse_words(option, text);
    if (words.empty()) {
        throw Error(option + ": found no word; expected words with commas between them");
    }
    return words;
}

/// Fills in how sure is sure enough.
void complete_test(const CLI::App& app, const Words& words, RuleArguments& arguments) {
    RuleRequest& request = arguments.rules;
    request.is_confirmed = !arguments.input.holdout.empty();
    if (app.count("--alpha") == 0 || arguments.exclusions) {
        return;
    }
    if (!request.is_tested && !request.is_confirmed) {
        throw Error("--alpha: goes with --test, --holdout or --exclusions only");
    }
    request.alpha = *parse_alpha(words.alpha);
}

/// Completes a request that holds what options fill in themselves.
RuleRequest rule_request(const CLI::App& app, const Words& words, RuleRequest request) {
    request.given = {app.count("--min-support") > 0, app.count("--min-confidence") > 0,
                     app.count("--wording") > 0, app.count("--readings") > 0, app.count("--sort") > 0};
    if (!request.where.empty()) {
        parse_where(request.where);  // so that a mistake is found before anything is read
    }
    if (app.count("--min-confidence") > 0) {
        request.min_confidence = *parse_confidence(words.min_confidence);
    }
    for (const PatternOption& option : pattern_options) {
        for (const std::string& text : words.patterns.at(option.name)) {
            request.patterns.push_back({option.name, text, option.place, option.is_wanted});
        }
    }
    if (app.count("--forms") > 0) {
        request.forms = parse_forms(words.forms);
    }
    if (app.count("--kinds") > 0) {
        request.kinds = parse_kinds(words.kinds);
    }
    request.max_items = *parse_number<std::uint32_t>(words.max_items);
    request.max_premise_items = *parse_number<std::uint32_t>(words.max_premise_items);
    request.max_conclusion_items = *parse_number<std::uint32_t>(words.max_conclusion_items);
    request.min_lift = app.count("--min-lift") > 0 ? parse_ratio(words.min_lift) : std::nullopt;
    request.wording = *value_of_word(wordings, words.wording);
    request.readings = *value_of_word(readings, words.readings);
    request.prune = value_of_word(prunes, words.prune);
    std::tie(request.sort, request.is_ascending) = *parse_sort(words.sort);
    request.per_conclusion = *parse_number<std::uint32_t>(words.per_conclusion);
    request.threads = app.count("--threads") > 0 ? *parse_threads(words.threads) : default_threads();
    return request;
}

/// Throws Error where the rules cannot be written in the format to where they are to go.
void check_format(const CLI::App& app, const RuleArguments& arguments, bool is_terminal) {
    if (app.count("--graph") > 0 && arguments.format != RuleFormat::dot) {
        throw Error("--graph: found another format; expected --to dot, or -o with the extension .dot or .gv");
    }
    if (app.count("--page-limit") > 0 && arguments.format != RuleFormat::html) {
        throw Error(
            "--page-limit: found another format; expected --to html, or -o with the extension .html or .htm");
    }
    const bool is_text = std::ranges::find(writer_formats, arguments.format, &Word<RuleFormat>::second) !=
                         writer_formats.end();
    if (arguments.exclusions && !is_text) {
        throw Error(
            "--exclusions: found the format of a database, a graph or a page, which shows them beside rules; "
            "expected words, table, csv, tsv or jsonl");
    }
    if (arguments.is_count) {
        return;
    }
    if (arguments.format == RuleFormat::html) {
        require_rules_page();
        if (is_terminal) {
            throw Error("--to html: found a terminal; expected -o FILE, which a browser opens");
        }
    }
    if (arguments.format != RuleFormat::sqlite) {
        return;
    }
    require_rules_database();
    if (arguments.output == "-") {
        throw Error("--to sqlite: found standard output; expected -o FILE, since a database is a file");
    }
}

/// The options that decide which rules there are and what is told of them, see RuleArguments.
std::string decisive_options(const CLI::App& app) {
    constexpr std::array others = {"--output", "--to",      "--graph", "--color",
                                   "--verify", "--threads", "--quiet"};
    constexpr std::array paths = {"--database", "--holdout", "--names"};
    std::string text;
    for (const CLI::Option* const option : app.get_options()) {
        const std::string name = option->get_name();
        if (option->nonpositional() && std::ranges::find(others, name) == others.end()) {
            const bool is_flag = option->get_items_expected_max() == 0;
            const bool is_path = std::ranges::find(paths, name) != paths.end();
            for (const std::string& word : option->results()) {
                const std::string shown_word =
                    is_path ? std::filesystem::path(word).filename().string() : word;
                text += (text.empty() ? "" : " ") + name + (is_flag ? "" : ' ' + shell_word(shown_word));
            }
        }
    }
    return text;
}

/// What is asked of exclusions. Throws Error for options that say nothing of them.
ExclusionRequest exclusion_request(const CLI::App& app, const Words& words) {
    for (const char* const option : options_of_rules) {
        if (app.count(option) > 0) {
            throw Error(std::string(option) + ": does not go with --exclusions");
        }
    }
    ExclusionRequest request;
    if (app.count("--alpha") > 0) {
        request.alpha = *parse_alpha(words.alpha);
    }
    if (app.count("--max-items") > 0) {
        const std::size_t max_items = *parse_number<std::uint32_t>(words.max_items);
        if (max_items != 0 && max_items != 2 && max_items != 3) {
            throw Error("--max-items: found " + words.max_items +
                        "; with --exclusions expected 2 for pairs, or 3 for pairs and triples");
        }
        request.max_items = max_items == 2 ? 2 : 3;
    }
    return request;
}

/// Fills in what depends on where the rules go.
void complete_output(const CLI::App& app, const Words& words, RuleArguments& arguments) {
    if (arguments.is_count) {
        arguments.output = "-";  // what -o names is not to be written
    }
    // What is counted are the bytes of files.
    const bool is_terminal = !arguments.is_count && arguments.output == "-" && ::isatty(STDOUT_FILENO) != 0;
    if (!words.format.empty()) {
        arguments.format = *value_of_word(rule_formats, words.format);
    } else if (arguments.output != "-") {
        arguments.format = format_of_path(arguments.output);
    } else {
        arguments.format = is_terminal ? RuleFormat::table : RuleFormat::words;
    }
    arguments.graph = *value_of_word(graphs, words.graph);
    check_format(app, arguments, is_terminal);
    arguments.rules.top = app.count("--top") > 0 ? *parse_number<std::uint32_t>(words.top)
                          : is_terminal          ? top_on_terminal
                                                 : 0;
    if (arguments.format == RuleFormat::html && !arguments.is_count) {
        arguments.rules.page_limit = *parse_page_limit(words.page_limit);
    }
    if (words.color == "always" && !arguments.is_count && arguments.format != RuleFormat::table) {
        throw Error("--color: found always, but only tables have colours; expected --to table, too");
    }
    winsize size = {};
    if (is_terminal && ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        arguments.style.width = size.ws_col;
    }
    arguments.style.has_color = words.color == "always" ||
                                (words.color == "auto" && is_terminal && std::getenv("NO_COLOR") == nullptr);
}

/// Takes what the options say about reading and mining.
void complete_input(const CLI::App& app, const Words& words, RuleArguments& arguments) {
    InputRequest& input = arguments.input;
    if (app.count("--format") > 0) {
        // With a class file, the format is that of its database, or of the other transactions.
        const bool is_of_others =
            !input.database.empty() || (!input.holdout.empty() && app.count("--database-size") > 0);
        input.is_rule_file = words.reading.format == "rules";
        input.is_class_file = words.reading.format == "classes" || (is_of_others && !input.is_rule_file);
    }
    input.reading = reading_options(app, words.reading);
    const std::vector<BinRule>& bins = input.reading.table.bins;
    input.has_bins = app.count("--bins") > 0 &&
                     (bins.empty() ||  // for none
                      std::ranges::any_of(bins, [](const BinRule& rule) { return rule.column.empty(); }));
    input.mining = mining_request(app, words.mining);
    if (input.mining.min_supports.size() > 1) {
        throw Error("--min-support: found " + std::to_string(input.mining.min_supports.size()) +
                    " of them; expected one");
    }
    if (input.mining.min_supports.empty()) {
        input.mining.min_supports = {arguments.rules.min_support};
    }
    arguments.rules.min_support = input.mining.min_supports.front();
    input.max_items = arguments.rules.max_items;
    input.needs_transactions = arguments.exclusions.has_value();
    if (app.count("--database-size") > 0) {
        input.transactions = parse_transactions(words.transactions);
    }
}

}  // namespace

std::vector<Form> parse_forms(const std::string& text) {
    std::array<bool, rule_catalogue.size()> is_wanted = {};
    for (const std::string& word : words_of_list("--forms", text)) {
        bool is_known = false;
        for (const FormDescription& each : rule_catalogue) {
            const std::size_t number = group(each.form);
            if (word == each.label || word == std::to_string(number) || word == form_groups[number - 1]) {
                is_wanted[static_cast<std::size_t>(each.form)] = true;
                is_known = true;
            }
        }
        if (!is_known) {
            throw Error("--forms: found " + shown(word) +
                        "; expected or-or, none-none, or-none, none-or, a group from 1 to 4, or a label from "
                        "R111 to R432");
        }
    }
    std::vector<Form> forms;
    for (const FormDescription& each : rule_catalogue) {
        if (is_wanted[static_cast<std::size_t>(each.form)]) {
            forms.push_back(each.form);
        }
    }
    return forms;
}

std::vector<Certainty> parse_kinds(const std::string& text) {
    std::vector<Certainty> kinds;
    for (const std::string& word : words_of_list("--kinds", text)) {
        const auto* const found =
            std::ranges::find(all_certainties, word, [](Certainty kind) { return name_of(kind); });
        if (found == all_certainties.end()) {
            throw Error("--kinds: found " + shown(word) + "; expected exact, approximative or bounded");
        }
        if (std::ranges::find(kinds, *found) == kinds.end()) {
            kinds.push_back(*found);
        }
    }
    return kinds;
}

std::vector<Measure> parse_measures(const std::string& text) {
    std::array<bool, number_of_measures> is_wanted = {};
    for (const std::string& word : words_of_list("--measures", text)) {
        const auto measure = measure_named(word);
        if (word == "all") {
            is_wanted.fill(true);
        } else if (measure) {
            is_wanted[static_cast<std::size_t>(*measure)] = true;
        } else {
            throw Error("--measures: " + unknown_measure(word));
        }
    }
    std::vector<Measure> measures;
    for (std::size_t i = 0; i < number_of_measures; ++i) {
        if (is_wanted[i]) {
            measures.push_back(static_cast<Measure>(i));
        }
    }
    return measures;
}

RuleFormat format_of_path(const std::string& path) {
    const auto format = value_of_word(extensions, std::filesystem::path(path).extension().string());
    if (!format) {
        throw Error(
            "-o: found " + shown(path) +
            "; expected a name that ends with .txt, .csv, .tsv, .jsonl, .db, .sqlite, .sqlite3, .dot, .gv, "
            ".html or .htm, or --to FORMAT");
    }
    return *format;
}

RuleArguments parse_rule_arguments(int argc, char** argv) {
    RuleArguments arguments;
    Words words;
    CLI::App app(
        "Finds the rules that matter in transactions or in a class file: derives generalized association "
        "rules, chooses, words, ranks and writes them.",
        "korv-rules");
    app.set_version_flag("--version", "korv-rules " KORV_VERSION);
    add_input_options(app, arguments, words);
    add_choice_options(app, arguments, words);
    add_exclusion_options(app, words);
    add_order_options(app, words);
    add_output_options(app, arguments, words);
    add_mining_options(app, words.mining);
    describe_mining_options(app);
    add_reading_options(app, words.reading, Reader::rules);
    add_completions_option(app, words_of_lists());
    app.get_option("--completions")->group(output_group);
    app.failure_message(complaint);
    app.footer(
        "Examples:\n"
        "  korv-rules titanic.csv --to words --top 10\n"
        "  korv-rules titanic.csv --then 'survived=*' --max-items 3 -c 0.7\n"
        "  korv-rules titanic.classes -n 2201 --measures all -o rules.csv");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        constexpr int wrong_usage = 2;
        std::exit(app.exit(error) == 0 ? 0 : wrong_usage);
    }
    if (words.is_of_exclusions) {
        arguments.exclusions = exclusion_request(app, words);
    }
    arguments.rules = rule_request(app, words, std::move(arguments.rules));
    complete_test(app, words, arguments);
    complete_input(app, words, arguments);
    complete_output(app, words, arguments);
    arguments.decisive_options = decisive_options(app);
    if (app.count("--measures") > 0) {
        arguments.measures = parse_measures(words.measures);
    }
    return arguments;
}

}  // namespace korv::tools
