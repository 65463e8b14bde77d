#include "mine_mpi/mining_in_parts.h"

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "common/atomic_output.h"
#include "common/progress_line.h"
#include "mine/class_output.h"
#include "mine/estimate.h"
#include "mine/mining_request.h"
#include "mine/named_items.h"
#include "mine/summary.h"
#include "mine_mpi/checkpoint.h"
#include "mine_mpi/divided_output.h"
#include "mine_mpi/level_display.h"
#include "mine_mpi/level_walk.h"
#include "mine_mpi/part_items.h"
#include "mine_mpi/part_reading.h"

namespace korv::tools {

namespace {

using Clock = std::chrono::steady_clock;

PartItems ranked(Processes& processes, const PartOfDatabase& part, const MiningOptions& options) {
    // A single item has all its transactions for its own.
    return rank_part(processes, part, std::max(options.min_support, options.min_own),
                     options.closure_over_all ? 0 : options.min_support);
}

std::size_t items_in(const PartOfDatabase& part, Count min_support) {
    return static_cast<std::size_t>(
        std::ranges::count_if(part.supports, [&](Count support) { return support >= min_support; }));
}

/// Sets in all processes what the mining for so long brings.
void mine_for(Processes& processes, const PartOfDatabase& part, std::chrono::duration<double> time,
              const MiningOptions& options, Estimate& estimate) {
    const Clock::time_point start = Clock::now();
    const LevelEvents events = {.go_on = [&](const LevelProgress&) { return Clock::now() - start < time; }};
    const PartItems items = ranked(processes, part, options);
    const LevelResult result = mine_by_levels(processes, items, options, events);
    const ClassFigures& found = result.classes.figures();
    estimate.essentials = found.essentials;
    estimate.classes = found.classes;
    estimate.file_bytes = found.file_bytes;
    estimate.is_complete = result.is_complete;
}

DatabaseFigures figures_of(const PartOfDatabase& part, Count min_support) {
    return {.transactions = part.transactions,
            .items = part.items.size(),
            .frequent_items = items_in(part, min_support),
            .has_names = !part.database.names.empty()};
}

void print_estimates(Processes& processes, const Arguments& arguments, const PartOfDatabase& part) {
    processes.together([&] {
        for (const Threshold& min_support : arguments.mining.min_supports) {
            mining_options(arguments.mining, min_support, part.transactions);
        }
    });
    const std::vector<Estimate> found = estimates(
        {.transactions = part.transactions,
         .items_in =
             [&](Count min_support) {
                 std::size_t items = items_in(part, min_support);
                 processes.broadcast_value(items);
                 return items;
             },
         .mine_for = [&](std::chrono::duration<double> time, const MiningOptions& options,
                         Estimate& estimate) { mine_for(processes, part, time, options, estimate); }},
        arguments.mining);
    processes.together([&] {
        if (!processes.is_first()) {
            return;
        }
        if (!arguments.quiet) {
            std::cerr << summary_of_input(figures_of(part, 0), part.report);
        }
        AtomicOutput output("-");
        output.write(estimate_table(found));
        output.commit();
    });
}

/// The files that the first process writes, opened before the work begins.
struct Outputs {
    std::string names_path;
    std::optional<AtomicOutput> classes;
    std::optional<AtomicOutput> names;
    std::optional<Checkpoint> checkpoint;
};

void open_outputs(const MpiArguments& all, const PartOfDatabase& part, const PartItems& items,
                  std::uint64_t fingerprint_of_items, const MiningOptions& options, Outputs& outputs) {
    Arguments arguments = all.mining;
    arguments.names = names_path(arguments.names, part.report.format, arguments.output);
    require_distinct_files(arguments);
    outputs.names_path = arguments.names;
    outputs.classes.emplace(arguments.output);
    if (!arguments.names.empty()) {
        outputs.names.emplace(arguments.names);
        outputs.names->write(names_file(part.database.names));
    }
    if (!all.checkpoint.empty()) {
        outputs.checkpoint.emplace(all.checkpoint, all.resumes, items.ranked, fingerprint_of_items, options);
    }
}

/// Whether the classes are to be written. Says in the first process why the mining stopped, if it did, and
/// throws Error where there are no classes.
bool are_wanted(Processes& processes, const PartOfDatabase& part, const Arguments& arguments,
                const MiningOptions& options, const LevelResult& result, const LevelWatch& watch) {
    const ClassFigures& found = result.classes.figures();
    if (!result.is_complete) {
        if (processes.is_first()) {
            say(watch.why_it_stopped(options) +
                (arguments.keeps_partial ? "" : "; --partial keeps what is found until then"));
        }
        if (!arguments.keeps_partial || found.classes == 0) {
            return false;
        }
    }
    processes.together([&] {
        const auto most = std::ranges::max_element(part.supports);
        require_classes(found, most == part.supports.end() ? 0 : *most, options);
    });
    return true;
}

/// Writes the classes, each process its own ones, and gives the files their names in the first one.
void write(Processes& processes, const LevelResult& result, Outputs& outputs) {
    write_divided(processes, result.classes,
                  [&outputs](std::string_view records) { outputs.classes->write(records); });
    processes.together([&] {
        if (!processes.is_first()) {
            return;
        }
        AtomicOutput::commit_together(outputs.names ? std::vector{&*outputs.names, &*outputs.classes}
                                                    : std::vector{&*outputs.classes});
        if (outputs.checkpoint && result.is_complete) {
            outputs.checkpoint->remove();
        }
    });
}

LevelEvents events_for(LevelWatch& watch, std::vector<LevelReport>& levels, Outputs& outputs) {
    LevelEvents events;
    events.go_on = [&watch](const LevelProgress& progress) { return watch.go_on(progress); };
    events.level_done = [&levels](const LevelReport& level) { levels.push_back(level); };
    if (outputs.checkpoint) {
        events.keeps_closures = true;
        events.level_kept = [&outputs](const EssentialTree& tree, const LevelState& state,
                                       const std::vector<std::string>& closures) {
            outputs.checkpoint->keep(tree, state, closures);
        };
    }
    return events;
}

/// What was done before the levels or behind them.
LevelReport report_of(std::string_view work, const Processes::Usage& usage) {
    return {.work = work, .bytes = usage.bytes, .slowest = usage.slowest, .fastest = usage.fastest};
}

RunStatus mine_to_files(Processes& processes, const MpiArguments& all, Clock::time_point start,
                        const PartOfDatabase& part) {
    const Arguments& arguments = all.mining;
    MiningOptions options;
    processes.together([&] {
        options = mining_options(arguments.mining, arguments.mining.min_supports.front(), part.transactions);
    });
    const PartItems items = ranked(processes, part, options);
    const std::uint64_t fingerprint_of_items = all.checkpoint.empty() ? 0 : fingerprint(processes, items);
    Outputs outputs;
    processes.together([&] {
        if (processes.is_first()) {
            open_outputs(all, part, items, fingerprint_of_items, options, outputs);
        }
    });
    std::optional<ProgressLine> line;
    if (processes.is_first() && !arguments.quiet) {
        line.emplace(std::cerr, ::isatty(STDERR_FILENO) != 0, "korv-mine-mpi");
    }
    LevelWatch watch(start, arguments.mining.max_seconds, line ? &*line : nullptr);
    std::vector<LevelReport> levels = {report_of("reading", processes.usage_since())};
    const LevelResult result =
        mine_by_levels(processes, items, options, events_for(watch, levels, outputs),
                       outputs.checkpoint ? outputs.checkpoint->take_kept() : KeptLevels());
    line.reset();
    if (!are_wanted(processes, part, arguments, options, result, watch)) {
        return RunStatus::stopped;
    }
    write(processes, result, outputs);
    levels.push_back(report_of("writing", processes.usage_since()));
    if (processes.is_first() && !arguments.quiet) {
        const std::chrono::duration<double> elapsed = Clock::now() - start;
        std::cerr << "processes           " << processes.size() << '\n'
                  << level_table(levels)
                  << summary({.database = figures_of(part, options.min_support),
                              .reading = part.report,
                              .options = options,
                              .classes = result.classes.figures(),
                              .is_complete = result.is_complete,
                              .output = arguments.output,
                              .names = outputs.names_path,
                              .seconds = elapsed.count()});
    }
    return result.is_complete ? RunStatus::done : RunStatus::stopped;
}

}  // namespace

RunStatus mine_in_parts(Processes& processes, const MpiArguments& arguments, Clock::time_point start) {
    processes.together([&] {
        if (processes.is_first()) {
            require_distinct_files(arguments.mining);
        }
    });
    const PartOfDatabase part = read_part(processes, arguments.mining.transactions, arguments.mining.reading);
    if (arguments.mining.is_estimate) {
        print_estimates(processes, arguments.mining, part);
        return RunStatus::done;
    }
    return mine_to_files(processes, arguments, start, part);
}

void say(const std::string& message) {
    std::cerr << "korv-mine-mpi: " << message << '\n';
}

}  // namespace korv::tools
