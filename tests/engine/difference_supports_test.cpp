#include "engine/difference_supports.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "app/lattice.h"
#include "support/lattice_fixture.h"
#include "support/random_classes.h"
#include "support/support_answer.h"

namespace korv {
namespace {

using Answer = test::SupportAnswer;

class DifferenceSupportsTest : public test::LatticeFixture {
protected:
    DifferenceSupportsTest() : lattice_(make_lattice("")) {}

    void fill(const std::map<Itemset, data>& classes) {
        lattice_.dci_map = classes;
        lattice_.hash_table.clear();
        lattice_.Load_Hash_table();
        indexes_.emplace(lattice_.hash_table);
    }

    Answer settle(NodeRef whole, const Itemset& part, Count lower) {
        SupportBounds bounds = {lower, whole->second.support};
        const Count support = indexes_->settle(part, bounds);
        return {support, bounds.lower, bounds.upper};
    }

    Answer walk(NodeRef whole, const Itemset& part, Count lower) const {
        Answer answer = {0, lower, whole->second.support};
        answer.support = lattice_.generate_difference_support(part, answer.lower, answer.upper);
        return answer;
    }

    /// Compares all that is asked about a node with the walk. Bounds count only where no support is found.
    void expect_as_walked(NodeRef whole, std::mt19937& random) {
        for (int query = 0; query < 4; ++query) {
            Itemset part;
            std::ranges::copy_if(whole->first, std::back_inserter(part),
                                 [&](Item) { return random() % 3 != 0; });
            const Count lower = random() % 2 == 0 ? 0 : static_cast<Count>(random() % 6);
            Answer answer = settle(whole, part, lower);
            Answer walked = walk(whole, part, lower);
            if (walked.support != 0) {
                walked = {walked.support, 0, 0};
                answer = {answer.support, 0, 0};
            }
            ASSERT_EQ(answer, walked)
                << testing::PrintToString(part) << " of " << testing::PrintToString(whole->first);
        }
    }

    void expect_all_as_walked(std::mt19937& random) {
        for (NodeRef node = lattice_.dci_map.begin(); node != lattice_.dci_map.end(); ++node) {
            expect_as_walked(node, random);
            if (HasFatalFailure()) {
                return;
            }
        }
    }

    Lattice& lattice_;
    std::optional<DifferenceSupports> indexes_;
};

TEST_F(DifferenceSupportsTest, AnswersAsTheWalkDoesOverContradictoryClasses) {
    constexpr std::uint32_t seed = 1;
    std::mt19937 random(seed);
    for (int round = 0; round < 60'000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        fill(test::contradictory_classes(random));
        ASSERT_NO_FATAL_FAILURE(expect_all_as_walked(random));
    }
}

TEST_F(DifferenceSupportsTest, AnswersAsTheWalkDoesOverSomeClassesOfADatabase) {
    constexpr std::uint32_t seed = 2;
    std::mt19937 random(seed);
    for (int round = 0; round < 40'000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const std::vector<Itemset> transactions = test::random_transactions(7, 15, random);
        fill(test::some_classes(transactions, 7, 10, random));
        ASSERT_NO_FATAL_FAILURE(expect_all_as_walked(random));
    }
}

TEST_F(DifferenceSupportsTest, AnswersAsTheWalkDoesOverManyClasses) {
    constexpr std::uint32_t seed = 3;
    std::mt19937 random(seed);
    for (int round = 0; round < 5; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const std::vector<Itemset> transactions = test::random_transactions(14, 200, random);
        fill(test::some_classes(transactions, 14, 2000, random));
        ASSERT_GT(lattice_.dci_map.size(), 600U);  // many words of a bitmap
        ASSERT_NO_FATAL_FAILURE(expect_all_as_walked(random));
    }
}

TEST_F(DifferenceSupportsTest, AnswersAsTheWalkDoesOverClassesOfManyItems) {
    std::mt19937 random(4);
    fill(test::sparse_classes(4500, 700, random));
    ASSERT_NO_FATAL_FAILURE(expect_all_as_walked(random));
}

TEST_F(DifferenceSupportsTest, FindTheSupportWhereBoundsMeet) {
    fill({{{1, 2}, {3, {{1}}}}, {{1, 2, 3}, {7, {}}}});
    EXPECT_EQ(settle(node({1, 2, 3}), {1}, 0), (Answer{3, 3, 3}));
}

}  // namespace
}  // namespace korv
