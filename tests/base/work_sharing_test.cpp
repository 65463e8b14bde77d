#include "base/work_sharing.h"

#include <gtest/gtest.h>

#include <vector>

namespace korv {
namespace {

std::vector<std::size_t> parts_done(const WorkSharing& sharing) {
    std::vector<std::size_t> done;
    sharing.run(sharing.parts, [&](std::size_t part) { done.push_back(part); });
    return done;
}

TEST(WorkSharing, IsByItselfOfOnePart) {
    const WorkSharing sharing;
    EXPECT_EQ(parts_done(sharing), (std::vector<std::size_t>{0}));
    EXPECT_EQ(sharing.begin(0, 7), 0U);
    EXPECT_EQ(sharing.begin(1, 7), 7U);
}

TEST(WorkSharing, ByItselfDoesOnePartAfterTheOther) {
    const WorkSharing sharing = {.parts = 3};
    EXPECT_EQ(parts_done(sharing), (std::vector<std::size_t>{0, 1, 2}));
}

TEST(WorkSharing, MakesPartsOfAboutOneSize) {
    const WorkSharing sharing = {.parts = 3};
    EXPECT_EQ(sharing.begin(0, 8), 0U);
    EXPECT_EQ(sharing.begin(1, 8), 2U);
    EXPECT_EQ(sharing.begin(2, 8), 5U);
    EXPECT_EQ(sharing.begin(3, 8), 8U);
}

TEST(WorkSharing, MakesEmptyPartsOfTooFewPositions) {
    const WorkSharing sharing = {.parts = 3};
    EXPECT_EQ(sharing.begin(1, 1), 0U);
    EXPECT_EQ(sharing.begin(2, 1), 0U);
    EXPECT_EQ(sharing.begin(3, 1), 1U);
}

}  // namespace
}  // namespace korv
