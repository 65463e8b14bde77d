#include <unistd.h>

#include <csignal>
#include <exception>
#include <iostream>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "common/atomic_output.h"
#include "common/distinct_files.h"
#include "common/error.h"
#include "common/quantity.h"
#include "common/standard_streams.h"
#include "mine/mining_watch.h"
#include "mine/progress.h"
#include "rules/accounting.h"
#include "rules/bounded_mining.h"
#include "rules/recount.h"
#include "rules/rule_arguments.h"
#include "rules/rule_counts_report.h"
#include "rules/rule_input.h"
#include "rules/rule_search.h"
#include "rules/rule_writer.h"
#include "rules/side_words.h"
#include "rules/statistics.h"

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

constexpr const char* program = "korv-rules";

void say(const std::string& message) {
    std::cerr << program << ": " << message << '\n';
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
    if (!names.empty()) {
        inputs.push_back({names, "the names file"});
    }
    require_distinct(inputs, {{arguments.output, "the output (-o)"}});
}

/// Keeps the statistics up to date, and shows them now and then.
class Watch {
public:
    explicit Watch(bool is_quiet) {
        if (!is_quiet) {
            display_.emplace(std::cerr, ::isatty(STDERR_FILENO) != 0);
        }
    }

    void begin(Phase phase) {
        statistics().phase = phase;
        show();
    }

    void derived(const Accounting& accounting, std::size_t done, std::size_t classes) {
        constexpr std::size_t often = 1024;
        if (done % often != 0 && done != classes) {
            return;
        }
        statistics().pairs = accounting.pairs;
        statistics().expected_pairs = accounting.pairs * classes / done;
        statistics().derived = accounting.derived;
        statistics().kept = accounting.left();
        show();
    }

    /// Takes the progress off the terminal.
    void end() { display_.reset(); }

    void show() {
        if (display_) {
            display_->show();
        }
    }

private:
    std::optional<StatisticsDisplay> display_;
};

/// Why mining ended before it had all classes, and what helps.
std::string why_it_stopped(const MiningProgress& progress, double max_seconds) {
    return "stopped after " + seconds_text(max_seconds) + " (--max-seconds), with " +
           with_commas(progress.classes) + " classes when " + with_commas(progress.roots_done) + " of " +
           with_commas(progress.roots) +
           " root items were done; a higher --min-support or a lower --max-size brings fewer, a higher "
           "--max-seconds lets it go on";
}

RuleInput read(const RuleArguments& arguments, MiningWatch::Clock::time_point start) {
    std::optional<ProgressDisplay> display;
    if (!arguments.quiet) {
        display.emplace(std::cerr, ::isatty(STDERR_FILENO) != 0, program);
    }
    MiningWatch watch(start, arguments.input.mining.max_seconds, display ? &*display : nullptr);
    return or_end_with(Status::wrong_input, [&] {
        try {
            return read_input(arguments.input, [&watch](const MiningProgress& progress) {
                statistics().phase = Phase::mining;
                return watch.go_on(progress);
            });
        } catch (const MiningStopped&) {
            throw Error(why_it_stopped(watch.progress(), *arguments.input.mining.max_seconds));
        }
    });
}

/// Throws Error, an internal one, when a rule is counted differently in the transactions.
void verify(const std::vector<FoundRule>& rules, const RuleBook& book, const RuleInput& input) {
    const auto words = [&book](Side side) { return side_text(side, book, {}); };
    Recount recount(*input.database);
    for (const FoundRule& rule : rules) {
        const Contingency counted =
            recount.count({book.itemsets[rule.premise.itemset()], rule.premise.is_negated()},
                          {book.itemsets[rule.conclusion.itemset()], rule.conclusion.is_negated()});
        if (counted != rule.at_low || counted != rule.at_high) {
            throw Error("internal error: the rule " + words(rule.premise) + " => " + words(rule.conclusion) +
                        " holds for " + std::to_string(rule.at_low.both) + " of " +
                        std::to_string(rule.at_low.premise) + " transactions; counted again, for " +
                        std::to_string(counted.both) + " of " + std::to_string(counted.premise));
        }
    }
}

void write_rules(const std::vector<FoundRule>& rules, const RuleBook& book, const RuleArguments& arguments,
                 AtomicOutput& output) {
    const std::unique_ptr<RuleWriter> writer = rule_writer(
        arguments.format, book, arguments.style, [&output](std::string_view text) { output.write(text); });
    for (const FoundRule& rule : rules) {
        writer->write(rule);
    }
    writer->finish();
}

/// The request, without patterns of items where no class has any.
RuleRequest sensible(RuleRequest request, const RuleInput& input) {
    if (input.classes.empty()) {
        request.patterns.clear();
    }
    return request;
}

/// Says, unless it is to be quiet, what was read and what became of every rule.
void sum_up(const RuleInput& input, const Accounting& accounting, const RuleArguments& arguments) {
    if (arguments.quiet) {
        return;
    }
    for (const std::string& note : input.notes) {
        std::cerr << note << '\n';
    }
    std::cerr << accounting_text(accounting, arguments.rules);
}

Status run(const RuleArguments& arguments) {
    const auto start = MiningWatch::Clock::now();
    // The output is opened before the work begins, so that a wrong path is found early.
    auto output =
        or_end_with(Status::failed, [&] { return std::make_unique<AtomicOutput>(arguments.output); });
    or_end_with(Status::wrong_usage, [&] { require_distinct_files(arguments, arguments.input.names); });
    const RuleInput input = read(arguments, start);
    or_end_with(Status::wrong_usage, [&] { require_distinct_files(arguments, input.names_path); });
    if (arguments.verifies && !input.database) {
        throw Failure{Status::wrong_usage,
                      "--verify: needs the transactions; expected them as the input, or --database FILE"};
    }
    const RuleFilter filter = or_end_with(
        Status::wrong_usage, [&] { return rule_filter(input, sensible(arguments.rules, input)); });
    Watch watch(arguments.quiet);
    KorvOutput korv;
    const SearchResult found = or_end_with(Status::wrong_input, [&] {
        return search_rules(input, arguments.rules, filter,
                            {[&watch](Phase phase) { watch.begin(phase); },
                             [&watch](const Accounting& accounting, std::size_t done, std::size_t classes) {
                                 watch.derived(accounting, done, classes);
                             }},
                            arguments.is_count ? &korv : nullptr);
    });
    const RuleBook book = {found.itemsets, input.names, input.transactions, arguments.measures,
                           &found.columns};
    watch.begin(Phase::writing);
    or_end_with(Status::failed, [&] {
        if (arguments.verifies) {
            verify(found.rules, book, input);
        }
        watch.end();
        if (arguments.is_count) {
            output->write(rule_counts_report(found, korv, book, arguments.style));
        } else {
            write_rules(found.rules, book, arguments, *output);
        }
        output->commit();
    });
    sum_up(input, found.accounting, arguments);
    return found.rules.empty() ? Status::no_rule : Status::done;
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
