#include "mine/mining_watch.h"

#include <gtest/gtest.h>

#include <sstream>

namespace korv::tools {
namespace {

using Clock = MiningWatch::Clock;

const MiningProgress some = {.roots_done = 5, .roots = 119, .classes = 1234};

TEST(MiningWatch, LetsTheWorkGoOnWithoutALimit) {
    MiningWatch watch(Clock::now() - std::chrono::hours(9), std::nullopt, nullptr);
    EXPECT_TRUE(watch.go_on(some));
    EXPECT_EQ(watch.progress().classes, 1234U);
}

TEST(MiningWatch, EndsTheWorkWhenItsTimeIsOver) {
    MiningWatch early(Clock::now(), 3600, nullptr);
    EXPECT_TRUE(early.go_on(some));
    MiningWatch late(Clock::now() - std::chrono::seconds(11), 10.5, nullptr);
    EXPECT_FALSE(late.go_on(some));
    EXPECT_EQ(
        late.why_it_stopped({.min_support = 22}),
        "stopped after 10.50 s (--max-seconds), with 1,234 classes when 5 of 119 root items were done; a "
        "higher --min-support (now 22) or a lower --max-size brings fewer, a higher --max-seconds lets it "
        "go on, --estimate says what to expect");
}

TEST(MiningWatch, NamesTheLimitOfClasses) {
    MiningWatch watch(Clock::now(), std::nullopt, nullptr);
    watch.go_on(some);
    EXPECT_EQ(
        watch.why_it_stopped({.min_support = 22, .max_classes = 1000}),
        "there are more than 1,000 classes (--max-classes) when 5 of 119 root items were done; a higher "
        "--min-support (now 22) or a lower --max-size brings fewer, a higher --max-classes lets it go on, "
        "--estimate says what to expect");
}

TEST(MiningWatch, ShowsTheProgressSinceTheProgramBegan) {
    std::ostringstream out;
    ProgressDisplay display(out, false);
    MiningWatch watch(Clock::now() - std::chrono::seconds(100), std::nullopt, &display);
    watch.go_on(some);
    EXPECT_NE(out.str().find("5 of 119 root items"), std::string::npos) << out.str();
    EXPECT_NE(out.str().find(" 100 s, "), std::string::npos) << out.str();
}

}  // namespace
}  // namespace korv::tools
