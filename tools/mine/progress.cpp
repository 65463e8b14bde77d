#include "mine/progress.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace korv::tools {

namespace {

/// Moves a terminal to the beginning of the line, and clears it.
constexpr std::string_view clear_line = "\r\x1B[K";

std::string whole_seconds(double seconds) {
    return std::to_string(std::llround(seconds)) + " s";
}

}  // namespace

std::string progress_line(const MiningProgress& progress, double seconds) {
    return std::to_string(progress.roots_done) + " of " + std::to_string(progress.roots) + " root items, " +
           std::to_string(progress.classes) + " classes, " + whole_seconds(seconds);
}

ProgressDisplay::ProgressDisplay(std::ostream& terminal) : terminal_(terminal) {}

ProgressDisplay::~ProgressDisplay() {
    terminal_ << clear_line << std::flush;
}

void ProgressDisplay::show(const MiningProgress& progress) {
    constexpr std::chrono::milliseconds pause(200);
    const auto now = Clock::now();
    if (now - shown_ < pause) {
        return;
    }
    shown_ = now;
    const double seconds = std::chrono::duration<double>(now - start_).count();
    terminal_ << clear_line << progress_line(progress, seconds) << std::flush;
}

}  // namespace korv::tools
