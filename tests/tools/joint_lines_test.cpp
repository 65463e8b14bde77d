#include "mine/joint_lines.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace korv::tools {
namespace {

using Rows = JointLines::Rows;

class JointLinesTest : public ::testing::TestWithParam<Rows> {};

INSTANTIATE_TEST_SUITE_P(Rows, JointLinesTest, ::testing::Values(Rows::bits, Rows::lists),
                         [](const auto& each) { return each.param == Rows::bits ? "Bits" : "Lists"; });

TEST_P(JointLinesTest, CountLinesOfASetThatAreInARow) {
    JointLines joint_lines;
    joint_lines.reset(GetParam(), 3, 100, {});
    for (const std::size_t line : std::initializer_list<std::size_t>{0, 3, 70, 99}) {
        joint_lines.insert(0, line);
    }
    for (const std::size_t line : std::initializer_list<std::size_t>{3, 4, 70}) {
        joint_lines.insert(1, line);
    }
    joint_lines.insert(2, 70);
    JointLines::Set first;
    joint_lines.assign(0, first);
    EXPECT_EQ(joint_lines.joint(first, 0), 4U);
    EXPECT_EQ(joint_lines.joint(first, 1), 2U);
    EXPECT_EQ(joint_lines.joint(first, 2), 1U);
    JointLines::Set both;
    joint_lines.intersect(first, 1, both);
    EXPECT_EQ(joint_lines.joint(both, 0), 2U);
    EXPECT_EQ(joint_lines.joint(both, 2), 1U);
}

TEST_P(JointLinesTest, ForgetLinesAndWeightsWhenTheyAreReset) {
    JointLines joint_lines;
    joint_lines.reset(GetParam(), 1, 3, {5, 6, 7});
    joint_lines.insert(0, 0);
    joint_lines.insert(0, 2);
    JointLines::Set set;
    joint_lines.assign(0, set);
    EXPECT_EQ(joint_lines.joint(set, 0), 12U);
    joint_lines.reset(GetParam(), 2, 2, {});
    joint_lines.insert(1, 1);
    joint_lines.assign(0, set);
    EXPECT_EQ(joint_lines.joint(set, 0), 0U);
    joint_lines.assign(1, set);
    EXPECT_EQ(joint_lines.joint(set, 1), 1U);
}

TEST_P(JointLinesTest, AgreeWithSetsOfNumbers) {
    std::mt19937 random(4);
    JointLines joint_lines;
    for (int round = 0; round < 200; ++round) {
        const std::size_t lines = 1 + random() % 200;
        std::vector<Count> weights;
        for (std::size_t line = 0; round % 2 == 0 && line < lines; ++line) {
            weights.push_back(1 + static_cast<Count>(random() % 1000));
        }
        joint_lines.reset(GetParam(), 3, lines, weights);
        std::vector<std::set<std::size_t>> expected(3);
        for (std::size_t row = 0; row < 3; ++row) {
            for (std::size_t line = 0; line < lines; ++line) {
                if (random() % 3 == 0) {
                    joint_lines.insert(row, line);
                    expected[row].insert(line);
                }
            }
        }
        JointLines::Set set;
        JointLines::Set both;
        joint_lines.assign(0, set);
        joint_lines.intersect(set, 1, both);
        Count joint = 0;
        for (const std::size_t line : expected[0]) {
            const bool is_in_all = expected[1].contains(line) && expected[2].contains(line);
            joint += !is_in_all ? 0 : weights.empty() ? 1 : weights[line];
        }
        ASSERT_EQ(joint_lines.joint(both, 2), joint);
    }
}

TEST(JointLinesBytes, AreThoseOfBitsOrOfLists) {
    JointLines joint_lines;
    joint_lines.reset(Rows::bits, 3, 100, {});
    EXPECT_EQ(joint_lines.bytes(), 3 * 2 * sizeof(BitWord));
    JointLines lists;
    lists.reset(Rows::lists, 3, 100'000, {});
    const std::size_t empty = lists.bytes();
    lists.insert(1, 99'999);
    EXPECT_EQ(lists.bytes(), empty + 4);
}

TEST(SuitableRows, AreListsWhereBitsTakeMuchMemoryAndMoreThanLists) {
    constexpr std::size_t lines = std::size_t{1} << 20;
    EXPECT_EQ(suitable_rows(128, lines, 0), Rows::bits);  // 16 MiB
    EXPECT_EQ(suitable_rows(129, lines, 0), Rows::lists);
    EXPECT_EQ(suitable_rows(256, lines, 8 * lines - 1), Rows::lists);
    EXPECT_EQ(suitable_rows(256, lines, 8 * lines), Rows::bits);  // 32 MiB either way
}

}  // namespace
}  // namespace korv::tools
