#include "engine/support_walk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <iterator>
#include <map>
#include <ostream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "engine/lattice_building.h"
#include "support/bits.h"
#include "support/loaded_classes.h"
#include "support/support_answer.h"

namespace korv {
namespace {

using Answer = test::SupportAnswer;

Answer ask(const LatticeEntries& entries, const Itemset& itemset, Count lower, Count upper) {
    SupportBounds bounds = {lower, upper};
    const Count support = SupportWalk(entries).settle(itemset, bounds);
    return {support, bounds.lower, bounds.upper};
}

/// A query of an itemset, from 0 to 100 where a test says nothing else.
Answer ask_of(const std::string& class_file, const Itemset& itemset, Count lower = 0, Count upper = 100) {
    return ask(test::LoadedClasses(class_file).entries, itemset, lower, upper);
}

// Classes smaller than the itemset.

TEST(SupportWalk, SubsetRaisesTheLowerBound) {
    EXPECT_EQ(ask_of("1\t4\t 1,\n", {1, 2}), (Answer{0, 4, 100}));
}

TEST(SupportWalk, SubsetNeverLowersTheLowerBound) {
    EXPECT_EQ(ask_of("1\t4\t 1,\n2\t3\t 2,\n", {1, 2}), (Answer{0, 4, 100}));
    EXPECT_EQ(ask_of("1\t4\t 1,\n", {1, 2}, 5), (Answer{0, 5, 100}));
}

TEST(SupportWalk, EssentialInTheCommonPartOfASmallerClassRaisesTheLowerBound) {
    EXPECT_EQ(ask_of("1 2\t4\t 1,\n", {1, 3, 5}), (Answer{0, 4, 100}));
}

TEST(SupportWalk, EssentialOutsideTheItemsetRaisesNothing) {
    EXPECT_EQ(ask_of("1 2\t4\t 2,\n", {1, 3, 5}), (Answer{0, 0, 100}));
}

TEST(SupportWalk, EveryEssentialOfASmallerClassIsTried) {
    EXPECT_EQ(ask_of("1 2\t4\t 2, 1,\n", {1, 3, 5}), (Answer{0, 4, 100}));
}

TEST(SupportWalk, EssentialOfALowSupportNeverLowersTheLowerBound) {
    EXPECT_EQ(ask_of("1 2\t4\t 1,\n", {1, 3, 5}, 6), (Answer{0, 6, 100}));
}

// Only a damaged file lists an essential beyond its class: 3 is in the itemset, but not in {1 2}.
TEST(SupportWalk, EssentialOfASmallerClassMustLieInTheCommonPart) {
    EXPECT_EQ(ask_of("1 2\t4\t 3,\n", {1, 3, 5}), (Answer{0, 0, 100}));
}

TEST(SupportWalk, EmptyEssentialOfASmallerClassNeedsACommonItem) {
    EXPECT_EQ(ask_of("1 2\t4\t ,\n", {3, 4, 5}), (Answer{0, 0, 100}));
    EXPECT_EQ(ask_of("1 2\t4\t ,\n", {2, 4, 5}), (Answer{0, 4, 100}));
}

// Classes as large as the itemset.

TEST(SupportWalk, ClosedItemsetHasTheSupportOfItsClass) {
    EXPECT_EQ(ask_of("1 2\t5\t 1,\n", {1, 2}), (Answer{5, 0, 100}));
}

TEST(SupportWalk, ClosedItemsetKeepsTheBoundsReachedBeforeIt) {
    EXPECT_EQ(ask_of("1\t3\t 1,\n1 2\t5\t 1,\n1 2 3\t7\t 1,\n", {1, 2}), (Answer{5, 3, 100}));
}

TEST(SupportWalk, ClosedItemsetMayContradictTheBounds) {
    EXPECT_EQ(ask_of("1 2\t5\t ,\n", {1, 2}, 6, 6), (Answer{5, 6, 6}));
}

TEST(SupportWalk, BoundsThatMeetBeforeTheClosedItemsetDecide) {
    EXPECT_EQ(ask_of("1\t4\t 1,\n1 2\t5\t 1,\n", {1, 2}, 0, 4), (Answer{4, 4, 4}));
}

TEST(SupportWalk, EssentialOfAnEquallyLargeClassRaisesTheLowerBound) {
    EXPECT_EQ(ask_of("1 3\t6\t 3, 1,\n", {1, 2}), (Answer{0, 6, 100}));
}

TEST(SupportWalk, EssentialOfAnEquallyLargeClassNeedNotLieInIt) {
    EXPECT_EQ(ask_of("1 3\t6\t 2,\n", {1, 2}), (Answer{0, 6, 100}));
    EXPECT_EQ(ask_of("3 4\t6\t ,\n", {1, 2}), (Answer{0, 6, 100}));
}

TEST(SupportWalk, EquallyLargeClassNeverLowersTheUpperBound) {
    EXPECT_EQ(ask_of("1 3\t6\t 3,\n", {1, 2}), (Answer{0, 0, 100}));
}

// Classes larger than the itemset.

TEST(SupportWalk, SupersetLowersTheUpperBound) {
    EXPECT_EQ(ask_of("1 2 3\t7\t 3,\n", {1, 2}), (Answer{0, 0, 7}));
}

TEST(SupportWalk, SupersetNeverRaisesTheUpperBound) {
    EXPECT_EQ(ask_of("1 2 3\t7\t 3,\n1 2 4\t9\t 4,\n", {1, 2}), (Answer{0, 0, 7}));
    EXPECT_EQ(ask_of("1 2 3\t7\t 3,\n", {1, 2}, 0, 5), (Answer{0, 0, 5}));
}

TEST(SupportWalk, LargerClassThatDoesNotContainTheItemsetKeepsTheUpperBound) {
    EXPECT_EQ(ask_of("1 3 4\t7\t 3,\n", {1, 2}), (Answer{0, 0, 100}));
}

TEST(SupportWalk, EssentialOfALargerClassRaisesTheLowerBound) {
    EXPECT_EQ(ask_of("1 3 4\t7\t 3, 1,\n", {1, 2}), (Answer{0, 7, 100}));
}

TEST(SupportWalk, EssentialOfALargerClassNeedNotLieInIt) {
    EXPECT_EQ(ask_of("3 4 5\t7\t 1,\n", {1, 2}), (Answer{0, 7, 100}));
    EXPECT_EQ(ask_of("3 4 5\t7\t ,\n", {1, 2}), (Answer{0, 7, 100}));
}

TEST(SupportWalk, EssentialLargerThanTheItemsetIsPassedOver) {
    EXPECT_EQ(ask_of("1 2 3 4\t7\t 1 2 3, 2,\n", {1, 2}, 0, 9), (Answer{7, 7, 7}));
    EXPECT_EQ(ask_of("1 2 3 4\t7\t 1 2 3,\n", {1, 2}, 0, 9), (Answer{0, 0, 7}));
}

TEST(SupportWalk, EssentialItselfHasTheSupportOfItsClass) {
    EXPECT_EQ(ask_of("1 2 3\t6\t 1 2,\n", {1, 2}), (Answer{6, 6, 6}));
}

// Where the bounds meet.

TEST(SupportWalk, IsTheValueAtWhichTheBoundsMeet) {
    EXPECT_EQ(ask_of("1\t4\t 1,\n1 2 3\t4\t 3,\n", {1, 2}), (Answer{4, 4, 4}));
}

TEST(SupportWalk, StopsWhereTheBoundsFirstMeet) {
    EXPECT_EQ(ask_of("1\t4\t 1,\n2\t7\t 2,\n", {1, 2}, 0, 4), (Answer{4, 4, 4}));
}

TEST(SupportWalk, BoundsEqualFromTheStartAreReturnedAfterTheFirstClass) {
    EXPECT_EQ(ask_of("1\t1\t 1,\n8\t8\t 8,\n", {8, 9}, 5, 5), (Answer{5, 5, 5}));
}

TEST(SupportWalk, BoundsEqualFromTheStartDoNotSpareTheFirstClass) {
    EXPECT_EQ(ask_of("1\t8\t 1,\n2\t1\t 2,\n", {1, 2}, 5, 5), (Answer{0, 8, 5}));
}

TEST(SupportWalk, BoundsThatCrossDoNotMeet) {
    EXPECT_EQ(ask_of("1\t9\t 1,\n1 2 3\t4\t 3,\n", {1, 2}), (Answer{0, 9, 4}));
}

// By ascending cardinality {4} raises the lower bound first; in the order of the file {1 2 4} would.
TEST(SupportWalk, SmallerClassesComeFirst) {
    EXPECT_EQ(ask_of("1 2 4\t6\t 4,\n4\t3\t 4,\n", {4, 5}, 0, 3), (Answer{3, 3, 3}));
}

TEST(SupportWalk, EquallyLargeClassesComeLexicographically) {
    EXPECT_EQ(ask_of("5\t6\t 5,\n4\t3\t 4,\n", {4, 5}, 0, 3), (Answer{3, 3, 3}));
}

TEST(SupportWalk, SupportOfZeroLooksLikeAnUnknownOne) {
    EXPECT_EQ(ask_of("1 2\t0\t ,\n", {1, 2}), (Answer{0, 0, 100}));
    EXPECT_EQ(ask_of("1 2 3\t0\t 3,\n", {1, 2}), (Answer{0, 0, 0}));
}

TEST(SupportWalk, SupportsAreUnsigned) {
    EXPECT_EQ(ask_of("1\t4294967295\t 1,\n", {1, 2}), (Answer{0, 4294967295U, 100}));
    EXPECT_EQ(ask_of("1 2 3\t4294967295\t 3,\n", {1, 2}), (Answer{0, 0, 100}));
}

TEST(SupportWalk, SuccessorsAreNotNeeded) {
    test::LoadedClasses classes("1\t4\t 1,\n2\t3\t 2,\n1 2 3\t9\t 3,\n");
    EXPECT_EQ(ask(classes.entries, {1, 2}, 0, 100), (Answer{0, 4, 9}));
    link_successors(classes.entries);
    EXPECT_EQ(ask(classes.entries, {1, 2}, 0, 100), (Answer{0, 4, 9}));
}

// Repeated items.

TEST(SupportWalk, RepeatedItemsCountInInclusions) {
    EXPECT_EQ(ask_of("2 2\t4\t 2 2 2,\n", {1, 2, 3}), (Answer{0, 0, 100}));
    EXPECT_EQ(ask_of("1 2 3\t4\t 2,\n", {2, 2}), (Answer{0, 4, 100}));
}

TEST(SupportWalk, RepeatedItemsCountInCardinalities) {
    EXPECT_EQ(ask_of("1 2 2\t4\t 2,\n", {1, 2}), (Answer{4, 4, 4}));
    EXPECT_EQ(ask_of("1 2\t4\t 2,\n", {1, 2, 2}), (Answer{0, 4, 100}));
}

// Without classes, without items.

TEST(SupportWalk, EmptyLatticeLeavesTheBoundsAlone) {
    EXPECT_EQ(ask_of("", {1, 2}, 3, 9), (Answer{0, 3, 9}));
    EXPECT_EQ(ask_of("", {1, 2}, 5, 5), (Answer{0, 5, 5}));
}

TEST(SupportWalk, EmptyItemsetHasTheSmallestSupportAsUpperBound) {
    EXPECT_EQ(ask_of("1\t4\t 1,\n2\t3\t 2,\n1 2\t6\t 1,\n", {}), (Answer{0, 0, 3}));
}

TEST(SupportWalk, OnlyEmptyEssentialsRaiseTheLowerBoundOfTheEmptyItemset) {
    EXPECT_EQ(ask_of("1 2\t4\t 1, 2,\n3 4\t5\t ,\n", {}), (Answer{0, 5, 4}));
    EXPECT_EQ(ask_of("1\t4\t ,\n2\t3\t ,\n", {}), (Answer{4, 4, 4}));
}

TEST(SupportWalk, EmptyItemsetThatIsClosedHasTheSupportOfItsClass) {
    const test::LoadedClasses classes(ClassMap{{{}, {2, {}}}, {{1}, {4, {}}}});
    EXPECT_EQ(ask(classes.entries, {}, 0, 100), (Answer{2, 0, 100}));
}

// bounds_from_below, which looks at one class.

bool bounds_below(const std::string& record, const Itemset& itemset) {
    const test::LoadedClasses classes(record);
    return bounds_from_below(classes.entries.front(), itemset);
}

TEST(BoundsFromBelow, SubsetDoes) {
    EXPECT_TRUE(bounds_below("1 2\t4\t 1 2,\n", {1, 2, 3}));
    EXPECT_FALSE(bounds_below("1 2\t4\t 1 2,\n", {1, 3, 4}));
}

TEST(BoundsFromBelow, EssentialOfASmallerClassDoesWithinTheCommonPart) {
    EXPECT_TRUE(bounds_below("1 2\t4\t 2, 1,\n", {1, 3, 5}));
    EXPECT_FALSE(bounds_below("1 2\t4\t 3,\n", {1, 3, 5}));
}

TEST(BoundsFromBelow, EmptyEssentialOfASmallerClassNeedsACommonItem) {
    EXPECT_TRUE(bounds_below("1 2\t4\t ,\n", {2, 4, 5}));
    EXPECT_FALSE(bounds_below("1 2\t4\t ,\n", {3, 4, 5}));
}

TEST(BoundsFromBelow, EssentialOfAClassThatIsNotSmallerNeedNotLieInIt) {
    EXPECT_TRUE(bounds_below("3 4\t4\t 1,\n", {1, 2}));
    EXPECT_TRUE(bounds_below("3 4 5\t4\t ,\n", {1, 2}));
    EXPECT_FALSE(bounds_below("1 2 3\t4\t 3,\n", {1, 2}));
}

// Any lattice, queried for every itemset over a few items.

using test::Bits;
using test::itemset_of;
using test::random_below;

constexpr unsigned item_count = 5;
constexpr Bits all_items = (1U << item_count) - 1;

bool lies_in(Bits inner, Bits outer) {
    return (inner & outer) == inner;
}

struct ModelClass {
    Bits itemset;
    Count support;
    std::vector<Bits> essentials;
};

ClassMap map_of(const std::vector<ModelClass>& classes) {
    ClassMap map;
    for (const ModelClass& c : classes) {
        data& stored = map[itemset_of(c.itemset)];
        stored.support = c.support;
        std::ranges::transform(c.essentials, std::back_inserter(stored.essentials), itemset_of);
    }
    return map;
}

/// The walk over the classes, test by test.
Answer model_answer(std::vector<ModelClass> classes, Bits x, Count lower, Count upper) {
    std::ranges::sort(classes, {}, [](const ModelClass& c) {
        return std::pair(std::popcount(c.itemset), itemset_of(c.itemset));
    });
    const int n = std::popcount(x);
    for (const auto& [itemset, s, essentials] : classes) {
        const int k = std::popcount(itemset);
        const Bits common = itemset & x;
        if (k == n && itemset == x) {
            return {s, lower, upper};
        }
        if (k < n && common == itemset) {
            lower = std::max(lower, s);
        } else if (k >= n || common != 0) {
            const Bits searched = k < n ? common : x;
            if (k > n && common == x) {
                upper = std::min(upper, s);
            }
            if (std::ranges::any_of(essentials, [&](Bits g) { return lies_in(g, searched); })) {
                lower = std::max(lower, s);
            }
        }
        if (lower == upper) {
            return {lower, lower, upper};
        }
    }
    return {0, lower, upper};
}

TEST(AnyClasses, IsWalkedClassByClass) {
    constexpr unsigned seed = 20'240'602;
    std::mt19937 random(seed);
    for (int round = 0; round < 2000; ++round) {
        // Supports and essentials without any sense, as in a damaged file.
        std::map<Bits, ModelClass> classes;
        for (Bits draws = 1 + random_below(8, random); draws > 0; --draws) {
            const Bits itemset = random_below(all_items + 1, random);
            std::vector<Bits> essentials(random_below(4, random));
            std::ranges::generate(essentials, [&] { return random_below(all_items + 1, random); });
            classes[itemset] = {itemset, random_below(8, random), essentials};
        }
        std::vector<ModelClass> family;
        for (const auto& [unused, c] : classes) {
            family.push_back(c);
        }
        const test::LoadedClasses loaded(map_of(family));
        for (Bits x = 0; x <= all_items; ++x) {
            const Count lower = random_below(4, random);
            const Count upper = random_below(10, random);
            ASSERT_EQ(ask(loaded.entries, itemset_of(x), lower, upper), model_answer(family, x, lower, upper))
                << "seed " << seed << ", round " << round << ", itemset "
                << testing::PrintToString(itemset_of(x));
        }
    }
}

/// Transactions, and how many of them hold at least one item of each itemset.
struct Database {
    explicit Database(std::mt19937& random) : transactions(1 + random_below(12, random)) {
        std::ranges::generate(transactions, [&] { return random_below(all_items + 1, random); });
    }

    Count support(Bits itemset) const {
        return static_cast<Count>(
            std::ranges::count_if(transactions, [&](Bits t) { return (t & itemset) != 0; }));
    }

    /// All items that can be added without a change of the support.
    Bits closure(Bits itemset) const {
        Bits closed = itemset;
        for (Bits item = 1; item <= all_items; item <<= 1U) {
            if (support(itemset | item) == support(itemset)) {
                closed |= item;
            }
        }
        return closed;
    }

    /// Whether no item can be taken away without a change of the support.
    bool is_essential(Bits itemset) const {
        for (Bits item = 1; item <= all_items; item <<= 1U) {
            if ((itemset & item) != 0 && support(itemset & ~item) == support(itemset)) {
                return false;
            }
        }
        return true;
    }

    /// The classes as a class file gives them: none of the empty itemset, no essential as large as its class.
    std::vector<ModelClass> classes() const {
        std::map<Bits, ModelClass> result;
        for (Bits itemset = 0; itemset <= all_items; ++itemset) {
            const Bits closed = closure(itemset);
            if (closed != 0 && is_essential(itemset)) {
                ModelClass& c =
                    result.try_emplace(closed, ModelClass{closed, support(closed), {}}).first->second;
                if (itemset != closed) {
                    c.essentials.push_back(itemset);
                }
            }
        }
        std::vector<ModelClass> list;
        for (const auto& [unused, c] : result) {
            list.push_back(c);
        }
        return list;
    }

    std::vector<Bits> transactions;
};

TEST(AnyClasses, OfAllClassesKnowsEverySupport) {
    constexpr unsigned seed = 20'240'603;
    std::mt19937 random(seed);
    for (int round = 0; round < 500; ++round) {
        const Database database(random);
        const test::LoadedClasses loaded(map_of(database.classes()));
        const auto all = static_cast<Count>(database.transactions.size());
        for (Bits x = 1; x <= all_items; ++x) {
            ASSERT_EQ(ask(loaded.entries, itemset_of(x), 0, all).support, database.support(x))
                << "seed " << seed << ", round " << round << ", itemset "
                << testing::PrintToString(itemset_of(x));
        }
    }
}

TEST(AnyClasses, OfSomeClassesBoundsEverySupport) {
    constexpr unsigned seed = 20'240'604;
    std::mt19937 random(seed);
    for (int round = 0; round < 500; ++round) {
        const Database database(random);
        std::vector<ModelClass> classes = database.classes();
        std::erase_if(classes, [&](const ModelClass&) { return random_below(2, random) == 0; });
        const test::LoadedClasses loaded(map_of(classes));
        const auto all = static_cast<Count>(database.transactions.size());
        for (Bits x = 1; x <= all_items; ++x) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round) + ", itemset " +
                         testing::PrintToString(itemset_of(x)));
            const Answer answer = ask(loaded.entries, itemset_of(x), 0, all);
            const Count truth = database.support(x);
            ASSERT_TRUE(answer.support == 0 || answer.support == truth) << answer << ", not " << truth;
            ASSERT_TRUE(answer.lower <= truth && truth <= answer.upper) << answer << ", not " << truth;
        }
    }
}

}  // namespace
}  // namespace korv
