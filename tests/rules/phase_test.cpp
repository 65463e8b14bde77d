#include "rules/phase.h"

#include <gtest/gtest.h>

namespace korv::tools {

namespace {

TEST(WordsForAPhase, AreThoseOfThePhase) {
    EXPECT_EQ(words_for(Phase::reading).name, "reading");
    EXPECT_EQ(words_for(Phase::deriving).name, "deriving");
    EXPECT_EQ(words_for(Phase::sorting).name, "sorting");
    EXPECT_EQ(words_for(Phase::writing).name, "writing");
    EXPECT_EQ(words_for(Phase::lattice).doing, "building the lattice of the classes");
    EXPECT_EQ(words_for(Phase::writing).doing, "writing what was found");
}

}  // namespace

}  // namespace korv::tools
