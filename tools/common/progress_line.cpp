#include "common/progress_line.h"

#include <utility>

namespace korv::tools {

namespace {

/// Moves a terminal to the beginning of the line, and clears it.
constexpr std::string_view clear_line = "\r\x1B[K";

}  // namespace

ProgressLine::ProgressLine(std::ostream& out, bool is_terminal, std::string program)
    : out_(out), is_terminal_(is_terminal), program_(std::move(program)) {}

ProgressLine::~ProgressLine() {
    if (is_terminal_) {
        out_ << clear_line << std::flush;
    }
}

bool ProgressLine::is_due(double seconds) const {
    const double pause = is_terminal_ ? 0.2 : 30;
    return seconds - shown_ >= pause;
}

void ProgressLine::show(std::string_view text, double seconds) {
    shown_ = seconds;
    if (is_terminal_) {
        out_ << clear_line << text << std::flush;
    } else {
        out_ << program_ << ": " << text << std::endl;
    }
}

}  // namespace korv::tools
