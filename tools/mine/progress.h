#pragma once

#include <chrono>
#include <ostream>
#include <string>

#include "mine/miner.h"

namespace korv::tools {

/// What a progress line says: root items done, classes found, seconds since the start, and about how many are
/// left.
///
/// The time left is a rough guess: it takes the work done to grow with the fourth power of the part of the
/// root items that is done, since each is extended by those before it, and these extensions by each other.
std::string progress_line(const MiningProgress& progress, double seconds);

/// Keeps one line of progress up to date on a terminal.
class ProgressDisplay {
public:
    /// `terminal` must outlive the display.
    explicit ProgressDisplay(std::ostream& terminal);
    /// Clears the line.
    ~ProgressDisplay();
    ProgressDisplay(const ProgressDisplay&) = delete;
    ProgressDisplay& operator=(const ProgressDisplay&) = delete;

    /// Shows the progress, unless that was done a moment ago.
    void show(const MiningProgress& progress);

private:
    using Clock = std::chrono::steady_clock;

    std::ostream& terminal_;
    Clock::time_point start_ = Clock::now();
    Clock::time_point shown_ = start_;
};

}  // namespace korv::tools
