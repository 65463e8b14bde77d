#include "engine/pairs.h"

#include <gtest/gtest.h>

#include <array>
#include <ostream>
#include <string>
#include <vector>

#include "engine/lattice_building.h"
#include "engine/support_walk.h"
#include "support/loaded_classes.h"
#include "support/recorded_supports.h"

namespace korv {

void PrintTo(PairKind kind, std::ostream* out) {
    constexpr std::array names = {"essential and rest", "essential of successor", "successor"};
    *out << names.at(static_cast<std::size_t>(kind));
}

namespace {

using test::LoadedClasses;
using enum PairKind;

/// A pair with its itemsets.
struct FoundPair {
    PairKind kind;
    Itemset closed_itemset;  ///< of its node
    Itemset base;
    Itemset difference;
    Count support;
    Count base_support;
    SupportBounds difference_support;
    bool is_known;

    bool operator==(const FoundPair&) const = default;
};

void PrintTo(const FoundPair& pair, std::ostream* out) {
    *out << testing::PrintToString(pair.kind) << ' ' << testing::PrintToString(pair.base) << " and "
         << testing::PrintToString(pair.difference) << " of " << testing::PrintToString(pair.closed_itemset)
         << ": " << pair.support << ", " << pair.base_support << ", " << pair.difference_support.lower
         << " to " << pair.difference_support.upper << (pair.is_known ? ", known" : "");
}

using FoundPairs = std::vector<FoundPair>;

class PairCollector final : public PairSink {
public:
    void add(const Pair& pair) override {
        pairs.push_back({pair.kind, pair.node->first, pair.base, pair.difference, pair.support,
                         pair.base_support, pair.difference_support, pair.is_known});
    }

    FoundPairs pairs;
};

/// What `find` takes from the stream of pairs over `classes`.
template <typename Find>
FoundPairs pairs_by(const LoadedClasses& classes, Find find) {
    SupportWalk walk(classes.entries);
    PairCollector collector;
    Pairs pairs(walk, collector);
    find(pairs);
    return collector.pairs;
}

// Within a node: e1 and f1-e1.

FoundPairs pairs_of_essential(const std::string& class_file, const Itemset& whole, const Itemset& essential) {
    const LoadedClasses classes(class_file);
    return pairs_by(classes, [&](Pairs& pairs) { pairs.intra_node(classes.node(whole), essential); });
}

TEST(IntraNodePair, OfAClosedRestHasItsSupport) {
    EXPECT_EQ(pairs_of_essential("2 3\t45\t 2 3,\n1 2 3\t60\t 1,\n", {1, 2, 3}, {1}),
              (FoundPairs{{essential_and_rest, {1, 2, 3}, {1}, {2, 3}, 60, 60, {45, 45}, true}}));
}

TEST(IntraNodePair, OfAnUnknownRestHasNarrowedBounds) {
    // {2 3}: at least the 30 of {2}, at most the 55 of {2 3 4}.
    EXPECT_EQ(pairs_of_essential("2\t30\t 2,\n1 2 3\t60\t 1,\n2 3 4\t55\t 2 3 4,\n", {1, 2, 3}, {1}),
              (FoundPairs{{essential_and_rest, {1, 2, 3}, {1}, {2, 3}, 60, 60, {30, 55}, false}}));
}

TEST(IntraNodePair, OfARestOfWhichNothingIsKnownHasBoundsFrom0ToTheSupportOfTheNode) {
    EXPECT_EQ(pairs_of_essential("1 2\t60\t 1,\n", {1, 2}, {1}),
              (FoundPairs{{essential_and_rest, {1, 2}, {1}, {2}, 60, 60, {0, 60}, false}}));
}

TEST(IntraNodePair, OfARestOfSupport0IsUnknown) {
    // {2} is closed and in no transaction, which looks like an unknown support.
    EXPECT_EQ(pairs_of_essential("2\t0\t 2,\n1 2\t60\t 1,\n", {1, 2}, {1}),
              (FoundPairs{{essential_and_rest, {1, 2}, {1}, {2}, 60, 60, {0, 60}, false}}));
}

TEST(IntraNodePair, OfAnEssentialEqualToItsItemsetHasAnEmptyRest) {
    // At most the 20 of {3}, the least frequent class.
    EXPECT_EQ(pairs_of_essential("3\t20\t 3,\n1 2\t60\t 1 2,\n", {1, 2}, {1, 2}),
              (FoundPairs{{essential_and_rest, {1, 2}, {1, 2}, {}, 60, 60, {0, 20}, false}}));
}

TEST(IntraNodePair, OfAnEmptyRestMayBeKnown) {
    // The empty essential itemset of {3} says that the empty itemset is as frequent as {3}.
    EXPECT_EQ(pairs_of_essential("3\t20\t ,\n1 2\t60\t 1 2,\n", {1, 2}, {1, 2}),
              (FoundPairs{{essential_and_rest, {1, 2}, {1, 2}, {}, 60, 60, {20, 20}, true}}));
}

FoundPairs pairs_of_two_essentials(const LoadedClasses& classes, const Itemset& whole) {
    return pairs_by(classes, [&](Pairs& pairs) { pairs.intra_node_of_two_essentials(classes.node(whole)); });
}

FoundPairs pairs_of_two_essentials(const std::string& class_file, const Itemset& whole) {
    return pairs_of_two_essentials(LoadedClasses(class_file), whole);
}

TEST(PairsOfTwoEssentials, ThatPartitionTheirItemsetAreThatOfTheFirst) {
    EXPECT_EQ(pairs_of_two_essentials("1 2 3\t60\t 1, 2 3,\n", {1, 2, 3}),
              (FoundPairs{{essential_and_rest, {1, 2, 3}, {1}, {2, 3}, 60, 60, {60, 60}, true}}));
}

TEST(PairsOfTwoEssentials, ThatPartitionHaveTheSupportOfTheNodeWhateverTheClassesSay) {
    // In this damaged file {2 3} has a class of its own, of another support.
    EXPECT_EQ(pairs_of_two_essentials("2 3\t45\t 2 3,\n1 2 3\t60\t 1, 2 3,\n", {1, 2, 3}),
              (FoundPairs{{essential_and_rest, {1, 2, 3}, {1}, {2, 3}, 60, 60, {60, 60}, true}}));
}

TEST(PairsOfTwoEssentials, ThatPartitionANodeOfSupport0AreKnownToHaveIt) {
    EXPECT_EQ(pairs_of_two_essentials("1 2\t0\t 1, 2,\n", {1, 2}),
              (FoundPairs{{essential_and_rest, {1, 2}, {1}, {2}, 0, 0, {0, 0}, true}}));
}

TEST(PairsOfTwoEssentials, ThatDoNotPartitionAreThoseOfEach) {
    EXPECT_EQ(pairs_of_two_essentials("1\t20\t 1,\n3\t30\t 3,\n1 2 3\t60\t 1 2, 2 3,\n", {1, 2, 3}),
              (FoundPairs{{essential_and_rest, {1, 2, 3}, {1, 2}, {3}, 60, 60, {30, 30}, true},
                          {essential_and_rest, {1, 2, 3}, {2, 3}, {1}, 60, 60, {20, 20}, true}}));
}

TEST(PairsOfTwoEssentials, OfWhichTheSecondIsAsLargeAsTheRestNeedNotPartition) {
    EXPECT_EQ(pairs_of_two_essentials("1 2 3\t60\t 1 2, 1,\n", {1, 2, 3}),
              (FoundPairs{{essential_and_rest, {1, 2, 3}, {1, 2}, {3}, 60, 60, {0, 60}, false},
                          {essential_and_rest, {1, 2, 3}, {1}, {2, 3}, 60, 60, {0, 60}, false}}));
}

TEST(PairsOfTwoEssentials, TakeAnEmptySecondOneForAnEmptyRest) {
    const LoadedClasses classes(ClassMap{{{1}, {60, {{1}, {}}}}});
    EXPECT_EQ(pairs_of_two_essentials(classes, {1}),
              (FoundPairs{{essential_and_rest, {1}, {1}, {}, 60, 60, {60, 60}, true}}));
}

FoundPairs intra_node_pairs(const std::string& class_file) {
    const LoadedClasses classes(class_file);
    return pairs_by(classes, [&](Pairs& pairs) { pairs.intra_node(classes.classes); });
}

TEST(IntraNodePairs, OfANodeWithoutEssentialsAreNone) {
    EXPECT_EQ(intra_node_pairs("1 2\t60\t 1 2,\n"), FoundPairs{});
}

TEST(IntraNodePairs, OfANodeWithOneEssentialAreOne) {
    EXPECT_EQ(intra_node_pairs("1 2\t60\t 1,\n"),
              (FoundPairs{{essential_and_rest, {1, 2}, {1}, {2}, 60, 60, {0, 60}, false}}));
}

TEST(IntraNodePairs, OfANodeWithTwoEssentialsAreTestedForAPartition) {
    EXPECT_EQ(intra_node_pairs("1 2\t60\t 1, 2,\n"),
              (FoundPairs{{essential_and_rest, {1, 2}, {1}, {2}, 60, 60, {60, 60}, true}}));
}

TEST(IntraNodePairs, OfANodeWithThreeEssentialsAreThoseOfEachInListOrder) {
    // Though the first two partition {1 2 3}.
    EXPECT_EQ(intra_node_pairs("1 2 3\t60\t 1 2, 3, 2 3,\n"),
              (FoundPairs{{essential_and_rest, {1, 2, 3}, {1, 2}, {3}, 60, 60, {60, 60}, true},
                          {essential_and_rest, {1, 2, 3}, {3}, {1, 2}, 60, 60, {60, 60}, true},
                          {essential_and_rest, {1, 2, 3}, {2, 3}, {1}, 60, 60, {0, 60}, false}}));
}

TEST(IntraNodePairs, ComeInTheOrderOfTheItemsets) {
    // Neither in the order of the file nor in that of the sizes.
    EXPECT_EQ(intra_node_pairs("2 4\t60\t 4,\n1 3\t70\t 3,\n1 2 5\t80\t 5,\n"),
              (FoundPairs{{essential_and_rest, {1, 2, 5}, {5}, {1, 2}, 80, 80, {0, 80}, false},
                          {essential_and_rest, {1, 3}, {3}, {1}, 70, 70, {0, 70}, false},
                          {essential_and_rest, {2, 4}, {4}, {2}, 60, 60, {0, 60}, false}}));
}

// Between a node and its successor: f1 and f2-f1.

FoundPairs pairs_of_successor(const std::string& class_file, const Itemset& whole, const Itemset& below) {
    const LoadedClasses classes(class_file);
    return pairs_by(classes,
                    [&](Pairs& pairs) { pairs.successor(classes.node(whole), classes.node(below)); });
}

TEST(PairOfASuccessor, WithAClosedDifferenceHasItsSupport) {
    EXPECT_EQ(pairs_of_successor("1\t50\t 1,\n2\t40\t 2,\n1 2\t80\t 1 2,\n", {1, 2}, {1}),
              (FoundPairs{{successor, {1, 2}, {1}, {2}, 80, 50, {40, 40}, true}}));
}

TEST(PairOfASuccessor, HasBoundsFromTheRiseToTheSupportOfTheNode) {
    EXPECT_EQ(pairs_of_successor("1 2\t50\t 1 2,\n1 2 3\t80\t 1 2 3,\n", {1, 2, 3}, {1, 2}),
              (FoundPairs{{successor, {1, 2, 3}, {1, 2}, {3}, 80, 50, {30, 80}, false}}));
}

TEST(PairOfASuccessor, HasNarrowedBounds) {
    // {2 3}: at least the 35 of {2}, at most the 64 of {2 3 4}.
    EXPECT_EQ(pairs_of_successor("1\t50\t 1,\n2\t35\t 2,\n1 2 3\t80\t 1 2 3,\n2 3 4\t64\t 2 3 4,\n",
                                 {1, 2, 3}, {1}),
              (FoundPairs{{successor, {1, 2, 3}, {1}, {2, 3}, 80, 50, {35, 64}, false}}));
}

TEST(PairOfASuccessor, WithADifferenceOfSupport0IsUnknown) {
    EXPECT_EQ(pairs_of_successor("1\t50\t 1,\n2\t0\t 2,\n1 2\t80\t 1 2,\n", {1, 2}, {1}),
              (FoundPairs{{successor, {1, 2}, {1}, {2}, 80, 50, {30, 80}, false}}));
}

TEST(PairOfASuccessor, MoreFrequentThanTheNodeHasALowerBoundThatWraps) {
    // 30 - 50
    EXPECT_EQ(pairs_of_successor("1\t50\t 1,\n1 2\t30\t 1 2,\n", {1, 2}, {1}),
              (FoundPairs{{successor, {1, 2}, {1}, {2}, 30, 50, {4294967276U, 30}, false}}));
}

// Between a node and the essential itemsets of its successor: e1 and f2-e1.

FoundPairs pairs_of_essentials(const std::string& class_file, const Itemset& whole, const Itemset& below) {
    const LoadedClasses classes(class_file);
    return pairs_by(classes, [&](Pairs& pairs) {
        pairs.essentials_of_successor(classes.node(whole), classes.node(below));
    });
}

TEST(PairsOfEssentialsOfASuccessor, ComeInListOrder) {
    // {1 3} and {2 3}: at least 50 by an essential itemset, at most 80.
    EXPECT_EQ(pairs_of_essentials("1 2\t50\t 2, 1,\n1 2 3\t80\t 1 2 3,\n", {1, 2, 3}, {1, 2}),
              (FoundPairs{{essential_of_successor, {1, 2, 3}, {2}, {1, 3}, 80, 50, {50, 80}, false},
                          {essential_of_successor, {1, 2, 3}, {1}, {2, 3}, 80, 50, {50, 80}, false}}));
}

TEST(PairsOfEssentialsOfASuccessor, WithAClosedDifferenceHaveItsSupport) {
    EXPECT_EQ(pairs_of_essentials("1 2\t50\t 1,\n2 3\t40\t 2 3,\n1 2 3\t80\t 1 2 3,\n", {1, 2, 3}, {1, 2}),
              (FoundPairs{{essential_of_successor, {1, 2, 3}, {1}, {2, 3}, 80, 50, {40, 40}, true}}));
}

TEST(PairsOfEssentialsOfASuccessor, HaveBoundsFromTheRiseToTheSupportOfTheNode) {
    EXPECT_EQ(pairs_of_essentials("1 2\t50\t 1,\n1 2 3\t80\t 1 2 3,\n", {1, 2, 3}, {1, 2}),
              (FoundPairs{{essential_of_successor, {1, 2, 3}, {1}, {2, 3}, 80, 50, {30, 80}, false}}));
}

TEST(PairsOfEssentialsOfASuccessor, AreNoneOfTheEssentialsOfTheNode) {
    EXPECT_EQ(pairs_of_essentials("1\t50\t 1,\n1 2\t80\t 2,\n", {1, 2}, {1}), FoundPairs{});
}

// An entry and its two successors.

FoundPairs pairs_of_two_successors(const std::string& class_file, const Itemset& whole) {
    LoadedClasses classes(class_file);
    link_successors(classes.entries);
    return pairs_by(classes, [&](Pairs& pairs) { pairs.inter_node_of_two_successors(classes.entry(whole)); });
}

TEST(PairsOfTwoSuccessors, ThatPartitionAreThatOfTheFirst) {
    EXPECT_EQ(pairs_of_two_successors("1\t30\t 1,\n2\t40\t 2,\n1 2\t60\t 1 2,\n", {1, 2}),
              (FoundPairs{{successor, {1, 2}, {1}, {2}, 60, 30, {40, 40}, true}}));
}

TEST(PairsOfTwoSuccessors, ThatPartitionAreFollowedByThoseOfAllTheirEssentials) {
    // {2 3 4}: at least the 40 of {3}; {1 2 4}: at least the 30 of {1}.
    EXPECT_EQ(pairs_of_two_successors("1 2\t30\t 1,\n3 4\t40\t 3,\n1 2 3 4\t60\t 1 2 3 4,\n", {1, 2, 3, 4}),
              (FoundPairs{{successor, {1, 2, 3, 4}, {1, 2}, {3, 4}, 60, 30, {40, 40}, true},
                          {essential_of_successor, {1, 2, 3, 4}, {1}, {2, 3, 4}, 60, 30, {40, 60}, false},
                          {essential_of_successor, {1, 2, 3, 4}, {3}, {1, 2, 4}, 60, 40, {30, 60}, false}}));
}

TEST(PairsOfTwoSuccessors, ThatPartitionHaveTheSupportOfTheSecondWhateverTheClassesSay) {
    // In this damaged file {3} alone is as frequent as {1 2 3 4}.
    EXPECT_EQ(pairs_of_two_successors("1 2\t30\t 1 2,\n3\t60\t 3,\n3 4\t40\t 3 4,\n1 2 3 4\t60\t 1 2 3 4,\n",
                                      {1, 2, 3, 4}),
              (FoundPairs{{successor, {1, 2, 3, 4}, {1, 2}, {3, 4}, 60, 30, {40, 40}, true}}));
}

TEST(PairsOfTwoSuccessors, ThatPartitionWithASecondOfSupport0AreKnown) {
    EXPECT_EQ(pairs_of_two_successors("1\t30\t 1,\n2\t0\t 2,\n1 2\t30\t 1 2,\n", {1, 2}),
              (FoundPairs{{successor, {1, 2}, {1}, {2}, 30, 30, {0, 0}, true}}));
}

TEST(PairsOfTwoSuccessors, ThatOverlapAreThoseOfEachWithItsEssentials) {
    EXPECT_EQ(pairs_of_two_successors("1 2\t50\t 1,\n2 3\t60\t 3,\n1 2 3\t80\t 1 2 3,\n", {1, 2, 3}),
              (FoundPairs{{successor, {1, 2, 3}, {1, 2}, {3}, 80, 50, {60, 60}, true},
                          {essential_of_successor, {1, 2, 3}, {1}, {2, 3}, 80, 50, {60, 60}, true},
                          {successor, {1, 2, 3}, {2, 3}, {1}, 80, 60, {50, 50}, true},
                          {essential_of_successor, {1, 2, 3}, {3}, {1, 2}, 80, 60, {50, 50}, true}}));
}

TEST(PairsOfTwoSuccessors, ThatLeaveAnItemAreThoseOfEach) {
    EXPECT_EQ(pairs_of_two_successors("1\t30\t 1,\n2\t40\t 2,\n1 2 3\t80\t 1 2 3,\n", {1, 2, 3}),
              (FoundPairs{{successor, {1, 2, 3}, {1}, {2, 3}, 80, 30, {50, 80}, false},
                          {successor, {1, 2, 3}, {2}, {1, 3}, 80, 40, {40, 80}, false}}));
}

FoundPairs inter_node_pairs(const std::string& class_file) {
    LoadedClasses classes(class_file);
    link_successors(classes.entries);
    return pairs_by(classes, [&](Pairs& pairs) { pairs.inter_node(classes.entries); });
}

TEST(InterNodePairs, OfEntriesWithoutSuccessorsAreNone) {
    EXPECT_EQ(inter_node_pairs("1 2\t30\t 1, 2,\n3\t40\t 3,\n"), FoundPairs{});
}

TEST(InterNodePairs, OfOneSuccessorComeBeforeThoseOfItsEssentials) {
    EXPECT_EQ(inter_node_pairs("1 2\t50\t 1, 2,\n1 2 3\t80\t 1 2 3,\n"),
              (FoundPairs{{successor, {1, 2, 3}, {1, 2}, {3}, 80, 50, {30, 80}, false},
                          {essential_of_successor, {1, 2, 3}, {1}, {2, 3}, 80, 50, {50, 80}, false},
                          {essential_of_successor, {1, 2, 3}, {2}, {1, 3}, 80, 50, {50, 80}, false}}));
}

TEST(InterNodePairs, OfTwoSuccessorsAreTestedForAPartition) {
    EXPECT_EQ(inter_node_pairs("1\t30\t 1,\n2\t40\t 2,\n1 2\t60\t 1 2,\n"),
              (FoundPairs{{successor, {1, 2}, {1}, {2}, 60, 30, {40, 40}, true}}));
}

TEST(InterNodePairs, OfThreeSuccessorsAreThoseOfEachInListOrder) {
    // Though {1 2} and {3 4} partition {1 2 3 4}. {1 4}, the difference to {2 3}, is at least the 35 of {1}.
    EXPECT_EQ(inter_node_pairs("1 2\t50\t 1,\n2 3\t55\t 2 3,\n3 4\t60\t 3 4,\n1 2 3 4\t80\t 1 2 3 4,\n"),
              (FoundPairs{{successor, {1, 2, 3, 4}, {1, 2}, {3, 4}, 80, 50, {60, 60}, true},
                          {essential_of_successor, {1, 2, 3, 4}, {1}, {2, 3, 4}, 80, 50, {60, 80}, false},
                          {successor, {1, 2, 3, 4}, {2, 3}, {1, 4}, 80, 55, {50, 80}, false},
                          {successor, {1, 2, 3, 4}, {3, 4}, {1, 2}, 80, 60, {50, 50}, true}}));
}

TEST(InterNodePairs, ComeInTheOrderOfTheEntries) {
    // {1 2 3} comes first in the file and among the itemsets, but is larger than {4 5}.
    EXPECT_EQ(inter_node_pairs("1 2 3\t80\t 1 2 3,\n1\t30\t 1,\n4\t40\t 4,\n4 5\t80\t 4 5,\n"),
              (FoundPairs{{successor, {4, 5}, {4}, {5}, 80, 40, {40, 80}, false},
                          {successor, {1, 2, 3}, {1}, {2, 3}, 80, 30, {50, 80}, false}}));
}

// All of them.

TEST(ForEachPair, TakesThoseWithinTheNodesThenThoseBetweenThem) {
    LoadedClasses classes("1 2\t50\t 1,\n1 2 3\t80\t 2,\n");
    link_successors(classes.entries);
    SupportWalk walk(classes.entries);
    PairCollector collector;
    for_each_pair(classes.classes, classes.entries, walk, collector);
    // {2} is at least the 80 that {1 2 3} has by it, at most the 50 of {1 2}.
    EXPECT_EQ(collector.pairs,
              (FoundPairs{{essential_and_rest, {1, 2}, {1}, {2}, 50, 50, {80, 50}, false},
                          {essential_and_rest, {1, 2, 3}, {2}, {1, 3}, 80, 80, {50, 80}, false},
                          {successor, {1, 2, 3}, {1, 2}, {3}, 80, 50, {30, 80}, false},
                          {essential_of_successor, {1, 2, 3}, {1}, {2, 3}, 80, 50, {80, 80}, true}}));
}

TEST(PairsOfAClass, AreThoseWithinItsNodeThenThoseBetweenItAndItsSuccessors) {
    LoadedClasses classes("1 2\t50\t 1,\n1 2 3\t80\t 2,\n");
    link_successors(classes.entries);
    SupportWalk walk(classes.entries);
    PairCollector collector;
    Pairs(walk, collector).of_class(classes.entries.back());
    // Of this class alone; {2} and {3} are within no class of which they are a part.
    EXPECT_EQ(collector.pairs,
              (FoundPairs{{essential_and_rest, {1, 2, 3}, {2}, {1, 3}, 80, 80, {50, 80}, false},
                          {successor, {1, 2, 3}, {1, 2}, {3}, 80, 50, {30, 80}, false},
                          {essential_of_successor, {1, 2, 3}, {1}, {2, 3}, 80, 50, {80, 80}, true}}));
}

/// The closed itemsets of the classes of the bases, pair by pair.
class BaseClasses final : public PairSink {
public:
    void add(const Pair& pair) override { closed_itemsets.push_back(pair.base_node->first); }

    std::vector<Itemset> closed_itemsets;
};

TEST(ForEachPair, NamesTheClassOfTheBase) {
    // {1 2} is partitioned by its essential itemsets, {1 2 3 4} by its successors.
    LoadedClasses classes("1 2\t50\t 1, 2,\n3 4\t60\t 3 4,\n1 2 3 4\t80\t 1 3,\n");
    link_successors(classes.entries);
    SupportWalk walk(classes.entries);
    BaseClasses bases;
    for_each_pair(classes.classes, classes.entries, walk, bases);
    EXPECT_EQ(bases.closed_itemsets, (std::vector<Itemset>{{1, 2}, {1, 2, 3, 4}, {1, 2}, {1, 2}, {1, 2}}));
}

TEST(ForEachPair, AsksForEachSupportOnceAndForNoneOfAPartition) {
    LoadedClasses classes("1\t30\t 1,\n2\t40\t 2,\n1 2\t50\t 1, 2,\n1 2 3\t80\t 2,\n");
    link_successors(classes.entries);
    SupportWalk walk(classes.entries);
    test::RecordedSupports supports(walk);
    PairCollector collector;
    for_each_pair(classes.classes, classes.entries, supports, collector);
    // Within {1 2 3}; then {1 2 3} with {1 2} and its essential itemsets.
    EXPECT_EQ(supports.queries,
              (std::vector<test::SupportQuery>{
                  {{1, 3}, {0, 80}}, {{3}, {30, 80}}, {{2, 3}, {30, 80}}, {{1, 3}, {30, 80}}}));
    EXPECT_EQ(collector.pairs.size(), 6U);
}

}  // namespace
}  // namespace korv
