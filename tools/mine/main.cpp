#include <unistd.h>

#include <chrono>
#include <exception>
#include <iostream>
#include <new>
#include <optional>

#include "common/atomic_output.h"
#include "common/error.h"
#include "common/standard_streams.h"
#include "common/temporary_file.h"
#include "mine/arguments.h"
#include "mine/class_output.h"
#include "mine/estimate.h"
#include "mine/miner.h"
#include "mine/mining_watch.h"
#include "mine/named_items.h"
#include "mine/progress.h"
#include "mine/reading.h"
#include "mine/summary.h"

namespace {

using namespace korv;
using namespace korv::tools;
using Clock = MiningWatch::Clock;

/// Exit statuses besides those of CLI11.
enum class Status {
    done = 0,
    failed = 1,
    stopped = 3,  ///< by a limit of classes or time
};

void say(const std::string& message) {
    std::cerr << "korv-mine: " << message << '\n';
}

std::string names_of_inputs(const Arguments& arguments) {
    std::string names;
    for (const std::string& path : arguments.transactions) {
        names += (names.empty() ? "" : ", ") + (path == "-" ? "standard input" : path);
    }
    return names;
}

Database read_within_memory(const Arguments& arguments, ReadingReport& report) {
    return within_memory([&] { return read_database(arguments.transactions, arguments.reading, report); },
                         [&] { return "while reading " + names_of_inputs(arguments); });
}

void print_estimates(const Arguments& arguments, const Database& database, const ReadingReport& report) {
    if (!arguments.quiet) {
        std::cerr << summary_of_input(database, report);
    }
    AtomicOutput output("-");
    output.write(estimate_table(within_memory([&] { return estimates(database, arguments.mining); },
                                              [] { return std::string("while estimating"); })));
    output.commit();
}

MiningResult mine_within_memory(const Database& database, const MiningOptions& options, MiningWatch& watch) {
    return within_memory(
        [&] {
            return mine(database, options,
                        [&watch](const MiningProgress& progress) { return watch.go_on(progress); });
        },
        [&] { return "after " + std::to_string(watch.progress().classes) + " classes"; });
}

Status mine_to_files(Arguments arguments, Clock::time_point start, const Database& database,
                     const ReadingReport& report) {
    arguments.names = names_path(arguments.names, report.format, arguments.output);
    require_distinct_files(arguments);
    const MiningOptions options =
        mining_options(arguments.mining, arguments.mining.min_supports.front(), database.transactions);
    // The outputs are opened before the work begins, so that a wrong path is found early.
    AtomicOutput output(arguments.output);
    std::optional<AtomicOutput> names;
    if (!arguments.names.empty()) {
        names.emplace(arguments.names);
        names->write(names_file(database.names));
    }

    std::optional<ProgressDisplay> display;
    if (!arguments.quiet) {
        display.emplace(std::cerr, ::isatty(STDERR_FILENO) != 0);
    }
    MiningWatch watch(start, arguments.mining.max_seconds, display ? &*display : nullptr);
    const MiningResult result = mine_within_memory(database, options, watch);
    display.reset();
    if (!result.is_complete) {
        const bool is_kept = arguments.keeps_partial && result.classes.size() > 0;
        say(watch.why_it_stopped(options) +
            (arguments.keeps_partial ? "" : "; --partial keeps what is found until then"));
        if (!is_kept) {
            return Status::stopped;
        }
    }
    require_classes(result.classes.figures(), database, options);
    within_memory([&] { write_classes(result.classes, output); },
                  [] { return std::string("while writing the classes"); });
    AtomicOutput::commit_together(names ? std::vector{&*names, &output} : std::vector{&output});

    if (!arguments.quiet) {
        const std::chrono::duration<double> elapsed = Clock::now() - start;
        std::cerr << summary({.database = figures_of(database, options.min_support),
                              .reading = report,
                              .options = options,
                              .classes = result.classes.figures(),
                              .is_complete = result.is_complete,
                              .output = arguments.output,
                              .names = arguments.names,
                              .seconds = elapsed.count()});
    }
    return result.is_complete ? Status::done : Status::stopped;
}

Status run(const Arguments& arguments) {
    const Clock::time_point start = Clock::now();
    remove_temporary_files_on_signals();
    require_distinct_files(arguments);
    ReadingReport report;
    const Database database = read_within_memory(arguments, report);
    if (arguments.is_estimate) {
        print_estimates(arguments, database, report);
        return Status::done;
    }
    return mine_to_files(arguments, start, database, report);
}

}  // namespace

int main(int argc, char** argv) {
    open_standard_streams();
    Status status = Status::failed;
    try {
        status = run(parse_arguments(argc, argv));
    } catch (const std::bad_alloc&) {
        say("out of memory");
    } catch (const std::exception& error) {
        say(error.what());
    }
    return static_cast<int>(status);
}
