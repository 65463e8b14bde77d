#include "mine_mpi/level_stretches.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace korv::tools {
namespace {

using Nodes = std::vector<EssentialTree::Node>;

TEST(LevelStretches, DivideItemsetsAmongProcesses) {
    const EssentialTree tree(std::vector<Count>(10, 1));
    EXPECT_EQ(stretches_of_level(tree, 0, 10, 1, 1), (Nodes{0, 10}));
    EXPECT_EQ(stretches_of_level(tree, 0, 10, 1, 3), (Nodes{0, 4, 7, 10}));
}

TEST(LevelStretches, CanBeEmpty) {
    const EssentialTree tree(std::vector<Count>(2, 1));
    EXPECT_EQ(stretches_of_level(tree, 0, 2, 1, 5), (Nodes{0, 1, 1, 2, 2, 2}));
    EXPECT_EQ(stretches_of_level(tree, 2, 2, 1, 5), Nodes{2});
}

TEST(LevelStretches, AreShorterWhereThereAreMoreCandidates) {
    // The hundredth child has up to 99 candidates, the first one none.
    EssentialTree tree(std::vector<Count>(101, 1));
    for (Rank rank = 0; rank < 100; ++rank) {
        tree.add(100, rank, 1, 1);
    }
    const Nodes begins = stretches_of_level(tree, 101, 201, 1, 2);
    ASSERT_EQ(begins.size(), 3U);
    // 66 + 67 + ... + 165 is 11,550, and half of it, 5,775, is reached with the 61st child: 66 + ... + 125 is
    // 5,730, and 66 + ... + 126 is 5,856.
    EXPECT_EQ(begins[1], 101U + 61U);
}

TEST(LevelStretches, AreOfSeveralRoundsWhereThereIsMuchToDo) {
    // 20,000 itemsets of 2,064, and 524,288 in a round: 79 rounds.
    const EssentialTree tree(std::vector<Count>(20'000, 1));
    const Nodes begins = stretches_of_level(tree, 0, 20'000, 1'000, 2);
    ASSERT_EQ(begins.size(), 2U * 79 + 1);
    EXPECT_EQ(begins.front(), 0U);
    EXPECT_EQ(begins.back(), 20'000U);
    for (std::size_t i = 1; i < begins.size(); ++i) {
        ASSERT_LE(begins[i - 1], begins[i]);
        ASSERT_LE(begins[i] - begins[i - 1], 127U);  // of 261,266
    }
}

}  // namespace
}  // namespace korv::tools
