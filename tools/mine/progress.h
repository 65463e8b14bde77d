#pragma once

#include <ostream>
#include <string>

#include "common/progress_line.h"
#include "mine/miner.h"

namespace korv::tools {

/// The text of a progress line: how many root items are done, what was found, how many seconds have passed,
/// and the peak memory in MiB.
///
/// It does not say how long the rest takes: the last root items, which are the most frequent, can take longer
/// than all others together, and nothing short of mining tells how long.
std::string progress_line(const MiningProgress& progress, double seconds, std::size_t mebibytes);

/// Tells somebody who waits how far the mining is, see ProgressLine.
class ProgressDisplay {
public:
    /// `out` must outlive the display. `program`: see ProgressLine.
    ProgressDisplay(std::ostream& out, bool is_terminal, const std::string& program = "korv-mine")
        : line_(out, is_terminal, program) {}

    /// Shows the progress, `seconds` after the beginning, unless it was shown a moment ago.
    void show(const MiningProgress& progress, double seconds);

private:
    ProgressLine line_;
};

}  // namespace korv::tools
