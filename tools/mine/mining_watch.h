#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "mine/miner.h"
#include "mine/progress.h"

namespace korv::tools {

/// Stands by while mine() works: shows the progress, and ends the work when its time is over.
class MiningWatch {
public:
    using Clock = std::chrono::steady_clock;

    /// `start`: when the program began. `display` may be null; otherwise it must outlive the watch.
    MiningWatch(Clock::time_point start, std::optional<double> max_seconds, ProgressDisplay* display)
        : start_(start), max_seconds_(max_seconds), display_(display) {}

    /// What mine() asks.
    bool go_on(const MiningProgress& progress);

    /// How far mine() was when it asked last.
    const MiningProgress& progress() const { return progress_; }

    /// Why mine() ended before it had all classes, and what helps.
    std::string why_it_stopped(const MiningOptions& options) const;

private:
    Clock::time_point start_;
    std::optional<double> max_seconds_;
    ProgressDisplay* display_;
    MiningProgress progress_;
    bool is_out_of_time_ = false;
};

}  // namespace korv::tools
