#include "common/progress_line.h"

#include <gtest/gtest.h>

#include <sstream>

namespace korv::tools {
namespace {

TEST(ProgressLine, IsDueFiveTimesASecondOnATerminal) {
    std::ostringstream out;
    ProgressLine line(out, true, "korv");
    EXPECT_FALSE(line.is_due(0.1));
    EXPECT_TRUE(line.is_due(0.3));
    line.show("half", 0.3);
    EXPECT_FALSE(line.is_due(0.4));
    EXPECT_TRUE(line.is_due(0.6));
}

TEST(ProgressLine, IsDueEveryHalfMinuteElsewhere) {
    std::ostringstream out;
    ProgressLine line(out, false, "korv");
    EXPECT_FALSE(line.is_due(29));
    line.show("half", 31);
    EXPECT_FALSE(line.is_due(60));
    EXPECT_TRUE(line.is_due(61));
}

TEST(ProgressLine, IsRewrittenAndClearedOnATerminal) {
    std::ostringstream out;
    {
        ProgressLine line(out, true, "korv");
        line.show("half", 1);
        line.show("all", 2);
    }
    EXPECT_EQ(out.str(), "\r\x1B[Khalf\r\x1B[Kall\r\x1B[K");
}

TEST(ProgressLine, NamesTheProgramElsewhere) {
    std::ostringstream out;
    {
        ProgressLine line(out, false, "korv");
        line.show("half", 31);
        line.show("all", 62);
    }
    EXPECT_EQ(out.str(), "korv: half\nkorv: all\n");
}

}  // namespace
}  // namespace korv::tools
