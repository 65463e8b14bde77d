#include "mine/progress.h"

#include <gtest/gtest.h>

#include <sstream>

namespace korv::tools {
namespace {

const MiningProgress some = {
    .roots_done = 50, .roots = 100, .essentials = 2345, .classes = 1234, .file_bytes = 56'789};

TEST(ProgressLine, SaysWhatIsDone) {
    EXPECT_EQ(progress_line(some, 10.4, 35),
              "50 of 100 root items, 2,345 essential itemsets, 1,234 classes, 56.8 kB; 10 s, 35 MiB");
}

/// What a display wrote when it was told of progress at these seconds, each line without what differs from
/// run to run.
std::string shown_at(const std::vector<double>& seconds, bool is_terminal) {
    std::ostringstream out;
    {
        ProgressDisplay display(out, is_terminal);
        for (const double each : seconds) {
            display.show(some, each);
        }
    }
    return out.str();
}

std::size_t times_in(const std::string& text, const std::string& piece) {
    std::size_t times = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) {
        ++times;
    }
    return times;
}

TEST(ProgressDisplay, ClearsItsLineAtTheEnd) {
    EXPECT_EQ(shown_at({}, true), "\r\x1B[K");
}

TEST(ProgressDisplay, ShowsNothingThatTakesNoTime) {
    EXPECT_EQ(shown_at({0.1}, true), "\r\x1B[K");
    EXPECT_EQ(shown_at({0.1, 29.9}, false), "");
}

TEST(ProgressDisplay, RewritesItsLineOnATerminal) {
    const std::string shown = shown_at({0.3, 0.4, 0.6}, true);
    EXPECT_EQ(times_in(shown, "\r\x1B[K50 of 100 root items"), 2U) << shown;
    EXPECT_EQ(times_in(shown, "\n"), 0U);
}

TEST(ProgressDisplay, WritesALineEveryHalfMinuteElsewhere) {
    const std::string shown = shown_at({1, 31, 32, 60, 62}, false);
    EXPECT_EQ(times_in(shown, "korv-mine: 50 of 100 root items"), 2U) << shown;
    EXPECT_EQ(times_in(shown, " 31 s, "), 1U);
    EXPECT_EQ(times_in(shown, " 62 s, "), 1U);
    EXPECT_TRUE(shown.ends_with(" MiB\n"));
    EXPECT_EQ(times_in(shown, "\x1B"), 0U);
}

}  // namespace
}  // namespace korv::tools
