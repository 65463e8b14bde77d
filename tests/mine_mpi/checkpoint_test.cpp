#include "mine_mpi/checkpoint.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/files.h"
#include "tools/complaint.h"

namespace korv::tools {
namespace {

/// A checkpoint of three items, in four, five and six transactions.
class CheckpointTest : public ::testing::Test {
protected:
    CheckpointTest() {
        items_.items = {{10}, {11}, {12, 13}};
        items_.supports = {4, 5, 6};
        items_.frequent = 3;
    }

    Checkpoint begun(bool resumes) const {
        return {path(), resumes, items_, fingerprint_, {.min_support = 2}};
    }
    std::string path() const { return (directory_.path() / "kept").string(); }

    /// Keeps a first level, on which two itemsets of two items were found.
    void keep_a_level() const {
        EssentialTree tree(items_.supports);
        tree.add(1, 0, 3, 6);
        tree.add(2, 0, 2, 8);
        begun(false).keep(tree, {.size = 1, .closed = 3}, {"a", "", "bc"});
    }

    test::TemporaryDirectory directory_;
    RankedItems items_;
    std::uint64_t fingerprint_ = 99;
};

TEST_F(CheckpointTest, BeginsEmpty) {
    EXPECT_EQ(begun(false).take_kept().state.size, 0U);
    EXPECT_EQ(begun(true).take_kept().state.size, 0U);
}

TEST_F(CheckpointTest, GivesBackWhatItKept) {
    keep_a_level();
    Checkpoint checkpoint = begun(true);
    const KeptLevels kept = checkpoint.take_kept();
    EXPECT_EQ(kept.state.size, 1U);
    EXPECT_EQ(kept.state.closed, 3U);
    ASSERT_EQ(kept.nodes.size(), 2U);
    EXPECT_EQ(kept.nodes[1].parent, 2U);
    EXPECT_EQ(kept.nodes[1].rank, 0U);
    EXPECT_EQ(kept.nodes[1].joint, 2U);
    EXPECT_EQ(kept.nodes[1].support, 8U);
    EXPECT_EQ(kept.closures, (std::vector<std::string>{"a", "", "bc"}));
}

TEST_F(CheckpointTest, KeepsOneLevelBehindTheOther) {
    keep_a_level();
    EssentialTree tree(items_.supports);
    tree.add(1, 0, 3, 6);
    tree.add(2, 0, 2, 8);
    tree.add(4, 0, 1, 9);
    begun(true).keep(tree, {.size = 2, .closed = 5}, {"d", "e"});
    Checkpoint checkpoint = begun(true);
    const KeptLevels kept = checkpoint.take_kept();
    EXPECT_EQ(kept.state.size, 2U);
    EXPECT_EQ(kept.nodes.size(), 3U);
    EXPECT_EQ(kept.closures, (std::vector<std::string>{"a", "", "bc", "d", "e"}));
}

TEST_F(CheckpointTest, RefusesOtherTransactions) {
    keep_a_level();
    fingerprint_ = 98;
    EXPECT_EQ(complaint_of([&] { begun(true); }),
              "--resume: found a checkpoint of other transactions or options (transactions 99); expected "
              "transactions 98");
}

TEST_F(CheckpointTest, RefusesADamagedLevel) {
    keep_a_level();
    const std::filesystem::path level = directory_.path() / "kept" / "level-1";
    std::string bytes = test::read_file(level);
    bytes.back() = 'x';
    test::write_file(level, bytes);
    EXPECT_EQ(
        complaint_of([&] { begun(true); }),
        level.string() + ": found other bytes than were written; expected the checkpoint of an earlier run");
}

TEST_F(CheckpointTest, RefusesALevelOfAnotherCheckpoint) {
    keep_a_level();
    std::filesystem::remove(directory_.path() / "kept" / "head");
    fingerprint_ = 98;
    begun(false);
    EXPECT_EQ(
        complaint_of([&] { begun(true); }),
        path() + "/level-1: found other bytes than were written; expected the checkpoint of an earlier run");
}

TEST_F(CheckpointTest, RemovesItselfAndItsDirectory) {
    keep_a_level();
    begun(true).remove();
    EXPECT_FALSE(std::filesystem::exists(path()));
}

TEST_F(CheckpointTest, LeavesTheFilesOfOthers) {
    keep_a_level();
    test::write_file(directory_.path() / "kept" / "mine", "x");
    begun(true).remove();
    EXPECT_EQ(test::read_file(directory_.path() / "kept" / "mine"), "x");
}

}  // namespace
}  // namespace korv::tools
