#include "mine/progress.h"

#include <gtest/gtest.h>

#include <sstream>

namespace korv::tools {
namespace {

TEST(ProgressLine, SaysWhatIsDone) {
    EXPECT_EQ(progress_line({.roots_done = 50, .roots = 100, .classes = 1234}, 10.0),
              "50 of 100 root items, 1234 classes, 10 s");
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
