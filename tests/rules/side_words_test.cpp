#include "rules/side_words.h"

#include <gtest/gtest.h>

#include "made_rules.h"
#include "rules/column_facts.h"
#include "support/loaded_classes.h"

namespace korv::tools {

namespace {

class SideText : public ::testing::Test {
protected:
    std::string any(const Itemset& items) { return text(shop_.any(items), shop_); }
    std::string none(const Itemset& items) { return text(shop_.none(items), shop_); }
    std::string any_person(const Itemset& items) { return text(titanic_.any(items), titanic_); }
    std::string no_person(const Itemset& items) { return text(titanic_.none(items), titanic_); }

    std::string text(Side side, const MadeRules& rules) const {
        return side_text(side, rules.book(2201), style);
    }

    SideStyle style;

private:
    MadeRules shop_{{{1, "bread"}, {2, "butter"}, {3, "milk"}, {4, "a\x1B[2J"}, {5, "b\xFF"}, {6, "size=L"}}};
    MadeRules titanic_{titanic_names};
};

TEST_F(SideText, JoinsPlainItemsByOr) {
    EXPECT_EQ(any({1}), "bread");
    EXPECT_EQ(any({1, 2}), "bread or butter");
    EXPECT_EQ(any({1, 2, 17}), "bread or butter or 17");
}

TEST_F(SideText, DeniesNegatedItems) {
    EXPECT_EQ(none({1}), "not bread");
    EXPECT_EQ(none({1, 2}), "none of bread, butter");
}

TEST_F(SideText, KeepsAnEmptyName) {
    MadeRules rules({{1, ""}, {2, "milk"}});
    EXPECT_EQ(text(rules.any({1, 2}), rules), " or milk");
    EXPECT_EQ(text(rules.none({1, 2}), rules), "none of , milk");
}

TEST_F(SideText, OfNoItem) {
    EXPECT_EQ(any({}), "nothing");
    EXPECT_EQ(none({}), "anything");
}

TEST_F(SideText, SaysItemsOfAColumnTogether) {
    EXPECT_EQ(any_person({6}), "sex=female");
    EXPECT_EQ(any_person({1, 2}), "class in {1st, 2nd}");
    EXPECT_EQ(any_person({1, 2, 6}), "class in {1st, 2nd} or sex=female");
    EXPECT_EQ(any_person({1, 6}), "class=1st or sex=female");
}

TEST(SideTextOfExhaustiveColumns, SaysTheOtherValuesWhereTheseAreFewerOrPlain) {
    MadeRules rules(titanic_names);
    const test::LoadedClasses classes(
        "1\t325\t 1,\n2\t285\t 2,\n3\t706\t 3,\n4\t885\t 4,\n5\t1731\t 5,\n6\t470\t 6,\n7\t109\t 7,\n"
        "8\t2092\t 8,\n");
    const ColumnFacts columns(rules.names(), classes.classes, 2201);
    RuleBook book = rules.book(2201);
    book.columns = &columns;
    const auto said = [&book](Side side) { return side_text(side, book, {}); };

    EXPECT_EQ(said(rules.none({6, 7})), "sex=male and age=adult");
    EXPECT_EQ(said(rules.any({6, 7})), "sex=female or age=child");
    EXPECT_EQ(said(rules.none({1, 6})), "class not 1st and sex=male");
    EXPECT_EQ(said(rules.none({1, 2, 6})), "class in {3rd, crew} and sex=male");
    EXPECT_EQ(said(rules.none({1, 2, 3, 6})), "class=crew and sex=male");
    EXPECT_EQ(said(rules.any({1, 2, 3, 6})), "class not crew or sex=female");
    // Nothing is known of the last column.
    EXPECT_EQ(said(rules.none({6, 10})), "sex=male and survived not yes");
    EXPECT_EQ(side_text(rules.none({6, 7, 10}), book, {.most_items = 2}),
              "sex not female and age not child and not 1 more");
}

TEST_F(SideText, DeniesItemsOfAColumnTogether) {
    EXPECT_EQ(no_person({4}), "class not crew");
    EXPECT_EQ(no_person({3, 4}), "class not in {3rd, crew}");
    EXPECT_EQ(no_person({3, 4, 6}), "class not in {3rd, crew} and sex not female");
}

TEST_F(SideText, DeniesItemsOfNoColumnLast) {
    MadeRules rules({{1, "owner"}, {2, "sex=female"}, {3, "sex=male"}, {4, "tenant"}});
    EXPECT_EQ(text(rules.none({1, 2, 4}), rules), "sex not female and none of owner, tenant");
    EXPECT_EQ(text(rules.none({1, 2}), rules), "sex not female and not owner");
    EXPECT_EQ(text(rules.any({1, 2, 3, 4}), rules), "owner or sex in {female, male} or tenant");
}

TEST_F(SideText, TakesTheOnlyValueOfAColumnForAName) {
    EXPECT_EQ(any({6}), "size=L");
    EXPECT_EQ(none({6}), "not size=L");
}

TEST_F(SideText, SpellsWhatATerminalCannotShow) {
    EXPECT_EQ(any({4, 5}), "a\x1B[2J or b\xEF\xBF\xBD");  // U+FFFD for the byte that is no character
    style.is_printable = true;
    EXPECT_EQ(any({4, 5}), "a\\x1B[2J or b\\xFF");
}

TEST_F(SideText, CountsItemsBeyondAsManyAsAreNamed) {
    style.most_items = 2;
    EXPECT_EQ(any({1, 2}), "bread or butter");
    EXPECT_EQ(any({1, 2, 3}), "bread or butter or 1 more");
    EXPECT_EQ(none({1, 2, 3}), "none of bread, butter and not 1 more");
    EXPECT_EQ(any_person({1, 2, 3, 6}), "class in {1st, 2nd} or 2 more");
    EXPECT_EQ(no_person({1, 2, 3, 6}), "class not in {1st, 2nd} and not 2 more");
}

TEST_F(SideText, ShortensLongNames) {
    style.most_columns = 4;
    EXPECT_EQ(any({1, 3}), "bre… or milk");
    EXPECT_EQ(no_person({5, 6}), "sex not in {male, fem…}");
}

TEST(SideTexts, MakesTheTextOfASideOnce) {
    int made = 0;
    SideTexts texts([&made](Side side, std::string& text) {
        ++made;
        text += std::to_string(side.itemset()) + (side.is_negated() ? "-" : "+");
    });
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(texts.of({7, false}), "7+");
        EXPECT_EQ(texts.of({7, true}), "7-");
        EXPECT_EQ(texts.of({8, true}), "8-");
    }
    EXPECT_EQ(made, 3);
}

TEST(SideTexts, AreRightForMoreSidesThanAreKept) {
    SideTexts texts([](Side side, std::string& text) { text += std::to_string(side.itemset()); });
    for (int round = 0; round < 2; ++round) {
        for (ItemsetId id = 0; id < 300'000; ++id) {
            ASSERT_EQ(texts.of({id, false}), std::to_string(id));
        }
    }
}

TEST(SideTexts, DoesNotKeepLongTexts) {
    int made = 0;
    SideTexts texts([&made](Side /*side*/, std::string& text) {
        ++made;
        text.assign(4097, 'a');
    });
    EXPECT_EQ(texts.of({1, false}).size(), 4097U);
    EXPECT_EQ(texts.of({1, false}).size(), 4097U);
    EXPECT_EQ(made, 2);
}

}  // namespace

}  // namespace korv::tools
