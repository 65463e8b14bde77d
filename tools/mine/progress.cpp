#include "mine/progress.h"

#include <cmath>
#include <string_view>

#include "common/quantity.h"

namespace korv::tools {

namespace {

/// Moves a terminal to the beginning of the line, and clears it.
constexpr std::string_view clear_line = "\r\x1B[K";

}  // namespace

std::string progress_line(const MiningProgress& progress, double seconds, std::size_t mebibytes) {
    return std::to_string(progress.roots_done) + " of " + std::to_string(progress.roots) + " root items, " +
           with_commas(progress.essentials) + " essential itemsets, " + with_commas(progress.classes) +
           " classes, " + size_text(progress.file_bytes) + "; " + std::to_string(std::llround(seconds)) +
           " s, " + std::to_string(mebibytes) + " MiB";
}

ProgressDisplay::ProgressDisplay(std::ostream& out, bool is_terminal)
    : out_(out), is_terminal_(is_terminal) {}

ProgressDisplay::~ProgressDisplay() {
    if (is_terminal_) {
        out_ << clear_line << std::flush;
    }
}

void ProgressDisplay::show(const MiningProgress& progress, double seconds) {
    const double pause = is_terminal_ ? 0.2 : 30;
    if (seconds - shown_ < pause) {
        return;
    }
    shown_ = seconds;
    const std::string line = progress_line(progress, seconds, peak_memory());
    if (is_terminal_) {
        out_ << clear_line << line << std::flush;
    } else {
        out_ << "korv-mine: " << line << std::endl;
    }
}

}  // namespace korv::tools
