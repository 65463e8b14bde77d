#include "engine/lattice_entries.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "support/loaded_classes.h"

namespace korv {
namespace {

using Itemsets = std::vector<Itemset>;
using test::classes_of_itemsets;
using test::LoadedClasses;

/// The closed itemsets of the entries, in their order.
Itemsets filed(const LatticeEntries& entries) {
    Itemsets result;
    for (const LatticeEntry& entry : entries) {
        result.push_back(entry.itemset());
    }
    return result;
}

std::vector<Count> cardinalities(const LatticeEntries& entries) {
    std::vector<Count> result;
    for (const LatticeEntry& entry : entries) {
        result.push_back(entry.cardinality);
    }
    return result;
}

// lattice_entries.

TEST(LatticeEntries, StandByCardinalityThenLexicographically) {
    const LoadedClasses classes(classes_of_itemsets({{2}, {1, 3}, {1, 2}, {4, 5, 6}}));
    EXPECT_EQ(filed(classes.entries), (Itemsets{{2}, {1, 2}, {1, 3}, {4, 5, 6}}));
    EXPECT_EQ(cardinalities(classes.entries), (std::vector<Count>{1, 2, 2, 3}));
}

TEST(LatticeEntries, HaveNoSuccessors) {
    const LoadedClasses classes(classes_of_itemsets({{1}, {1, 2}, {1, 2, 3}}));
    ASSERT_EQ(classes.entries.size(), 3U);
    for (const LatticeEntry& entry : classes.entries) {
        EXPECT_TRUE(entry.successors.empty());
    }
}

TEST(LatticeEntries, ReferToTheClassesOfTheMap) {
    const LoadedClasses classes(ClassMap{{{2}, {7, {}}}, {{1, 3}, {9, {{1}}}}});
    ASSERT_EQ(classes.entries.size(), 2U);
    EXPECT_EQ(classes.entries[0].node, classes.node({2}));
    EXPECT_EQ(classes.entries[1].node, classes.node({1, 3}));
    EXPECT_EQ(classes.entries[1].support(), 9U);
    EXPECT_EQ(classes.entries[1].essentials(), Itemsets{{1}});
}

TEST(LatticeEntries, CountRepeatedItemsInTheCardinality) {
    const LoadedClasses classes(classes_of_itemsets({{1, 2, 2}, {3, 4}}));
    EXPECT_EQ(filed(classes.entries), (Itemsets{{3, 4}, {1, 2, 2}}));
    EXPECT_EQ(cardinalities(classes.entries), (std::vector<Count>{2, 3}));
}

TEST(LatticeEntries, AreNoneWithoutClasses) {
    EXPECT_TRUE(lattice_entries({}).empty());
}

TEST(LatticeEntries, BeginWithAnEmptyClosedItemset) {
    const LoadedClasses classes(classes_of_itemsets({{}, {1}, {2}}));
    EXPECT_EQ(filed(classes.entries), (Itemsets{{}, {1}, {2}}));
    EXPECT_EQ(cardinalities(classes.entries), (std::vector<Count>{0, 1, 1}));
}

TEST(LatticeEntries, GiveTheirClosedItemsetsInOrder) {
    const LoadedClasses classes(classes_of_itemsets({{1, 3}, {2}}));
    const std::vector<const Itemset*> itemsets = closed_itemsets(classes.entries);
    ASSERT_EQ(itemsets.size(), 2U);
    EXPECT_EQ(itemsets[0], &classes.node({2})->first);
    EXPECT_EQ(itemsets[1], &classes.node({1, 3})->first);
}

// find_closed and find_entry.

TEST(FindEntry, FindsTheEntryOfEachNode) {
    const LoadedClasses classes(classes_of_itemsets({{2}, {1, 3}, {1, 2}, {4, 5, 6}, {7, 8, 9}}));
    std::ptrdiff_t position = 0;
    for (const Itemset& itemset : Itemsets{{2}, {1, 2}, {1, 3}, {4, 5, 6}, {7, 8, 9}}) {
        EXPECT_EQ(find_entry(classes.entries, classes.node(itemset)) - classes.entries.begin(), position);
        EXPECT_EQ(find_closed(classes.entries, itemset) - classes.entries.begin(), position);
        ++position;
    }
}

TEST(FindEntry, FindsNoNodeOfOtherClasses) {
    const LoadedClasses classes(classes_of_itemsets({{1}, {2}}));
    const ClassMap others = classes_of_itemsets({{2}});
    EXPECT_EQ(find_entry(classes.entries, others.begin()), classes.entries.end());
}

class ItemsetWithoutEntry : public ::testing::TestWithParam<Itemset> {};

TEST_P(ItemsetWithoutEntry, IsNotFound) {
    const LoadedClasses classes(classes_of_itemsets({{2}, {1, 3}, {1, 5}, {4, 5, 6, 7}}));
    EXPECT_EQ(find_closed(classes.entries, GetParam()), classes.entries.end());
    const ClassMap others = classes_of_itemsets({GetParam()});
    EXPECT_EQ(find_entry(classes.entries, others.begin()), classes.entries.end());
}

INSTANTIATE_TEST_SUITE_P(BeforeAllEntries, ItemsetWithoutEntry, ::testing::Values(Itemset{}, Itemset{1}));
INSTANTIATE_TEST_SUITE_P(AmongItsCardinality, ItemsetWithoutEntry, ::testing::Values(Itemset{1, 4}));
INSTANTIATE_TEST_SUITE_P(AfterItsCardinality, ItemsetWithoutEntry,
                         ::testing::Values(Itemset{3}, Itemset{2, 3}));
INSTANTIATE_TEST_SUITE_P(OfAnotherCardinality, ItemsetWithoutEntry, ::testing::Values(Itemset{1, 3, 5}));
INSTANTIATE_TEST_SUITE_P(AfterAllEntries, ItemsetWithoutEntry,
                         ::testing::Values(Itemset{5, 6, 7, 8}, Itemset{1, 2, 3, 4, 5}));

TEST(FindEntry, FindsNothingInAnEmptyLattice) {
    const LatticeEntries entries;
    const ClassMap others = classes_of_itemsets({{1}});
    EXPECT_EQ(find_entry(entries, others.begin()), entries.end());
    EXPECT_EQ(find_closed(entries, {1}), entries.end());
}

}  // namespace
}  // namespace korv
