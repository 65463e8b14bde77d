#include "rules/wording.h"

#include <gtest/gtest.h>

#include <string>

#include "support/loaded_classes.h"

namespace korv::tools {

namespace {

using test::LoadedClasses;

Itemset wording_of_class(const std::string& class_file, const Itemset& closed_itemset) {
    const LoadedClasses classes(class_file);
    ShortestWording wording(classes.entries);
    const ItemSpan items = wording.of_class(classes.node(closed_itemset));
    return {items.begin(), items.end()};
}

TEST(WordingOfAClass, IsItsShortestEssentialItemset) {
    EXPECT_EQ(wording_of_class("1 2 3 4\t60\t 1 2, 4, 2 3,\n", {1, 2, 3, 4}), (Itemset{4}));
}

TEST(WordingOfAClass, IsTheLexicographicallySmallestOfTheShortest) {
    EXPECT_EQ(wording_of_class("1 2 3 4\t60\t 2 3, 1 4, 2 4,\n", {1, 2, 3, 4}), (Itemset{1, 4}));
}

TEST(WordingOfAClass, IsItsClosedItemsetWhereItStoresNoEssentialOne) {
    EXPECT_EQ(wording_of_class("1 2 3\t60\t 1 2 3,\n", {1, 2, 3}), (Itemset{1, 2, 3}));
}

TEST(WordingOfAClass, IsThatOfTheClassThatIsAskedForNow) {
    const LoadedClasses classes("1 2\t30\t 2,\n1 2 3\t60\t 3,\n");
    ShortestWording wording(classes.entries);
    EXPECT_EQ(wording.of_class(classes.node({1, 2})).front(), 2U);
    EXPECT_EQ(wording.of_class(classes.node({1, 2, 3})).front(), 3U);
    EXPECT_EQ(wording.of_class(classes.node({1, 2})).front(), 2U);
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

}  // namespace

}  // namespace korv::tools
