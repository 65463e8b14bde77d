#include "mine/essential_tree.h"

#include <gtest/gtest.h>

#include <vector>

namespace korv::tools {
namespace {

using Node = EssentialTree::Node;

TEST(EssentialTree, BeginsWithRootItems) {
    const EssentialTree tree(std::vector<Count>{3, 5});
    EXPECT_EQ(tree.size(), 2U);
    EXPECT_EQ(tree.child(EssentialTree::none, 1), 1U);
    EXPECT_EQ(tree.rank(1), 1U);
    EXPECT_EQ(tree.support(1), 5U);
    EXPECT_EQ(tree.joint(1), 5U);
    EXPECT_EQ(tree.parent(1), EssentialTree::none);
    EXPECT_EQ(tree.children(1), 0U);
}

TEST(EssentialTree, FindsChildrenByRank) {
    EssentialTree tree(std::vector<Count>(40, 9));
    std::vector<Node> added;
    for (Rank rank = 0; rank < 39; rank += 2) {
        added.push_back(tree.add(39, rank, 1 + rank, 100 + rank));
    }
    EXPECT_EQ(tree.children(39), 20U);
    for (Rank rank = 0; rank < 39; ++rank) {
        EXPECT_EQ(tree.child(39, rank), rank % 2 == 0 ? added[rank / 2] : EssentialTree::none);
    }
    EXPECT_EQ(tree.child(38, 0), EssentialTree::none);
    EXPECT_EQ(tree.parent(added[3]), 39U);
    EXPECT_EQ(tree.joint(added[3]), 7U);
    EXPECT_EQ(tree.support(added[3]), 106U);
}

TEST(EssentialTree, FindsTheFirstChildFromARankOn) {
    EssentialTree tree(std::vector<Count>(100, 9));
    for (Rank rank = 0; rank < 99; rank += 3) {
        tree.add(99, rank, 1, 1);
    }
    const Node first = tree.first_child(99);
    for (Node from = first; from <= tree.children_end(99); ++from) {
        for (Rank rank = 0; rank <= 100; ++rank) {
            // The rank of the i-th child is 3 * i.
            const Node expected = std::max(from, first + std::min<Rank>(33, (rank + 2) / 3));
            ASSERT_EQ(tree.lower_child(99, from, rank), expected) << from << ' ' << rank;
        }
    }
}

}  // namespace
}  // namespace korv::tools
