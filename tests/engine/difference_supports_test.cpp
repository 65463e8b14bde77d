#include "engine/difference_supports.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <ostream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "engine/lattice_building.h"
#include "engine/pairs.h"
#include "support/bits.h"
#include "support/loaded_classes.h"
#include "support/random_classes.h"
#include "support/recorded_supports.h"
#include "support/support_answer.h"

namespace korv {
namespace {

using Answer = test::SupportAnswer;
using test::Bits;
using test::LoadedClasses;
using test::random_below;
using test::SupportQuery;

Answer settle(Supports& supports, const SupportQuery& query) {
    SupportBounds bounds = query.bounds;
    const Count support = supports.settle(query.itemset, bounds);
    return {support, bounds.lower, bounds.upper};
}

/// The support of `itemset`; where it is 0, the bounds too.
Answer ask(const ClassMap& map, const Itemset& itemset, SupportBounds bounds = {0, 100}) {
    const LoadedClasses classes(map);
    DifferenceSupports indexes(classes.entries);
    const Answer first = settle(indexes, {itemset, bounds});
    EXPECT_EQ(settle(indexes, {itemset, bounds}), first);  // which it remembered
    return first.support == 0 ? first : Answer{first.support, 0, 0};
}

Answer known_to_be(Count support) {
    return {support, 0, 0};
}

Answer unknown_between(Count lower, Count upper) {
    return {0, lower, upper};
}

// Classes that do not contradict each other: L <= U.

TEST(ConsistentDifference, IsBoundedByTheKeysWithinAndTheClassesAround) {
    const ClassMap classes = {
        {{1}, {4, {}}}, {{2, 3}, {3, {{2}}}}, {{1, 2, 3}, {9, {{3}}}}, {{1, 2, 4}, {7, {{4}}}}};
    EXPECT_EQ(ask(classes, {1, 2}), unknown_between(4, 7));
    EXPECT_EQ(ask(classes, {1, 2}, {5, 6}), unknown_between(5, 6));
}

TEST(ConsistentDifference, IsKnownWhereTheBoundsMeet) {
    const ClassMap classes = {{{1, 2}, {3, {{1}}}}, {{1, 2, 3}, {7, {{3}}}}};
    EXPECT_EQ(ask(classes, {1}), known_to_be(3));
    EXPECT_EQ(ask(classes, {1, 3}), known_to_be(7));
}

TEST(ConsistentDifference, IsKnownWhereTheStartingBoundsAreMet) {
    const ClassMap classes = {{{1}, {4, {}}}, {{1, 2, 3}, {7, {{3}}}}};
    EXPECT_EQ(ask(classes, {1, 2}, {7, 100}), known_to_be(7));
    EXPECT_EQ(ask(classes, {1, 2}, {0, 4}), known_to_be(4));
    EXPECT_EQ(ask(classes, {1, 2}, {5, 5}), known_to_be(5));
}

// A class of less support than L is around.

TEST(ContradictedDifference, StaysUnknownWhenTheBoundsDidNotMeetBefore) {
    // 4 by {1}; 6 by {1 2 3}, then 3 by {1 2 3 4}.
    const ClassMap classes = {{{1}, {4, {}}}, {{1, 2, 3}, {6, {{3}}}}, {{1, 2, 3, 4}, {3, {{4}}}}};
    EXPECT_EQ(ask(classes, {1, 2}), unknown_between(4, 3));
    EXPECT_EQ(ask(classes, {1, 2}, {5, 100}), unknown_between(5, 3));
    EXPECT_EQ(ask(classes, {1, 2}, {0, 2}), unknown_between(4, 2));
}

TEST(ContradictedDifference, IsKnownWhenTheBoundsMetBefore) {
    const ClassMap classes = {{{1}, {4, {}}}, {{1, 2, 3}, {4, {{3}}}}, {{1, 2, 3, 4}, {3, {{4}}}}};
    EXPECT_EQ(ask(classes, {1, 2}), known_to_be(4));
}

TEST(ContradictedDifference, IsKnownWhenTheStartingBoundsWereMetBefore) {
    const ClassMap classes = {{{1}, {4, {}}}, {{1, 2, 3}, {6, {{3}}}}, {{1, 2, 3, 4}, {3, {{4}}}}};
    EXPECT_EQ(ask(classes, {1, 2}, {6, 100}), known_to_be(6));
    EXPECT_EQ(ask(classes, {1, 2}, {0, 4}), known_to_be(4));
}

TEST(ContradictedDifference, MayHaveNoClassAroundBefore) {
    const ClassMap classes = {{{1}, {4, {}}}, {{1, 2, 3}, {3, {{3}}}}};
    EXPECT_EQ(ask(classes, {1, 2}), unknown_between(4, 3));
    EXPECT_EQ(ask(classes, {1, 2}, {0, 4}), known_to_be(4));
}

TEST(ContradictedDifference, WithoutAClassAroundBeforeIsBoundedByTheStartAlone) {
    const ClassMap classes = {{{1}, {4294967294U, {}}}, {{1, 2, 3}, {3, {{3}}}}};
    EXPECT_EQ(ask(classes, {1, 2}, {0, 4294967295U}), unknown_between(4294967294U, 3));
    EXPECT_EQ(ask(classes, {1, 2}, {4294967295U, 4294967295U}), known_to_be(4294967295U));
}

TEST(ContradictedDifference, IsReplayedWhenTheKeyComesBehindTheContradiction) {
    // 2 by {5}, 3 as the upper bound by {1 2 5}; then 4 by the essential itemset {1} of {1 6 7 8}.
    const ClassMap classes = {{{5}, {2, {}}}, {{1, 2, 5}, {3, {{2}}}}, {{1, 6, 7, 8}, {4, {{1}}}}};
    EXPECT_EQ(ask(classes, {1, 5}), unknown_between(4, 3));
    EXPECT_EQ(ask(classes, {1, 5}, {3, 100}), known_to_be(3));
}

TEST(ContradictedDifference, IsReplayedWhenBoundsMetBeforeTheKey) {
    // {2} meets {1 2 5} at 3 before {1 6 7 8} says 4, and before {1 2 5 6 7} says 1.
    const ClassMap classes = {
        {{2}, {3, {}}}, {{1, 2, 5}, {3, {{5}}}}, {{1, 6, 7, 8}, {4, {{1}}}}, {{1, 2, 5, 6, 7}, {1, {{6}}}}};
    EXPECT_EQ(ask(classes, {1, 2}), known_to_be(3));
}

// The itemset is closed.

TEST(ClosedItemset, HasTheSupportOfItsClass) {
    const ClassMap classes = {{{1}, {3, {}}}, {{1, 2}, {5, {{2}}}}, {{1, 2, 3}, {7, {{3}}}}};
    EXPECT_EQ(ask(classes, {1, 2}), known_to_be(5));
    EXPECT_EQ(ask(classes, {1, 2}, {3, 7}), known_to_be(5));
}

TEST(ClosedItemset, HasItsSupportThoughALaterClassContradictsIt) {
    const ClassMap classes = {{{1}, {4, {}}}, {{1, 2}, {5, {}}}, {{1, 2, 3}, {2, {{3}}}}};
    EXPECT_EQ(ask(classes, {1, 2}), known_to_be(5));
}

TEST(ClosedItemset, HasItsSupportThoughItContradictsAnEarlierClass) {
    const ClassMap classes = {{{1}, {4, {}}}, {{1, 2}, {3, {}}}};
    EXPECT_EQ(ask(classes, {1, 2}), known_to_be(3));
}

TEST(ClosedItemset, HasItsSupportWhateverTheStartingBounds) {
    const ClassMap classes = {{{1}, {3, {}}}, {{1, 2}, {5, {}}}};
    EXPECT_EQ(ask(classes, {1, 2}, {6, 9}), known_to_be(5));
    EXPECT_EQ(ask(classes, {1, 2}, {9, 6}), known_to_be(5));
    EXPECT_EQ(ask(classes, {1, 2}, {0, 4}), known_to_be(5));
}

TEST(ClosedItemset, GivesWayToBoundsThatMetBeforeItsClass) {
    const ClassMap classes = {{{1}, {4, {}}}, {{1, 2}, {5, {}}}};
    EXPECT_EQ(ask(classes, {1, 2}, {0, 4}), known_to_be(4));
}

// A support of 0 looks like an unknown one.

TEST(SupportOf0, OfAClosedItemsetLeavesTheBoundsAsTheyWereBefore) {
    EXPECT_EQ(ask({{{1, 2}, {0, {}}}}, {1, 2}), unknown_between(0, 100));
    EXPECT_EQ(ask({{{1}, {3, {}}}, {{1, 2}, {0, {}}}}, {1, 2}), unknown_between(3, 100));
}

TEST(SupportOf0, OfAClassAroundMeetsALowerBoundOf0) {
    EXPECT_EQ(ask({{{1, 2, 3}, {0, {{3}}}}}, {1, 2}), unknown_between(0, 0));
}

TEST(SupportOf0, AsStartingBoundsEndsAfterTheFirstClass) {
    // {1} would raise the lower bound, were it not met already.
    EXPECT_EQ(ask({{{5}, {2, {}}}, {{1, 2, 3}, {4, {{1}}}}}, {1, 2}, {0, 0}), unknown_between(0, 0));
}

// Classes with an essential itemset that is empty or sticks out.

TEST(IrregularClass, BoundsByAnEssentialThatSticksOut) {
    const ClassMap classes = {{{3, 4, 5}, {7, {{1}}}}, {{1, 2, 6, 8}, {9, {}}}};
    EXPECT_EQ(ask(classes, {1, 2}), unknown_between(7, 9));
}

TEST(IrregularClass, OfLessItemsDoesNotBoundByWhatSticksOut) {
    const ClassMap classes = {{{1, 2}, {4, {{3}}}}, {{1, 3, 5, 7}, {9, {}}}};
    EXPECT_EQ(ask(classes, {1, 3, 5}), unknown_between(0, 9));
    EXPECT_EQ(ask(classes, {3}), unknown_between(4, 9));
}

TEST(IrregularClass, OfAnEmptyEssentialBoundsEveryItemsetThatIsNotLargerAndAnyThatItMeets) {
    const ClassMap classes = {{{3, 4}, {7, {{}}}}, {{1, 2, 3, 6}, {9, {}}}};
    EXPECT_EQ(ask(classes, {1, 2}), unknown_between(7, 9));
    EXPECT_EQ(ask(classes, {1, 2, 6}), unknown_between(0, 9));
    EXPECT_EQ(ask(classes, {1, 2, 3}), unknown_between(7, 9));
}

TEST(IrregularClass, ThatIsAskedForHasItsSupport) {
    const ClassMap classes = {{{1}, {2, {}}}, {{1, 2}, {5, {{1}, {3}}}}, {{1, 2, 3}, {7, {}}}};
    EXPECT_EQ(ask(classes, {1, 2}), known_to_be(5));
}

TEST(IrregularClass, MayBringTheContradiction) {
    // 7 by the empty essential itemset of {4}, after that 5 around.
    const ClassMap classes = {{{4}, {7, {{}}}}, {{1, 2}, {5, {{1}}}}};
    EXPECT_EQ(ask(classes, {1}), unknown_between(7, 5));
    EXPECT_EQ(ask(classes, {1}, {0, 7}), known_to_be(7));
}

// Starting bounds that the classes contradict.

TEST(ContradictoryStart, OfEqualBoundsIsReturnedAfterAFirstClassThatMovesNeither) {
    const ClassMap classes = {{{1}, {1, {}}}, {{8}, {8, {}}}, {{8, 9, 10}, {20, {}}}};
    EXPECT_EQ(ask(classes, {8, 9}, {5, 5}), known_to_be(5));
}

TEST(ContradictoryStart, OfEqualBoundsGivesWayToTheFirstClass) {
    const ClassMap classes = {{{1}, {8, {}}}, {{2}, {1, {}}}, {{1, 2, 3}, {9, {}}}};
    EXPECT_EQ(ask(classes, {1, 2}, {5, 5}), unknown_between(8, 5));
}

TEST(ContradictoryStart, AboveTheClassesAroundCrosses) {
    const ClassMap classes = {{{1}, {4, {}}}, {{1, 2, 3}, {7, {}}}};
    EXPECT_EQ(ask(classes, {1, 2}, {9, 20}), unknown_between(9, 7));
}

TEST(ContradictoryStart, BelowTheKeysWithinCrosses) {
    const ClassMap classes = {{{1}, {4, {}}}, {{1, 2, 3}, {7, {}}}};
    EXPECT_EQ(ask(classes, {1, 2}, {0, 3}), unknown_between(4, 3));
}

TEST(ContradictoryStart, OfCrossedBoundsNeverMeets) {
    // The class of 9 is around, but 9 is not less than 7.
    const ClassMap classes = {{{1, 2, 3}, {4, {{3}}}}, {{1, 2, 4}, {9, {{4}}}}};
    EXPECT_EQ(ask(classes, {1, 2}, {9, 7}), unknown_between(9, 4));
}

TEST(ContradictoryStart, IsMetAtTheFirstClassThatReachesIt) {
    // {1} raises the lower bound to the 5 of the start; {2} would raise it to 6.
    const ClassMap classes = {{{1}, {5, {}}}, {{2}, {6, {}}}, {{1, 2, 3}, {9, {}}}};
    EXPECT_EQ(ask(classes, {1, 2}, {0, 5}), known_to_be(5));
}

// The walk itself decides.

TEST(ContradictedClasses, AreThoseAroundAKeyOfAnotherClassOfNoLessSupport) {
    test::LoadedClasses classes("1\t5\t 1,\n1 2\t5\t 1 2,\n1 3\t6\t 3,\n3 4\t6\t 4,\n2 3\t5\t 2,\n");
    DifferenceSupports supports(classes.entries);

    // 1 is within 1 2; 3, which is that of 1 3, within 3 4 and 2 3; 2, which is that of 2 3, within 1 2.
    EXPECT_EQ(supports.contradicted_classes(),
              (std::vector<NodeRef>{classes.node({1, 2}), classes.node({2, 3}), classes.node({3, 4})}));
}

TEST(ContradictedClasses, AreNoneInADatabase) {
    // Of the transactions 1 2, 2 and 3.
    test::LoadedClasses classes("1\t1\t 1,\n1 2\t2\t 2,\n3\t1\t 3,\n1 3\t2\t 1 3,\n1 2 3\t3\t 2 3,\n");
    DifferenceSupports supports(classes.entries);

    EXPECT_TRUE(supports.contradicted_classes().empty());
}

TEST(EmptyItemset, IsBoundedByAllClasses) {
    EXPECT_EQ(ask({{{1}, {4, {}}}, {{2}, {3, {}}}, {{1, 2}, {6, {{1}}}}}, {}), unknown_between(0, 3));
}

TEST(EmptyItemset, ThatIsClosedIsWithinAllOthers) {
    const ClassMap classes = {{{}, {2, {}}}, {{1, 2}, {7, {}}}};
    EXPECT_EQ(ask(classes, {}), known_to_be(2));
    EXPECT_EQ(ask(classes, {1}), unknown_between(2, 7));
}

// Whatever the classes, the answer is that of the walk.

/// The answer as far as it is to be compared: bounds count only where no support is found.
Answer comparable(const Answer& answer) {
    return answer.support == 0 ? answer : Answer{answer.support, 0, 0};
}

bool is_answered_as_walked(const ClassMap& map, const SupportQuery& query) {
    const LoadedClasses classes(map);
    DifferenceSupports indexes(classes.entries);
    SupportWalk walk(classes.entries);
    return comparable(settle(indexes, query)) == comparable(settle(walk, query));
}

/// The classes without those that are not needed for a wrong answer.
ClassMap shrunk(ClassMap map, const SupportQuery& query) {
    const auto lies_within_a_class = [&query](const ClassMap& classes) {
        return std::ranges::any_of(classes,
                                   [&](const auto& each) { return is_contained(query.itemset, each.first); });
    };
    for (auto each = map.begin(); each != map.end();) {
        ClassMap smaller = map;
        smaller.erase(each->first);
        if (!lies_within_a_class(smaller) || is_answered_as_walked(smaller, query)) {
            ++each;
        } else {
            map = std::move(smaller);
            each = map.begin();
        }
    }
    return map;
}

/// The queries of a run over the classes.
std::vector<SupportQuery> queries_of_run(LoadedClasses& classes) {
    class NoPairs final : public PairSink {
        void add(const Pair& /*pair*/) override {}
    };
    link_successors(classes.entries);
    SupportWalk walk(classes.entries);
    test::RecordedSupports supports(walk);
    NoPairs ignored;
    for_each_pair(classes.classes, classes.entries, supports, ignored);
    return supports.queries;
}

/// A part of a class, and any bounds: crossed, equal, 0.
SupportQuery random_query(const LatticeEntries& entries, std::mt19937& random) {
    const Itemset& whole = entries[random() % entries.size()].itemset();
    const Bits keeping = 1 + random_below(8, random);
    Itemset part;
    std::ranges::copy_if(whole, std::back_inserter(part),
                         [&](Item) { return random_below(8, random) < keeping; });
    const auto any = [&] {
        return random_below(4, random) == 0 ? entries[random() % entries.size()].support()
                                            : random_below(16, random);
    };
    switch (random_below(4, random)) {
        case 0:
            return {part, {0, any()}};
        case 1: {
            const Count both = any();
            return {part, {both, both}};
        }
        default:
            return {part, {any(), any()}};
    }
}

void expect_as_walked(const ClassMap& map, int random_queries, std::mt19937& random) {
    if (map.empty()) {
        return;
    }
    LoadedClasses classes(map);
    std::vector<SupportQuery> queries = queries_of_run(classes);
    for (; random_queries > 0; --random_queries) {
        queries.push_back(random_query(classes.entries, random));
    }
    DifferenceSupports indexes(classes.entries);
    SupportWalk walk(classes.entries);
    for (const SupportQuery& query : queries) {
        const Answer answer = comparable(settle(indexes, query));
        const Answer walked = comparable(settle(walk, query));
        ASSERT_EQ(answer, walked) << testing::PrintToString(query.itemset) << " from " << query.bounds.lower
                                  << " to " << query.bounds.upper << " over\n"
                                  << (map.size() < 100 ? test::class_file(shrunk(map, query))
                                                       : "(too many to print)");
    }
}

/// Some or nearly all classes of a small database.
ClassMap consistent_classes(std::mt19937& random) {
    const Item items = 4 + random_below(4, random);
    const std::vector<Itemset> transactions = test::random_transactions(items, 12, random);
    return test::some_classes(transactions, items, 3 + random_below(15, random), random);
}

data& any_class(ClassMap& classes, std::mt19937& random) {
    return std::next(classes.begin(), static_cast<std::ptrdiff_t>(random() % classes.size()))->second;
}

/// Gives a class another support: too low, too high, 0, that of another class, or any.
void change_a_support(ClassMap& classes, std::mt19937& random) {
    Count& support = any_class(classes, random).support;
    switch (random_below(5, random)) {
        case 0:
            support -= std::min(support, 1 + random_below(3, random));
            break;
        case 1:
            support += 1 + random_below(3, random);
            break;
        case 2:
            support = 0;
            break;
        case 3:
            support = any_class(classes, random).support;
            break;
        default:
            support = random_below(16, random);
    }
}

/// Gives a class an essential itemset that sticks out, is empty, or is any itemset.
void add_a_wrong_essential(ClassMap& classes, std::mt19937& random) {
    Itemset essential;
    switch (random_below(3, random)) {
        case 0:
            break;
        case 1:
            essential = {9};
            break;
        default:
            essential = test::itemset_of(random_below(256, random));
    }
    any_class(classes, random).essentials.push_back(essential);
}

/// Repeats an item of a class.
void repeat_an_item(ClassMap& classes, std::mt19937& random) {
    const auto old = std::next(classes.begin(), static_cast<std::ptrdiff_t>(random() % classes.size()));
    Itemset itemset = old->first;
    itemset.push_back(itemset[random() % itemset.size()]);
    std::ranges::sort(itemset);
    const data of_class = old->second;
    classes.erase(old);
    classes.insert_or_assign(itemset, of_class);
}

/// How many faults a family of classes gets.
struct Faults {
    std::string name;
    Bits changed_supports;
    Bits wrong_essentials;
    Bits repeated_items;
    int families;
};

void PrintTo(const Faults& faults, std::ostream* out) {
    *out << faults.name;
}

class ClassesWithFaults : public ::testing::TestWithParam<Faults> {};

TEST_P(ClassesWithFaults, AreAnsweredAsWalked) {
    constexpr std::uint32_t seed = 7;
    std::mt19937 random(seed);
    const Faults& faults = GetParam();
    for (int round = 0; round < faults.families; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        ClassMap classes = consistent_classes(random);
        for (Bits fault = 0; fault < faults.changed_supports && !classes.empty(); ++fault) {
            change_a_support(classes, random);
        }
        for (Bits fault = 0; fault < faults.wrong_essentials && !classes.empty(); ++fault) {
            add_a_wrong_essential(classes, random);
        }
        for (Bits fault = 0; fault < faults.repeated_items && !classes.empty(); ++fault) {
            repeat_an_item(classes, random);
        }
        ASSERT_NO_FATAL_FAILURE(expect_as_walked(classes, 6, random));
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, ClassesWithFaults,
    ::testing::Values(Faults{"None", 0, 0, 0, 15'000}, Faults{"OneSupport", 1, 0, 0, 25'000},
                      Faults{"TwoSupports", 2, 0, 0, 25'000}, Faults{"ManySupports", 8, 0, 0, 15'000},
                      Faults{"Essentials", 0, 2, 0, 10'000}, Faults{"SupportsAndEssentials", 2, 1, 0, 10'000},
                      Faults{"RepeatedItems", 0, 0, 2, 10'000},
                      Faults{"SupportsAndRepeatedItems", 2, 0, 2, 10'000}),
    [](const auto& instance) { return instance.param.name; });

TEST(ClassesWithoutSense, AreAnsweredAsWalked) {
    constexpr std::uint32_t seed = 1;
    std::mt19937 random(seed);
    for (int round = 0; round < 30'000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        ASSERT_NO_FATAL_FAILURE(expect_as_walked(test::contradictory_classes(random), 12, random));
    }
}

TEST(ManyClasses, AreAnsweredAsWalked) {
    constexpr std::uint32_t seed = 3;
    std::mt19937 random(seed);
    for (int round = 0; round < 4; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const std::vector<Itemset> transactions = test::random_transactions(14, 200, random);
        ClassMap classes = test::some_classes(transactions, 14, 2000, random);
        ASSERT_GT(classes.size(), 600U);  // many words of a bitmap
        for (int fault = 0; fault < round; ++fault) {
            change_a_support(classes, random);
        }
        ASSERT_NO_FATAL_FAILURE(expect_as_walked(classes, 2000, random));
    }
}

TEST(ClassesOfManyItems, AreAnsweredAsWalked) {
    std::mt19937 random(4);
    const ClassMap classes = test::sparse_classes(4500, 700, random);
    ASSERT_NO_FATAL_FAILURE(expect_as_walked(classes, 4000, random));
}

}  // namespace
}  // namespace korv
