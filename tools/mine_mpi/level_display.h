#pragma once

#include <chrono>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "common/progress_line.h"
#include "mine/miner.h"
#include "mine_mpi/level_walk.h"

namespace korv::tools {

/// Stands by while the walk by levels works: shows the progress, and ends the work when its time is over.
class LevelWatch {
public:
    using Clock = std::chrono::steady_clock;

    /// `start`: when the program began. `line` may be null; otherwise it must outlive the watch.
    LevelWatch(Clock::time_point start, std::optional<double> max_seconds, ProgressLine* line)
        : start_(start), max_seconds_(max_seconds), line_(line) {}

    /// What the walk asks.
    bool go_on(const LevelProgress& progress);

    /// Why the walk ended before it had all classes, and what helps.
    std::string why_it_stopped(const MiningOptions& options) const;

private:
    Clock::time_point start_;
    std::optional<double> max_seconds_;
    ProgressLine* line_;
    LevelProgress progress_;
    bool is_out_of_time_ = false;
};

/// The text of a progress line.
std::string level_progress_line(const LevelProgress& progress, double seconds, std::size_t mebibytes);

/// What was done on each level, and before and behind them, as a table below a line of headings.
std::string level_table(const std::vector<LevelReport>& levels);

}  // namespace korv::tools
