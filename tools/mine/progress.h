#pragma once

#include <chrono>
#include <ostream>
#include <string>

#include "mine/miner.h"

namespace korv::tools {

/// The text of a progress line: how many root items are done, how many classes were found, how many seconds
/// have passed, and about how many are left.
///
/// The time left is a rough guess. It assumes that the work grows with the fourth power of the fraction of
/// root items that are done, since each root item is extended by those before it, and these extensions by
/// each other.
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

    /// Shows the progress, unless it was shown a moment ago.
    void show(const MiningProgress& progress);

private:
    using Clock = std::chrono::steady_clock;

    std::ostream& terminal_;
    Clock::time_point start_ = Clock::now();
    Clock::time_point shown_ = start_;
};

}  // namespace korv::tools
