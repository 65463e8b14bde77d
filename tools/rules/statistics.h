#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string_view>

#include "common/progress_line.h"
#include "rules/phase.h"

namespace korv::tools {

/// How far a run is, as far as it is known: signals ask at any time, so that nothing here may need a lock.
/// There is one for the program, see statistics(). The run assigns to it, now and then: an assignment takes
/// some ten nanoseconds.
struct Statistics {
    std::atomic<Phase> phase = Phase::reading;
    std::atomic<std::uint64_t> pairs = 0;           ///< that were looked at; or triples
    std::atomic<std::uint64_t> expected_pairs = 0;  ///< how many there are, about; 0: not known
    std::atomic<std::uint64_t> derived = 0;         ///< rules that reach the minimum support and confidence
    std::atomic<std::uint64_t> kept = 0;  ///< rules of them, or exclusions, that were not left out until now
    /// When the run began: seconds of the monotonic clock.
    std::atomic<double> start = 0.0;
};

/// The statistics of this program.
Statistics& statistics();

/// Seconds of the monotonic clock. Safe in handlers of signals.
double monotonic_seconds();

/// A line of statistics, in memory of its own, so that handlers of signals can make it.
class StatisticsLine {
public:
    /// "deriving, 1,234 of about 5,000 pairs, 171,321 rules derived, 59,055 kept; 12 s, 340 MiB", or
    /// "counting pairs, 1,234 of about 5,000, 59 kept; ...". What is 0 or not known is left out.
    StatisticsLine(const Statistics& statistics, double seconds, std::size_t mebibytes);

    std::string_view text() const { return {text_.data(), size_}; }

private:
    void add(std::string_view text);
    void add(std::uint64_t number);

    std::array<char, 256> text_ = {};  ///< longer than any line
    std::size_t size_ = 0;
};

/// From now on, SIGUSR1 writes a line of statistics on standard error, "korv-rules: deriving, ...", and the
/// program goes on. SIGINT, SIGTERM and SIGHUP write one, too, before they remove all temporary files and end
/// the program, as every other signal does that ends programs (see remove_temporary_files_on_signals, which
/// this calls). The clock of statistics() begins.
void print_statistics_on_signals();

/// Tells somebody who waits how far the run is, see ProgressLine.
class StatisticsDisplay {
public:
    /// `out` must outlive the display.
    StatisticsDisplay(std::ostream& out, bool is_terminal) : line_(out, is_terminal, "korv-rules") {}

    /// Shows the statistics of the program, unless they were shown a moment ago. Asks for the time: every
    /// thousand pairs is often enough.
    void show();

private:
    ProgressLine line_;
};

}  // namespace korv::tools
