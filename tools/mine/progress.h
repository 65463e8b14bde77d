#pragma once

#include <chrono>
#include <ostream>
#include <string>

#include "mine/miner.h"

namespace korv::tools {

/// The text of a progress line: how many root items are done, what was found, how many seconds have passed,
/// and the peak memory in MiB.
///
/// It does not say how long the rest takes: the last root items, which are the most frequent, can take longer
/// than all others together, and nothing short of mining tells how long.
std::string progress_line(const MiningProgress& progress, double seconds, std::size_t mebibytes);

/// Tells somebody who waits how far the mining is: on a terminal in one line that is kept up to date,
/// elsewhere in a line every 30 seconds.
class ProgressDisplay {
public:
    /// `out` must outlive the display.
    ProgressDisplay(std::ostream& out, bool is_terminal);
    /// Clears the line of a terminal.
    ~ProgressDisplay();
    ProgressDisplay(const ProgressDisplay&) = delete;
    ProgressDisplay& operator=(const ProgressDisplay&) = delete;

    /// Shows the progress, `seconds` after the beginning, unless it was shown a moment ago.
    void show(const MiningProgress& progress, double seconds);

private:
    std::ostream& out_;
    bool is_terminal_;
    double shown_ = 0.0;  ///< seconds after the beginning
};

}  // namespace korv::tools
