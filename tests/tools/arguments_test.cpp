#include "mine/arguments.h"

#include <gtest/gtest.h>

#include "tools/complaint.h"

namespace korv::tools {
namespace {

TEST(DefaultNames, StandBesideTheClassFile) {
    EXPECT_EQ(default_names("data/a.classes"), "data/a.names");
    EXPECT_EQ(default_names("a"), "a.names");
    EXPECT_EQ(default_names("-"), "");
}

TEST(NamesPath, IsTheGivenOneOrTheDefault) {
    EXPECT_EQ(names_path("b.txt", Format::basket, "a.classes"), "b.txt");
    EXPECT_EQ(names_path("", Format::table, "a.classes"), "a.names");
    EXPECT_EQ(names_path("", Format::fimi, "a.classes"), "");
}

TEST(NamesPath, CannotBeGivenForItemsWithoutNames) {
    EXPECT_EQ(complaint_of([] { names_path("b.txt", Format::fimi, "a.classes"); }),
              "--names: goes with --format basket or table only; found fimi, whose items have no names");
}

}  // namespace
}  // namespace korv::tools
