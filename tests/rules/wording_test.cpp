#include "rules/wording.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>

#include "support/loaded_classes.h"

namespace korv::tools {

namespace {

using test::LoadedClasses;

Itemset wording_of_base(const std::string& class_file, const Itemset& closed_itemset, const Itemset& base,
                        const Itemset& other) {
    const LoadedClasses classes(class_file);
    BaseWording wording;
    const ItemSpan items = wording.of(base, classes.node(closed_itemset), other);
    return {items.begin(), items.end()};
}

TEST(WordingOfABase, IsTheShortestEssentialItemsetOfItsClass) {
    EXPECT_EQ(wording_of_base("1 2 3 4\t60\t 1 2, 4, 2 3,\n", {1, 2, 3, 4}, {2, 3}, {9}), (Itemset{4}));
}

TEST(WordingOfABase, IsTheLexicographicallySmallestOfTheShortest) {
    EXPECT_EQ(wording_of_base("1 2 3 4\t60\t 2 3, 1 4, 2 4,\n", {1, 2, 3, 4}, {1, 2, 3, 4}, {9}),
              (Itemset{1, 4}));
}

TEST(WordingOfABase, IsTheClosedItemsetOfAClassThatStoresNoEssentialOne) {
    EXPECT_EQ(wording_of_base("1 2 3\t60\t 1 2 3,\n", {1, 2, 3}, {1, 2, 3}, {9}), (Itemset{1, 2, 3}));
}

TEST(WordingOfABase, SharesNoItemWithTheOtherSide) {
    const char* const classes = "1 2 3 4\t60\t 1, 2, 3 4,\n";
    EXPECT_EQ(wording_of_base(classes, {1, 2, 3, 4}, {3, 4}, {1, 5}), (Itemset{2}));
    EXPECT_EQ(wording_of_base(classes, {1, 2, 3, 4}, {3, 4}, {1, 2}), (Itemset{3, 4}));
}

TEST(WordingOfABase, IsThatOfTheClassThatIsAskedForNow) {
    const LoadedClasses classes("1 2\t30\t 2,\n1 2 3\t60\t 3,\n");
    BaseWording wording;
    const Itemset other = {9};
    EXPECT_EQ(wording.of({1, 2}, classes.node({1, 2}), other).front(), 2U);
    EXPECT_EQ(wording.of({1, 2, 3}, classes.node({1, 2, 3}), other).front(), 3U);
    EXPECT_EQ(wording.of({1, 2}, classes.node({1, 2}), other).front(), 2U);
}

Itemset wording_of(const std::string& class_file, const Itemset& itemset, Count support) {
    const LoadedClasses classes(class_file);
    const ShortestWording wording(classes.entries);
    const ItemSpan items = wording.of_itemset(itemset, support);
    return {items.begin(), items.end()};
}

constexpr const char* three_classes =
    "1\t20\t 1,\n"
    "2 3 4\t50\t 3 4, 2,\n"
    "1 2 3 4 5\t60\t 5, 1 2, 1 3 4,\n";

TEST(WordingOfAnItemset, IsTheShortestKeyWithinItOfItsSupport) {
    EXPECT_EQ(wording_of(three_classes, {1, 2, 3, 4}, 60), (Itemset{1, 2}));
    EXPECT_EQ(wording_of(three_classes, {2, 3, 4}, 50), (Itemset{2}));
}

TEST(WordingOfAnItemset, IsNoKeyThatSticksOutOfIt) {
    EXPECT_EQ(wording_of(three_classes, {3, 4}, 50), (Itemset{3, 4}));
    EXPECT_EQ(wording_of(three_classes, {1, 3, 4}, 60), (Itemset{1, 3, 4}));
}

TEST(WordingOfAnItemset, IsTheItemsetWhereNoKeyHasItsSupport) {
    EXPECT_EQ(wording_of(three_classes, {1, 2}, 55), (Itemset{1, 2}));
    EXPECT_EQ(wording_of(three_classes, {1, 2}, 99), (Itemset{1, 2}));
}

TEST(WordingOfAnItemset, TellsItemsApartThatAre64Apart) {
    EXPECT_EQ(wording_of("3\t50\t 3,\n67 68\t50\t 67,\n", {67, 68}, 50), (Itemset{67}));
}

TEST(WordingOfAnItemset, MayHoldTheLargestItem) {
    const char* const classes = "1 4294967295\t50\t 1 4294967295,\n2 4294967295\t50\t 2 4294967295,\n";
    EXPECT_EQ(wording_of(classes, {2, 3, 4294967295}, 50), (Itemset{2, 4294967295}));
    EXPECT_EQ(wording_of(classes, {3, 4294967295}, 50), (Itemset{3, 4294967295}));
    EXPECT_EQ(wording_of("4294967295\t50\t 4294967295,\n", {3, 4294967295}, 50), (Itemset{4294967295}));
}

/// Classes that are their own keys: some hundred of few items, of two supports.
ClassMap random_keys(std::mt19937& random) {
    constexpr Item items = 14;
    ClassMap classes;
    for (std::size_t number = 0; number < 300; ++number) {
        std::set<Item> key;
        for (std::size_t item = random() % 5 + 1; item > 0; --item) {
            key.insert(1 + static_cast<Item>(random() % items) * 32);  // some are 64 apart
        }
        classes[{key.begin(), key.end()}].support = random() % 2 == 0 ? 50 : 60;
    }
    return classes;
}

/// Looks at every key.
Itemset plain_wording(const ClassMap& classes, const Itemset& itemset, Count support) {
    const Itemset* best = nullptr;
    for (const auto& [key, of_class] : classes) {
        if (of_class.support == support && is_contained(key, itemset) &&
            (best == nullptr || key.size() < best->size())) {
            best = &key;
        }
    }
    return best == nullptr ? itemset : *best;
}

TEST(WordingOfAnItemset, IsThatOfAPlainSearchAmongManyKeys) {
    std::size_t reworded = 0;
    for (unsigned seed = 1; seed <= 200; ++seed) {
        std::mt19937 random(seed);
        const LoadedClasses classes(random_keys(random));
        const ShortestWording wording(classes.entries);
        for (std::size_t query = 0; query < 50; ++query) {
            Itemset itemset;
            for (Item item = 0; item < 14; ++item) {
                if (random() % 3 == 0) {
                    itemset.push_back(1 + item * 32);
                }
            }
            const ItemSpan found = wording.of_itemset(itemset, 50);
            ASSERT_EQ(Itemset(found.begin(), found.end()), plain_wording(classes.classes, itemset, 50))
                << "seed " << seed << ", query " << query;
            reworded += found.size() < itemset.size() ? 1 : 0;
        }
    }
    EXPECT_GT(reworded, 1000U);
}

}  // namespace

}  // namespace korv::tools
