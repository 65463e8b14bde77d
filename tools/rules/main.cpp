#include <unistd.h>

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
#include "rules/accounting.h"
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

/// Returns what `work` returns. An Error that it throws ends the program with `status`.
template <typename Work>
auto or_end_with(Status status, const Work& work) {
    try {
        return work();
    } catch (const Error& error) {
        throw Failure{status, error.what()};
    }
}

void say(const std::string& message) {
    std::cerr << "korv-rules: " << message << '\n';
}

/// Throws Error when the output would replace an input.
void require_distinct_files(const RuleArguments& arguments) {
    std::vector<NamedFile> inputs;
    for (const std::string& path : arguments.input.paths) {
        inputs.push_back({path, "the input"});
    }
    if (!arguments.input.database.empty()) {
        inputs.push_back({arguments.input.database, "the database (--database)"});
    }
    if (!arguments.input.names.empty()) {
        inputs.push_back({arguments.input.names, "the names file (--names)"});
    }
    require_distinct(inputs, {{arguments.output, "the output (-o)"}});
}

/// What statistics call a phase of the search.
Phase phase_of(SearchPhase phase) {
    switch (phase) {
        case SearchPhase::building_lattice:
            return Phase::lattice;
        case SearchPhase::indexing:
            return Phase::indexing;
        case SearchPhase::deriving:
            return Phase::deriving;
        case SearchPhase::pruning:
        case SearchPhase::sorting:
            break;
    }
    return Phase::pruning;
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

RuleInput read(const RuleArguments& arguments, Watch& watch) {
    return or_end_with(Status::wrong_input, [&] {
        return read_input(arguments.input, [&watch](const MiningProgress&) {
            watch.begin(Phase::mining);
            return true;
        });
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

Status run(const RuleArguments& arguments) {
    or_end_with(Status::wrong_usage, [&] { require_distinct_files(arguments); });
    // The output is opened before the work begins, so that a wrong path is found early.
    auto output =
        or_end_with(Status::failed, [&] { return std::make_unique<AtomicOutput>(arguments.output); });
    Watch watch(arguments.quiet);
    RuleInput input = read(arguments, watch);
    if (arguments.verifies && !input.database) {
        throw Failure{Status::wrong_usage,
                      "--verify: needs the transactions; expected them as the input, or --database FILE"};
    }
    const RuleFilter filter =
        or_end_with(Status::wrong_usage, [&] { return rule_filter(input, arguments.rules); });
    KorvOutput korv;
    const SearchResult found = or_end_with(Status::wrong_input, [&] {
        return search_rules(input, arguments.rules, filter,
                            {[&watch](SearchPhase phase) { watch.begin(phase_of(phase)); },
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
        if (arguments.is_count) {
            output->write(rule_counts_report(found, korv, book, arguments.style));
        } else {
            write_rules(found.rules, book, arguments, *output);
        }
        output->commit();
    });
    watch.end();
    if (!arguments.quiet) {
        for (const std::string& note : input.notes) {
            std::cerr << note << '\n';
        }
        std::cerr << accounting_text(found.accounting, arguments.rules);
    }
    return found.rules.empty() ? Status::no_rule : Status::done;
}

}  // namespace

int main(int argc, char** argv) {
    open_standard_streams();
    print_statistics_on_signals({});
    Status status = Status::failed;
    try {
        status = run(or_end_with(Status::wrong_usage, [&] { return parse_rule_arguments(argc, argv); }));
    } catch (const Failure& failure) {
        status = failure.status;
        say(failure.message);
    } catch (const std::bad_alloc&) {
        say("out of memory");
    } catch (const std::exception& error) {
        say(error.what());
    }
    return static_cast<int>(status);
}
