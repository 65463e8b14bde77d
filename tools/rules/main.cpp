#include <csignal>
#include <exception>
#include <iostream>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "common/distinct_files.h"
#include "common/error.h"
#include "common/quantity.h"
#include "common/standard_streams.h"
#include "rules/accounting.h"
#include "rules/column_facts.h"
#include "rules/dot_graph.h"
#include "rules/exclusion_report.h"
#include "rules/exclusion_search.h"
#include "rules/item_choice.h"
#include "rules/output_origin.h"
#include "rules/rule_arguments.h"
#include "rules/rule_counts_report.h"
#include "rules/rule_file_request.h"
#include "rules/rule_file_search.h"
#include "rules/rule_input.h"
#include "rules/rule_output.h"
#include "rules/rule_search.h"
#include "rules/rule_verification.h"
#include "rules/search_watch.h"
#include "rules/statistics.h"
#include "rules/watched_input.h"

namespace {

using namespace korv;
using namespace korv::tools;

/// Exit statuses.
enum class Status {
    done = 0,
    no_rule = 1,
    wrong_usage = 2,
    wrong_input = 3,
    failed = 4,  ///< the output could not be written, the memory did not suffice, or a count was wrong
};

/// What ends the program before it is done.
struct Failure {
    Status status;
    std::string message;
};

/// Returns what `work` returns. An Error that it throws ends the program: with `status`, unless it has one of
/// its own.
template <typename Work>
auto or_end_with(Status status, const Work& work) {
    try {
        return work();
    } catch (const UsageError& error) {
        throw Failure{Status::wrong_usage, error.what()};
    } catch (const OutOfMemory& error) {
        throw Failure{Status::failed, error.what()};
    } catch (const BrokenPipe&) {
        throw;
    } catch (const Error& error) {
        throw Failure{status, error.what()};
    }
}

void say(const std::string& message) {
    std::cerr << "korv-rules: " << message << '\n';
}

/// Throws Error when the output would replace an input. `names`: the path of a names file, empty for none.
void require_distinct_files(const RuleArguments& arguments, const std::string& names) {
    std::vector<NamedFile> inputs;
    for (const std::string& path : arguments.input.paths) {
        inputs.push_back({path, "the input"});
    }
    if (!arguments.input.database.empty()) {
        inputs.push_back({arguments.input.database, "the database (--database)"});
    }
    if (!arguments.input.holdout.empty()) {
        inputs.push_back({arguments.input.holdout, "the other transactions (--holdout)"});
    }
    if (!names.empty()) {
        inputs.push_back({names, "the names file"});
    }
    require_distinct(inputs, {{arguments.output, "the output (-o)"}});
}

/// Throws Error where rules cannot be counted again.
void require_transactions(const RuleArguments& arguments, const RuleInput& input) {
    if (arguments.verifies && !input.database) {
        throw Error("--verify: needs the transactions; expected them as the input, or --database FILE");
    }
}

/// Says, unless it is to be quiet, what was read and what became of everything. `report`: the latter.
void sum_up(const RuleInput& input, const std::string& report, const RuleArguments& arguments) {
    if (arguments.quiet) {
        return;
    }
    for (const std::string& note : input.notes) {
        std::cerr << note << '\n';
    }
    std::cerr << report;
}

/// What the patterns of --with and --without choose among all items of the transactions.
ItemChoice choice_of(const RuleInput& input, const RuleRequest& request) {
    Itemset items;
    for (const Database::ItemColumn& column : input.database->items) {
        items.push_back(column.item);
    }
    return items.empty() ? ItemChoice() : ItemChoice(request.patterns, items, input.names);
}

/// Finds and writes exclusions.
Status tell_exclusions(const RuleInput& input, const RuleArguments& arguments, RuleOutput& output) {
    const ItemChoice choice =
        or_end_with(Status::wrong_usage, [&] { return choice_of(input, arguments.rules); });
    const ColumnFacts columns(input.names, *input.database);
    SearchWatch watch(arguments.quiet);
    const ExclusionResult found = or_end_with(Status::wrong_usage, [&] {
        return find_exclusions(*input.database, input.names, columns, choice, arguments.rules,
                               *arguments.exclusions, watch.exclusion_progress());
    });
    watch.begin(Phase::writing);
    watch.end();
    or_end_with(Status::failed, [&] {
        output.write_exclusions(found.exclusions, input, columns, arguments.rules.min_confidence);
    });
    sum_up(input, exclusion_report(found.accounting, arguments.rules), arguments);
    return found.exclusions.empty() ? Status::no_rule : Status::done;
}

/// Whether the lattice is written, too.
bool needs_lattice(const RuleArguments& arguments) {
    const bool is_drawn = arguments.format == RuleFormat::dot && arguments.graph == GraphKind::lattice;
    return !arguments.is_count &&
           (is_drawn || arguments.format == RuleFormat::sqlite || arguments.format == RuleFormat::html);
}

/// Throws Error where a database is to go to what is no file.
void require_file(const RuleArguments& arguments, const RuleOutput& output) {
    if (arguments.format == RuleFormat::sqlite && !arguments.is_count && !output.is_file()) {
        throw Error(shown(arguments.output) +
                    ": is no file; expected one, since a database is to be written");
    }
}

/// Says so where a graph is too large to be looked at.
void warn_of_tangle(std::size_t nodes, const RuleInput& input, GraphKind graph) {
    if (nodes <= most_legible_nodes) {
        return;
    }
    const char* const remedy = graph == GraphKind::rules ? "--top 100 draws fewer rules"
                               : input.lines.empty()
                                   ? "a higher --min-support or a lower --max-size brings fewer"
                                   : "classes mined with a higher --min-support are fewer";
    say("warning: a graph of " + with_commas(nodes) + " nodes is hard to read; " + remedy);
}

/// Writes the rules, or the report on them, and counts them again before that where it is asked for. Returns
/// what the summary adds to that.
std::string write(const SearchResult& found, const KorvOutput& korv, const RuleInput& input,
                  const RuleArguments& arguments, const RuleRequest& request, SearchWatch& watch,
                  RuleOutput& output) {
    const RuleBook book = {found.itemsets,
                           input.names,
                           input.transactions,
                           arguments.measures,
                           &found.columns,
                           found.known,
                           input.holdout ? &found.holdout : nullptr};
    watch.begin(Phase::writing);
    if (arguments.verifies) {
        verify(found.rules, book, *input.database);
    }
    watch.end();
    if (arguments.is_count) {
        output.write_report(rule_counts_report(found, korv, book, arguments.style));
    } else if (arguments.format == RuleFormat::sqlite) {
        output.write_database(found, book, database_origin(input, arguments));
    } else if (arguments.format == RuleFormat::html) {
        const PageOrigin origin = page_origin(input, arguments, request, watch.exclusion_progress());
        return note_on_classes(output.write_page(found, book, origin), found.lattice.size());
    } else if (arguments.format == RuleFormat::dot) {
        warn_of_tangle(output.write_graph(found, book, arguments.graph), input, arguments.graph);
    } else {
        output.write_rules(found.rules, book);
    }
    return "";
}

/// Derives and writes rules.
Status tell_rules(const RuleInput& input, const RuleArguments& arguments, RuleOutput& output) {
    const RuleFilter filter = or_end_with(Status::wrong_usage, [&] {
        require_transactions(arguments, input);
        return rule_filter(input, arguments.rules);
    });
    SearchWatch watch(arguments.quiet);
    KorvOutput korv;
    const SearchResult found = or_end_with(Status::wrong_input, [&] {
        return search_rules(input, arguments.rules, filter, watch.progress(),
                            {arguments.is_count ? &korv : nullptr, needs_lattice(arguments)});
    });
    const std::string addition = or_end_with(
        Status::failed, [&] { return write(found, korv, input, arguments, arguments.rules, watch, output); });
    sum_up(input, accounting_text(found.accounting, arguments.rules) + addition, arguments);
    return found.rules.empty() ? Status::no_rule : Status::done;
}

/// Chooses and writes rules that korv wrote.
Status tell_rule_files(TextStream first, const RuleArguments& arguments, RuleOutput& output) {
    or_end_with(Status::wrong_usage, [&] { require_rule_files_suffice(arguments); });
    const RuleInput input =
        or_end_with(Status::wrong_input, [&] { return context_of_rule_files(arguments.input); });
    const RuleRequest request = or_end_with(Status::wrong_usage, [&] {
        require_distinct_files(arguments, input.names_path);
        require_transactions(arguments, input);
        return request_for_rule_files(arguments.rules, input);
    });
    SearchWatch watch(arguments.quiet);
    const SearchResult found = or_end_with(Status::wrong_input, [&] {
        return search_rule_files(std::move(first), arguments.input.paths, input, request,
                                 watch.progress().begin);
    });
    const std::string addition = or_end_with(
        Status::failed, [&] { return write(found, {}, input, arguments, request, watch, output); });
    sum_up(input, accounting_text(found.accounting, request) + addition, arguments);
    return found.rules.empty() ? Status::no_rule : Status::done;
}

Status run(const RuleArguments& arguments) {
    const auto output = or_end_with(Status::failed, [&] {
        return std::make_unique<RuleOutput>(arguments.output, arguments.format, arguments.style);
    });
    or_end_with(Status::wrong_usage, [&] {
        require_distinct_files(arguments, arguments.input.names);
        require_file(arguments, *output);
    });
    TextStream first = or_end_with(Status::wrong_input, [&] { return open_input(arguments.input); });
    if (are_rule_files(first, arguments.input)) {
        return tell_rule_files(std::move(first), arguments, *output);
    }
    const RuleInput input = or_end_with(Status::wrong_input, [&] {
        return read_watched_input(std::move(first), arguments.input, arguments.quiet);
    });
    or_end_with(Status::wrong_usage, [&] { require_distinct_files(arguments, input.names_path); });
    return arguments.exclusions ? tell_exclusions(input, arguments, *output)
                                : tell_rules(input, arguments, *output);
}

}  // namespace

int main(int argc, char** argv) {
    open_standard_streams();
    // A reader who has had enough, as head, is told apart from other faults by the error of writing.
    std::signal(SIGPIPE, SIG_IGN);
    print_statistics_on_signals();
    Status status = Status::failed;
    try {
        status = run(or_end_with(Status::wrong_usage, [&] { return parse_rule_arguments(argc, argv); }));
    } catch (const Failure& failure) {
        status = failure.status;
        say(failure.message);
    } catch (const std::bad_alloc&) {
        say("out of memory while " + std::string(words_for(statistics().phase).doing));
    } catch (const BrokenPipe&) {
        status = Status::done;  // the reader has had enough
    } catch (const std::exception& error) {
        say(error.what());
    }
    return static_cast<int>(status);
}
