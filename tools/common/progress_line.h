#pragma once

#include <ostream>
#include <string>
#include <string_view>

namespace korv::tools {

/// Tells somebody who waits how far a program is: on a terminal in one line that is kept up to date,
/// elsewhere in a line every 30 seconds.
class ProgressLine {
public:
    /// `out` must outlive the line. `program`: what lines begin with that do not go to a terminal.
    ProgressLine(std::ostream& out, bool is_terminal, std::string program);
    /// Clears the line of a terminal.
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Whether it is time to show something, `seconds` after the beginning: not a moment after the last time.
    bool is_due(double seconds) const;

    /// Shows a text, `seconds` after the beginning.
    void show(std::string_view text, double seconds);

private:
    std::ostream& out_;
    bool is_terminal_;
    std::string program_;
    double shown_ = 0.0;  ///< seconds after the beginning
};

}  // namespace korv::tools
