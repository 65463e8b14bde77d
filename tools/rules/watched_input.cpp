#include "rules/watched_input.h"

#include <unistd.h>

#include <iostream>
#include <optional>
#include <string>
#include <utility>

#include "common/error.h"
#include "common/quantity.h"
#include "mine/mining_watch.h"
#include "mine/progress.h"
#include "rules/bounded_mining.h"
#include "rules/statistics.h"

namespace korv::tools {

namespace {

/// Why mining ended before it had all classes, and what helps.
std::string why_it_stopped(const MiningProgress& progress, double max_seconds) {
    return "stopped after " + seconds_text(max_seconds) + " (--max-seconds), with " +
           with_commas(progress.classes) + " classes when " + with_commas(progress.roots_done) + " of " +
           with_commas(progress.roots) +
           " root items were done; a higher --min-support or a lower --max-size brings fewer, a higher "
           "--max-seconds lets it go on";
}

}  // namespace

RuleInput read_watched_input(TextStream first, const InputRequest& request, bool is_quiet) {
    const auto start = MiningWatch::Clock::now();
    std::optional<ProgressDisplay> display;
    if (!is_quiet) {
        display.emplace(std::cerr, ::isatty(STDERR_FILENO) != 0, "korv-rules");
    }
    MiningWatch watch(start, request.mining.max_seconds, display ? &*display : nullptr);
    try {
        return read_input(std::move(first), request, [&watch](const MiningProgress& progress) {
            statistics().phase = Phase::mining;
            return watch.go_on(progress);
        });
    } catch (const MiningStopped&) {
        throw Error(why_it_stopped(watch.progress(), *request.mining.max_seconds));
    }
}

}  // namespace korv::tools
