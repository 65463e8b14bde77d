#include "mine_mpi/level_display.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

const LevelProgress progress = {.size = 3,
                                .itemsets = 1200,
                                .of_itemsets = 8000,
                                .found = {.classes = 7000, .essentials = 9000, .file_bytes = 81200}};

TEST(LevelDisplay, TellsHowFarTheLevelIs) {
    EXPECT_EQ(
        level_progress_line(progress, 12.4, 34),
        "1,200 of 8,000 itemsets of 3 items, 9,000 essential itemsets, 7,000 classes, 81.2 kB; 12 s, 34 MiB");
}

TEST(LevelDisplay, TellsHowManyItemsHaveTheirPairs) {
    EXPECT_EQ(level_progress_line({.itemsets = 838, .of_itemsets = 5000}, 1.6, 34),
              "the pairs of 838 of 5,000 items, 0 essential itemsets, 0 classes, 0 bytes; 2 s, 34 MiB");
}

TEST(LevelDisplay, TellsWhatEachLevelTook) {
    EXPECT_EQ(
        level_table({{.work = "reading", .bytes = 64, .slowest = 0.5, .fastest = 0.25},
                     {.size = 1,
                      .candidates = 1035,
                      .frequent = 12,
                      .essential = 7,
                      .bytes = 1100,
                      .slowest = 1.25,
                      .fastest = 1.0},
                     {.work = "writing", .bytes = 0, .slowest = 0.125, .fastest = 0.125}}),
        "  items   candidates for one more   frequent   essential   exchanged   slowest process   "
        "fastest process\n"
        "reading                         -          -           -    64 bytes            0.50 s          "
        "  0.25 s\n"
        "      1                     1,035         12           7      1.1 kB            1.25 s          "
        "  1.00 s\n"
        "writing                         -          -           -     0 bytes            0.12 s          "
        "  0.12 s\n");
}

TEST(LevelWatch, EndsTheWorkWhenItsTimeIsOver) {
    LevelWatch watch(LevelWatch::Clock::now() - std::chrono::seconds(5), 4.0, nullptr);
    EXPECT_FALSE(watch.go_on(progress));
    EXPECT_EQ(watch.why_it_stopped({.min_support = 2}),
              "stopped after 4.00 s (--max-seconds), with 7,000 classes when 1,200 of 8,000 itemsets of 3 "
              "items were "
              "done; a higher --min-support (now 2) or a lower --max-size brings fewer, a higher "
              "--max-seconds lets "
              "it go on, --estimate says what to expect");
}

TEST(LevelWatch, LetsItGoOnUntilThen) {
    LevelWatch watch(LevelWatch::Clock::now(), 1000.0, nullptr);
    EXPECT_TRUE(watch.go_on(progress));
    EXPECT_TRUE(LevelWatch(LevelWatch::Clock::now(), std::nullopt, nullptr).go_on(progress));
    EXPECT_TRUE(watch.why_it_stopped({.min_support = 2, .max_classes = 10})
                    .starts_with("there are more than 10 classes (--max-classes) when "));
}

}  // namespace
}  // namespace korv::tools
