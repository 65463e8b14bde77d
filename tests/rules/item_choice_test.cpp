#include "rules/item_choice.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tools/complaint.h"

namespace korv::tools {

namespace {

constexpr Item largest = 4294967295;

const Itemset items = {1, 2, 3, 70, largest};
const ItemNames names({{1, "a"}, {2, "b"}, {3, "c"}, {70, "d"}});

PatternWord with(const std::string& text, PatternPlace place = PatternPlace::either) {
    return {"--with", text, place, true};
}

PatternWord without(const std::string& text, PatternPlace place = PatternPlace::either) {
    return {"--without", text, place, false};
}

bool holds(const std::vector<PatternWord>& patterns, const Itemset& premise, const Itemset& conclusion) {
    return ItemChoice(patterns, items, names).holds(premise, conclusion);
}

TEST(ItemChoice, HoldsForEveryRuleWithoutAPattern) {
    EXPECT_TRUE(ItemChoice().holds(Itemset{1}, Itemset{2}));
    EXPECT_TRUE(holds({}, {}, {}));
}

TEST(ItemChoice, WantsAnItemOnEitherSide) {
    EXPECT_TRUE(holds({with("a|d")}, {1, 2}, {3}));
    EXPECT_TRUE(holds({with("a|d")}, {2, 3}, {70}));
    EXPECT_FALSE(holds({with("a|d")}, {2}, {3}));
}

TEST(ItemChoice, WantsAnItemOnOneSide) {
    EXPECT_TRUE(holds({with("a", PatternPlace::premise)}, {1, 2}, {3}));
    EXPECT_FALSE(holds({with("a", PatternPlace::premise)}, {2}, {1, 3}));
    EXPECT_TRUE(holds({with("a", PatternPlace::conclusion)}, {2}, {1, 3}));
    EXPECT_FALSE(holds({with("a", PatternPlace::conclusion)}, {1, 2}, {3}));
}

TEST(ItemChoice, WantsNoItemAtAPlace) {
    EXPECT_FALSE(holds({without("a")}, {1, 2}, {3}));
    EXPECT_FALSE(holds({without("a")}, {2}, {1}));
    EXPECT_TRUE(holds({without("a")}, {2}, {3}));
    EXPECT_TRUE(holds({without("a", PatternPlace::premise)}, {2}, {1}));
    EXPECT_FALSE(holds({without("a", PatternPlace::premise)}, {1}, {2}));
    EXPECT_TRUE(holds({without("a", PatternPlace::conclusion)}, {1}, {2}));
    EXPECT_FALSE(holds({without("a", PatternPlace::conclusion)}, {2}, {1}));
}

TEST(ItemChoice, HoldsWhenAllPatternsDo) {
    const std::vector<PatternWord> patterns = {with("a"), with("b"), without("c", PatternPlace::conclusion)};
    EXPECT_TRUE(holds(patterns, {1}, {2}));
    EXPECT_TRUE(holds(patterns, {1, 2, 3}, {70}));
    EXPECT_FALSE(holds(patterns, {1}, {70}));
    EXPECT_FALSE(holds(patterns, {1}, {2, 3}));
}

TEST(ItemChoice, KnowsItemsOfAnyNumber) {
    EXPECT_TRUE(holds({with("#4294967295")}, {1}, {largest}));
    EXPECT_FALSE(holds({with("#4294967295")}, {1}, {2}));
    EXPECT_FALSE(holds({with("a")}, {largest - 1}, {largest}));
    EXPECT_TRUE(holds({with("*")}, {largest}, {16'777'216}));
    EXPECT_FALSE(holds({with("*")}, {16'777'215}, {16'777'216}));
}

TEST(ItemChoice, RefusesAPatternOfNoItem) {
    EXPECT_FALSE(complaint_of([] { ItemChoice(std::vector{without("x*")}, items, names); }).empty());
}

}  // namespace

}  // namespace korv::tools
