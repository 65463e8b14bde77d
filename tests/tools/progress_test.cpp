#include "mine/progress.h"

#include <gtest/gtest.h>

#include <sstream>

namespace korv::tools {
namespace {

TEST(ProgressLine, SaysWhatIsDoneAndAboutHowLongItTakes) {
    // Half of the roots: a sixteenth of the work.
    EXPECT_EQ(progress_line({50, 100, 1234}, 10.0),
              "50 of 100 root items, 1234 classes, 10 s, about 150 s left");
    EXPECT_EQ(progress_line({99, 100, 1234, 1.0}, 10.0),
              "99 of 100 root items, 1234 classes, 10 s, about 0 s left");
}

TEST(ProgressLine, SaysNothingOfTheTimeLeftAtTheBeginning) {
    EXPECT_EQ(progress_line({0, 100, 0}, 0.0), "0 of 100 root items, 0 classes, 0 s");
}

TEST(ProgressDisplay, ClearsItsLineAtTheEnd) {
    std::ostringstream terminal;
    { ProgressDisplay display(terminal); }
    EXPECT_EQ(terminal.str(), "\r\x1B[K");
}

TEST(ProgressDisplay, ShowsNothingThatTakesNoTime) {
    std::ostringstream terminal;
    {
        ProgressDisplay display(terminal);
        display.show({1, 2, 3});
    }
    EXPECT_EQ(terminal.str(), "\r\x1B[K");
}

}  // namespace
}  // namespace korv::tools
