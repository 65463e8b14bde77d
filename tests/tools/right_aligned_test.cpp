#include "common/right_aligned.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

TEST(RightAligned, EndsTheCellsOfAColumnBelowEachOther) {
    EXPECT_EQ(right_aligned({{"a", "bcd"}, {"ef", "g"}}), " a   bcd\nef     g\n");
}

TEST(RightAligned, IsNothingWithoutRows) {
    EXPECT_EQ(right_aligned({}), "");
}

}  // namespace
}  // namespace korv::tools
