#include "engine/lattice_building.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "engine/frontier_walk.h"
#include "support/bits.h"
#include "support/loaded_classes.h"
#include "support/random_classes.h"

namespace korv {
namespace {

using Itemsets = std::vector<Itemset>;
using test::LoadedClasses;

/// The successors of all entries of these classes as the walk finds them.
std::vector<Itemsets> walked_successors(const ClassMap& map) {
    LoadedClasses classes(map);
    Frontier frontier;
    VisitedNodes visited;
    walk_frontier(classes.entries, frontier, visited);
    return classes.all_successors();
}

class LatticeBuilding : public ::testing::Test {
protected:
    /// Links these closed itemsets, and expects the walk to find the same.
    void build_of(const Itemsets& closed_itemsets) { build(test::classes_of_itemsets(closed_itemsets)); }

    void build(const ClassMap& map) {
        classes_.emplace(map);
        link_successors(classes_->entries);
        EXPECT_EQ(classes_->all_successors(), walked_successors(map));
    }

    Itemsets successors(const Itemset& itemset) const { return classes_->successors(itemset); }

private:
    std::optional<LoadedClasses> classes_;
};

TEST_F(LatticeBuilding, LinksNothingWithoutClasses) {
    LatticeEntries entries;
    link_successors(entries);
    EXPECT_TRUE(entries.empty());
}

// Who is a successor of whom, and in which order.

TEST_F(LatticeBuilding, SingleClassHasNoSuccessor) {
    build_of({{1, 2}});
    EXPECT_EQ(successors({1, 2}), Itemsets{});
}

TEST_F(LatticeBuilding, ClassesOfOneCardinalityHaveNoSuccessors) {
    build_of({{1, 2}, {1, 3}, {2, 3}});
    EXPECT_EQ(successors({1, 2}), Itemsets{});
    EXPECT_EQ(successors({1, 3}), Itemsets{});
    EXPECT_EQ(successors({2, 3}), Itemsets{});
}

TEST_F(LatticeBuilding, SubsetOfASuccessorIsNoSuccessor) {
    build_of({{1}, {1, 2}, {1, 2, 3}});
    EXPECT_EQ(successors({1}), Itemsets{});
    EXPECT_EQ(successors({1, 2}), Itemsets{{1}});
    EXPECT_EQ(successors({1, 2, 3}), (Itemsets{{1, 2}}));
}

TEST_F(LatticeBuilding, SuccessorsComeInTheOrderOfTheFrontier) {
    build_of({{1}, {2}, {1, 2}});
    EXPECT_EQ(successors({1, 2}), (Itemsets{{1}, {2}}));
}

TEST_F(LatticeBuilding, SuccessorsMayShareItems) {
    build_of({{1}, {2}, {1, 2}, {2, 3, 4}, {1, 2, 3, 4}});
    EXPECT_EQ(successors({2, 3, 4}), Itemsets{{2}});
    EXPECT_EQ(successors({1, 2, 3, 4}), (Itemsets{{1, 2}, {2, 3, 4}}));
}

TEST_F(LatticeBuilding, ClassWithoutCommonItemsHasNoSuccessor) {
    build_of({{1}, {2}, {3, 4}});
    EXPECT_EQ(successors({3, 4}), Itemsets{});
}

TEST_F(LatticeBuilding, LooksUpSupersetsByEssentialItemsets) {
    build(test::classes_of("1 2\t5\t 1, 2,\n2\t4\t 2,\n1\t3\t 1,\n"));
    EXPECT_EQ(successors({1, 2}), (Itemsets{{1}, {2}}));
}

TEST_F(LatticeBuilding, RemovalKeepsTheOrderOfTheFrontier) {
    // {1 5} takes {1} from the head of the frontier and comes last itself.
    build_of({{1}, {2}, {3}, {4}, {1, 5}, {1, 2, 3, 4, 5}});
    EXPECT_EQ(successors({1, 2, 3, 4, 5}), (Itemsets{{2}, {3}, {4}, {1, 5}}));
}

TEST_F(LatticeBuilding, ExaminesTheElementThatFollowsARemovedOne) {
    build_of({{1}, {2}, {3}, {1, 2, 3}});
    EXPECT_EQ(successors({1, 2, 3}), (Itemsets{{1}, {2}, {3}}));
}

TEST_F(LatticeBuilding, RepeatedItemsCount) {
    build_of({{1, 2}, {2, 2}, {1, 2, 2}, {1, 2, 3}});
    EXPECT_EQ(successors({1, 2, 2}), (Itemsets{{1, 2}, {2, 2}}));
    EXPECT_EQ(successors({1, 2, 3}), (Itemsets{{1, 2}}));
}

// The descent.

TEST_F(LatticeBuilding, FindsSuccessorsBelowAnOverlappingClass) {
    build_of({{2}, {1, 2}, {2, 3}});
    EXPECT_EQ(successors({2, 3}), Itemsets{{2}});
}

TEST_F(LatticeBuilding, DescentFollowsTheFrontierNotTheNumbers) {
    // {1 2} came to the frontier after {3}, so {1}, below it, is found after {3}.
    build_of({{1}, {3}, {1, 2}, {1, 3, 4}});
    EXPECT_EQ(successors({1, 3, 4}), (Itemsets{{3}, {1}}));
}

TEST_F(LatticeBuilding, DescendsBelowASuccessorBeforeGoingOnToTheNext) {
    // Below {1 2 3 4}: {1 2} overlaps and leads to {1}, then {3 4} is contained.
    build_of({{1}, {1, 2}, {3, 4}, {1, 2, 3, 4}, {1, 3, 4, 5, 6}});
    EXPECT_EQ(successors({1, 3, 4, 5, 6}), (Itemsets{{1}, {3, 4}}));
}

TEST_F(LatticeBuilding, LargerClassFoundLaterReplacesItsSubset) {
    // {1} is found below {1 2}, then {1 3} on the frontier.
    build_of({{1}, {1, 2}, {1, 3}, {1, 3, 4}});
    EXPECT_EQ(successors({1, 3, 4}), (Itemsets{{1, 3}}));
}

TEST_F(LatticeBuilding, ANodeVisitedForOneClassIsExaminedAgainForTheNext) {
    build_of({{2}, {1, 2}, {2, 3}, {2, 4}});
    EXPECT_EQ(successors({2, 3}), Itemsets{{2}});
    EXPECT_EQ(successors({2, 4}), Itemsets{{2}});
}

// The empty closed itemset.

TEST_F(LatticeBuilding, EmptyItemsetIsASuccessorOfTheFirstClassOnly) {
    build_of({{}, {1}, {2}, {1, 2}});
    EXPECT_EQ(successors({1}), Itemsets{{}});
    EXPECT_EQ(successors({2}), Itemsets{});
    EXPECT_EQ(successors({1, 2}), (Itemsets{{1}, {2}}));
}

TEST_F(LatticeBuilding, EmptyItemsetIsReachedThroughAnOverlappingClass) {
    build_of({{}, {1, 2}, {2, 3}, {4, 5}});
    EXPECT_EQ(successors({1, 2}), Itemsets{{}});
    EXPECT_EQ(successors({2, 3}), Itemsets{{}});
    EXPECT_EQ(successors({4, 5}), Itemsets{});
}

TEST_F(LatticeBuilding, EmptyItemsetIsNotReachedThroughAClassWithoutCommonItems) {
    // {1 2 3} overlaps, but {1 2}, between it and the empty itemset, does not.
    build_of({{}, {1, 2}, {1, 2, 3}, {3, 4, 5}});
    EXPECT_EQ(successors({3, 4, 5}), Itemsets{});
}

TEST_F(LatticeBuilding, EmptyItemsetGivesWayToAnotherSuccessor) {
    // Found below {1 2}, then {3 4} is contained.
    build_of({{}, {1, 2}, {3, 4}, {2, 3, 4}});
    EXPECT_EQ(successors({2, 3, 4}), (Itemsets{{3, 4}}));
}

// Any family of classes.

using test::Bits;
using test::itemset_of;
using test::random_below;

/// The largest classes that are proper subsets of `whole`.
std::set<Itemset> maximal_proper_subsets(Bits whole, const std::vector<Bits>& family) {
    const auto lies_in = [](Bits inner, Bits outer) { return inner != outer && (inner & outer) == inner; };
    std::set<Itemset> result;
    for (const Bits subset : family) {
        const bool immediate = lies_in(subset, whole) && std::ranges::none_of(family, [&](Bits between) {
                                   return lies_in(subset, between) && lies_in(between, whole);
                               });
        if (immediate) {
            result.insert(itemset_of(subset));
        }
    }
    return result;
}

/// Classes of one essential itemset each, the smallest item. Most others that hold it do not hold the class.
ClassMap classes_of_family(const std::vector<Bits>& family) {
    ClassMap classes;
    for (const Bits bits : family) {
        const Itemset itemset = itemset_of(bits);
        classes[itemset].essentials = {{itemset.front()}};
    }
    return classes;
}

/// Whether the successors of all classes are the maximal proper subsets among the classes, each listed once,
/// in the order in which the plain walk finds them.
bool is_linked_well(const std::vector<Bits>& family) {
    const ClassMap map = classes_of_family(family);
    LoadedClasses classes(map);
    link_successors(classes.entries);
    if (classes.all_successors() != walked_successors(map)) {
        return false;
    }
    return std::ranges::all_of(family, [&](Bits bits) {
        const Itemsets listed = classes.successors(itemset_of(bits));
        const std::set<Itemset> expected = maximal_proper_subsets(bits, family);
        return listed.size() == expected.size() && std::set(listed.begin(), listed.end()) == expected;
    });
}

/// The family without the classes that are not needed for the failure.
std::vector<Bits> shrunk(std::vector<Bits> family) {
    for (std::size_t i = 0; i < family.size() && family.size() > 1;) {
        std::vector<Bits> smaller = family;
        smaller.erase(smaller.begin() + static_cast<std::ptrdiff_t>(i));
        if (is_linked_well(smaller)) {
            ++i;
        } else {
            family = std::move(smaller);
            i = 0;
        }
    }
    return family;
}

void expect_linked_well(const std::vector<Bits>& family) {
    if (!is_linked_well(family)) {
        std::string classes;
        for (const Bits bits : shrunk(family)) {
            classes += ' ' + testing::PrintToString(itemset_of(bits));
        }
        FAIL() << "wrong successors in the family" << classes;
    }
}

TEST(AnyFamily, OverFourItemsHasItsMaximalProperSubsetsAsSuccessors) {
    constexpr Bits itemsets_over_four = 15;
    for (Bits chosen = 1; chosen < Bits{1} << itemsets_over_four; ++chosen) {
        std::vector<Bits> family;
        for (Bits bits = 1; bits <= itemsets_over_four; ++bits) {
            if ((chosen >> (bits - 1) & 1U) != 0) {
                family.push_back(bits);
            }
        }
        ASSERT_NO_FATAL_FAILURE(expect_linked_well(family));
    }
}

TEST(AnyFamily, OverManyItemsHasItsMaximalProperSubsetsAsSuccessors) {
    constexpr unsigned seed = 20'240'601;
    std::mt19937 random(seed);
    for (int round = 0; round < 8000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const Bits items = 5 + random_below(8, random);
        const Bits draws = 1 + random_below(40, random);
        const std::set<Bits> family = test::random_family(items, draws, random);
        ASSERT_NO_FATAL_FAILURE(expect_linked_well({family.begin(), family.end()}));
    }
}

/// Classes with essential itemsets and repeated items, whose supersets are looked up by other itemsets than
/// their own.
void expect_linked_as_by_the_walk(const ClassMap& map) {
    LoadedClasses classes(map);
    link_successors(classes.entries);
    ASSERT_EQ(classes.all_successors(), walked_successors(map)) << test::class_file(map);
}

TEST(AnyClasses, WithoutSenseAreLinkedAsByTheWalk) {
    constexpr unsigned seed = 4;
    std::mt19937 random(seed);
    for (int round = 0; round < 40'000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        ASSERT_NO_FATAL_FAILURE(expect_linked_as_by_the_walk(test::contradictory_classes(random)));
    }
}

TEST(AnyClasses, OfADatabaseAreLinkedAsByTheWalk) {
    constexpr unsigned seed = 5;
    std::mt19937 random(seed);
    for (int round = 0; round < 30'000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const Itemsets transactions = test::random_transactions(7, 15, random);
        ASSERT_NO_FATAL_FAILURE(
            expect_linked_as_by_the_walk(test::some_classes(transactions, 7, 12, random)));
    }
}

}  // namespace
}  // namespace korv
