#include "rules/summary_lines.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

TEST(Aligned, PutsNumbersAndOptionsBelowEachOther) {
    EXPECT_EQ(aligned({{1200, "one", "--a"}, {7, "longer", ""}, {30, "two", "--b"}}, 6),
              " 1,200 one        --a\n"
              "     7 longer\n"
              "    30 two        --b\n");
}

TEST(Counted, HasASingularAndAPlural) {
    EXPECT_EQ(counted(1, "rule"), "1 rule");
    EXPECT_EQ(counted(2201, "rule"), "2,201 rules");
    EXPECT_EQ(counted(0, "class", "es"), "0 classes");
}

TEST(Keeps, SaysWhatKeepsOneOrSeveral) {
    EXPECT_EQ(keeps("--min-lift 0", 1), "--min-lift 0 keeps it");
    EXPECT_EQ(keeps("--min-lift 0", 2), "--min-lift 0 keeps them");
    EXPECT_EQ(keeps("without --where", 1), "it is kept without --where");
    EXPECT_EQ(keeps("without --where", 2), "they are kept without --where");
}

}  // namespace
}  // namespace korv::tools
