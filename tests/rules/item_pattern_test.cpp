#include "rules/item_pattern.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "tools/complaint.h"

namespace korv::tools {

namespace {

const ItemNames groceries({{1, "milk"}, {2, "whole milk"}, {3, "soy milk"}, {4, "Milk"}, {5, "beer"}});
const ItemNames table({{1, "class=1st"}, {2, "class=crew"}, {3, "sex=male"}, {4, "sex=female"}});
const Itemset first_five = {1, 2, 3, 4, 5};
const Itemset first_four = {1, 2, 3, 4};

Itemset found(const std::string& text, const ItemNames& names = groceries,
              const Itemset& items = first_five) {
    return matching_items({"--with", text, PatternPlace::either, true}, items, names);
}

std::string complaint(const std::string& text, const ItemNames& names = groceries,
                      const Itemset& items = first_five) {
    return complaint_of([&] { found(text, names, items); });
}

TEST(ItemPattern, IsTheNameOfAnItem) {
    EXPECT_EQ(found("milk"), (Itemset{1}));
    EXPECT_EQ(found("whole milk"), (Itemset{2}));
}

TEST(ItemPattern, IsTheNumberOfAnItemWithoutAName) {
    EXPECT_EQ(found("17", groceries, {5, 17}), (Itemset{17}));
}

TEST(ItemPattern, HasWildcardsForTheWholeName) {
    EXPECT_EQ(found("*milk"), (Itemset{1, 2, 3}));
    EXPECT_EQ(found("?ilk"), (Itemset{1, 4}));
    EXPECT_EQ(found("*e*"), (Itemset{2, 5}));
    EXPECT_EQ(found("b*r"), (Itemset{5}));
    EXPECT_EQ(found("*"), first_five);
    EXPECT_EQ(found("**?*"), first_five);
    EXPECT_EQ(found("class=*", table, first_four), (Itemset{1, 2}));
}

TEST(ItemPattern, TakesOtherCharactersAsTheyAre) {
    const ItemNames names({{1, "a.c[d]+"}, {2, "abc[d]+"}, {3, "x\ny"}});
    EXPECT_EQ(found("a.c[d]*", names, {1, 2, 3}), (Itemset{1}));
    EXPECT_EQ(found("x?y", names, {1, 2, 3}), (Itemset{3}));
}

TEST(ItemPattern, HasAWildcardForACharacterOfSeveralBytes) {
    const ItemNames names({{1, "gr\xC3\xBCn"}, {2, "gran"}, {3, "gr\xF0\x9F\x98\x80n"}, {4, "grrrn"}});
    EXPECT_EQ(found("gr?n", names, first_four), (Itemset{1, 2, 3}));
    EXPECT_EQ(found("gr\?\?n", names, first_four), (Itemset{4}));
}

TEST(ItemPattern, IsARegularExpressionThatIsSearchedInNames) {
    EXPECT_EQ(found("/milk/"), (Itemset{1, 2, 3}));
    EXPECT_EQ(found("/^milk$/"), (Itemset{1}));
    EXPECT_EQ(found("/MILK/i"), (Itemset{1, 2, 3, 4}));
    EXPECT_EQ(found("/^(beer|soy.*)$/"), (Itemset{3, 5}));
}

TEST(ItemPattern, TakesASlashBehindABackslashIntoTheExpression) {
    const ItemNames names({{1, "a/b"}, {2, "ab"}, {3, "a\\b"}});
    EXPECT_EQ(found(R"(/a\/b/)", names, {1, 2, 3}), (Itemset{1}));
    EXPECT_EQ(found(R"(/a\\b/)", names, {1, 2, 3}), (Itemset{3}));
}

TEST(ItemPattern, IsTheNumberOfAnItem) {
    EXPECT_EQ(found("#2"), (Itemset{2}));
    EXPECT_EQ(found("#4294967295", groceries, {4294967295}), (Itemset{4294967295}));
}

TEST(ItemPattern, HasAlternativesOfAnyKind) {
    EXPECT_EQ(found("beer|milk"), (Itemset{1, 5}));
    EXPECT_EQ(found("#5|/^Mi|^so/|?hole*"), (Itemset{2, 3, 4, 5}));
}

TEST(ItemPattern, TakesLiterallyWhatABackslashPrecedes) {
    const ItemNames names({{1, "a*"}, {2, "ab"}, {3, "a|b"}, {4, "#1"}, {5, "/x/"}, {6, "a\\b"}, {7, "a*c"}});
    const Itemset items = {1, 2, 3, 4, 5, 6, 7};
    EXPECT_EQ(found(R"(a\*)", names, items), (Itemset{1}));
    EXPECT_EQ(found(R"(a\**)", names, items), (Itemset{1, 7}));
    EXPECT_EQ(found(R"(a\|?)", names, items), (Itemset{3}));
    EXPECT_EQ(found(R"(\#1)", names, items), (Itemset{4}));
    EXPECT_EQ(found(R"(\/x\/)", names, items), (Itemset{5}));
    EXPECT_EQ(found(R"(a\\?)", names, items), (Itemset{6}));
    EXPECT_EQ(found(R"(a\b|ab)", names, items), (Itemset{2, 6}));
}

TEST(ItemPattern, IsTheItemOfExactlyThisNameFirst) {
    const ItemNames names({{1, "a*"}, {2, "ab"}, {3, "a|ab"}, {4, "#2"}, {5, "/b/"}});
    EXPECT_EQ(found("a*", names), (Itemset{1}));
    EXPECT_EQ(found("a|ab", names), (Itemset{3}));
    EXPECT_EQ(found("#2", names), (Itemset{4}));
    EXPECT_EQ(found("/b/", names), (Itemset{5}));
    EXPECT_EQ(found("a*|/b/", names), (Itemset{1, 5}));
}

TEST(ItemPattern, FindsOnlyItemsOfTheInput) {
    EXPECT_EQ(found("*milk", groceries, {2, 5}), (Itemset{2}));
    EXPECT_EQ(
        complaint("milk", groceries, {2, 5}),
        R"(--with: found "milk", which is in no class; expected an item, such as "beer", "whole milk")");
}

TEST(ItemPattern, NamesTheNearestItems) {
    EXPECT_EQ(complaint("mlik"),
              R"(--with: found "mlik"; expected an item, such as "milk", "Milk", "beer", "soy milk", )"
              R"("whole milk")");
    EXPECT_EQ(complaint("beer|mlik").substr(0, 22), R"(--with: found "mlik"; )");
    EXPECT_EQ(complaint("cola*").substr(0, 23), R"(--with: found "cola*"; )");
    EXPECT_EQ(complaint("/mil+k./"),
              R"(--with: found "/mil+k./"; expected an item, such as "milk", "Milk", "soy milk", "beer", )"
              R"("whole milk")");
    EXPECT_EQ(complaint("milk", groceries, {}),
              R"(--with: found "milk", which is in no class; expected nothing, since there is no item)");
}

TEST(ItemPattern, IsWrongWhereOneOfItsPartsMatchesNothing) {
    EXPECT_TRUE(complaint("beer|cola*").starts_with(R"(--with: found "cola*"; expected an item, such as )"));
    EXPECT_TRUE(complaint("/cola/|milk").starts_with(R"(--with: found "/cola/"; expected an item, )"));
}

TEST(ItemPattern, SeesNoColumnInARegularExpression) {
    EXPECT_EQ(complaint("/class=2nd/", table, first_four),
              R"(--with: found "/class=2nd/"; expected an item, such as "class=1st", "class=crew", )"
              R"("sex=male", "sex=female")");
}

TEST(ItemPattern, NamesTheNearestColumns) {
    EXPECT_EQ(complaint("clas=crew", table, first_four),
              R"(--with: found "clas=crew"; expected a column of the input, such as "class", "sex")");
    EXPECT_EQ(complaint("Sex=*", table, first_four),
              R"(--with: found "Sex=*"; expected a column of the input, such as "sex", "class")");
}

TEST(ItemPattern, NamesTheNearestValuesOfAColumn) {
    EXPECT_EQ(complaint("class=2nd", table, first_four),
              R"(--with: found "class=2nd"; expected an item, such as "class=1st", "class=crew")");
    const ItemNames one_value({{1, "x=a"}, {2, "y=a"}, {3, "y=b"}});
    EXPECT_EQ(complaint("x=r", one_value, {1, 2, 3}),
              R"(--with: found "x=r"; expected an item, such as "x=a")");
}

TEST(ItemPattern, NamesTheNumbersThatThereAre) {
    EXPECT_EQ(complaint("#6"), R"(--with: found "#6"; expected the number of an item, from #1 to #5)");
    EXPECT_EQ(complaint("#4294967297"),
              R"(--with: found "#4294967297"; expected the number of an item, from #1 to #5)");
}

TEST(ItemPattern, SaysWhatIsWrongWithItsForm) {
    const std::string part = "expected the name of an item, #NUMBER or /EXPRESSION/";
    EXPECT_EQ(complaint(""), R"(--with "", column 1: found the end; )" + part);
    EXPECT_EQ(complaint("milk|"), R"(--with "milk|", column 6: found the end; )" + part);
    EXPECT_EQ(complaint("milk||beer"), R"(--with "milk||beer", column 6: found "|beer"; )" + part);
    EXPECT_EQ(complaint("#a"),
              R"(--with "#a", column 2: found "a"; expected a number behind #, or \# for a name that begins )"
              "with #");
    EXPECT_EQ(complaint("#1a"), R"(--with "#1a", column 3: found "a"; expected | or the end)");
    EXPECT_EQ(complaint("/milk"),
              R"(--with "/milk", column 6: found the end; expected a second /, or \/ for a name that begins )"
              "with /");
    EXPECT_EQ(complaint("/milk/x"), R"(--with "/milk/x", column 7: found "x"; expected | or the end)");
    EXPECT_EQ(complaint("/(/"), R"(--with: found "/(/" (missing ): (); expected a regular expression)");
}

}  // namespace

}  // namespace korv::tools
