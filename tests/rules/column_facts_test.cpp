#include "rules/column_facts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "support/loaded_classes.h"

namespace korv::tools {

namespace {

/// Three classes, two sexes and a word that is in no column.
const ItemNames& names() {
    static const ItemNames all({{1, "class=1st"},
                                {2, "class=2nd"},
                                {3, "class=crew"},
                                {4, "sex=female"},
                                {5, "sex=male"},
                                {6, "rich"}});
    return all;
}

/// Classes of 100 transactions in which every one has a class and a sex.
ColumnFacts facts(const std::string& more = "") {
    const test::LoadedClasses classes(
        "1\t20\t 1,\n2\t30\t 2,\n3\t50\t 3,\n4\t40\t 4,\n5\t60\t 5,\n6\t10\t 6,\n" + more);
    return {names(), classes.classes, 100};
}

/// A side as items, with a minus sign before them where it is negated.
std::string text_of(const WordedSide& side) {
    std::string text = side.is_negated ? "-" : "";
    for (const Item item : side.items) {
        text += std::to_string(item);
    }
    return text;
}

std::string wording(const Itemset& itemset, bool is_negated) {
    return text_of(facts().worded(itemset).side(is_negated));
}

TEST(ColumnFacts, WordASideByTheShorterRestOfAnExhaustiveColumn) {
    EXPECT_EQ(wording({1, 2}, false), "-3");
    EXPECT_EQ(wording({1, 2}, true), "3");
}

TEST(ColumnFacts, TellWhetherTwoItemsetsShareAnExclusiveColumn) {
    const auto share = [](const Itemset& one, const Itemset& other, const std::string& more = "") {
        return facts(more).share_a_column(one, other);
    };
    EXPECT_TRUE(share({1}, {2}));
    EXPECT_TRUE(share({4, 6}, {1, 5}));
    EXPECT_FALSE(share({1, 2, 6}, {4}));
    EXPECT_FALSE(share({6}, {6}));
    EXPECT_FALSE(share({1}, {2}, "1 2\t40\t 1 2,\n"));  // 10 transactions hold both
}

TEST(ColumnFacts, WordASideByItsItemsWhereTheseAreFewer) {
    EXPECT_EQ(wording({3}, false), "3");
    EXPECT_EQ(wording({3}, true), "-3");
}

TEST(ColumnFacts, WordASidePlainWhereBothAreEquallyLong) {
    EXPECT_EQ(wording({4}, false), "4");
    EXPECT_EQ(wording({4}, true), "5");
}

TEST(ColumnFacts, LeaveSidesOfSeveralColumnsOrOfAWholeOneAsTheyAre) {
    EXPECT_EQ(wording({1, 4}, true), "-14");
    EXPECT_EQ(wording({1, 2, 6}, true), "-126");
    EXPECT_EQ(wording({1, 2, 3}, false), "123");
    EXPECT_EQ(wording({6}, true), "-6");
}

std::string named(const Itemset& itemset, bool is_negated) {
    Itemset items = facts().named_items({itemset, is_negated});
    std::ranges::sort(items);
    return text_of({items, false});
}

TEST(ColumnFacts, NameTheItemsByWhichASideIsSaid) {
    // Neither female nor 1st: male, and not 1st.
    EXPECT_EQ(named({1, 4}, true), "15");
    EXPECT_EQ(named({1, 4}, false), "14");
    EXPECT_EQ(named({1, 2, 4, 6}, true), "356");
    EXPECT_EQ(named({1, 2, 4, 6}, false), "346");
    EXPECT_EQ(named({6}, true), "6");
}

TEST(ColumnFacts, LetTheShorterOfAnItemsetAndTheRestStandForBoth) {
    EXPECT_FALSE(facts().worded(Itemset{3}).is_turned());
    EXPECT_TRUE(facts().worded(Itemset{1, 2}).is_turned());
    EXPECT_FALSE(facts().worded(Itemset{4}).is_turned());
    EXPECT_TRUE(facts().worded(Itemset{5}).is_turned());
    EXPECT_FALSE(facts().worded(Itemset{5, 6}).is_turned());
}

bool imply(const Itemset& premise, bool is_premise_negated, const Itemset& conclusion,
           bool is_conclusion_negated, const std::string& more = "") {
    return facts(more).imply({premise, is_premise_negated}, {conclusion, is_conclusion_negated});
}

TEST(ColumnFacts, ImplyThatTheValuesOfAColumnExcludeEachOther) {
    EXPECT_TRUE(imply({1}, false, {2, 3}, true));
    EXPECT_FALSE(imply({1}, false, {2, 3}, false));
    EXPECT_FALSE(imply({1}, false, {2, 4}, true));
    EXPECT_FALSE(imply({1}, false, {4}, true));
    EXPECT_FALSE(imply({6}, false, {6}, true));
}

TEST(ColumnFacts, ImplyThatEveryTransactionHasAValueOfAnExhaustiveColumn) {
    EXPECT_TRUE(imply({4}, true, {5}, false));
    EXPECT_TRUE(imply({1, 4}, true, {5}, false));
    EXPECT_FALSE(imply({1}, true, {2, 5}, false));
    EXPECT_FALSE(imply({1}, true, {2}, true));
}

TEST(ColumnFacts, KnowNothingOfAColumnWhoseItemsMeet) {
    // 45 have 1st or 2nd, less than 20 and 30: some have both.
    const std::string more = "1 2\t45\t 1 2,\n";
    EXPECT_FALSE(imply({1}, false, {3}, true, more));
    EXPECT_TRUE(imply({4}, false, {5}, true, more));
    // 50 are no less than 20 and 30 together.
    EXPECT_TRUE(imply({1}, false, {3}, true, "1 2\t50\t 1 2,\n"));
}

TEST(ColumnFacts, KnowThatItemsMeetByAnyClassAroundThem) {
    // 4 and 5 are in 60 together with 6, less than 40 and 60.
    EXPECT_FALSE(imply({4}, false, {5}, true, "4 5 6\t60\t 4 6,\n"));
    // 7 and 1 are in 3 of 4 transactions, but 3 and 1 of them: the sum says so alone.
    const test::LoadedClasses classes("6 7\t1\t 6, 7,\n1 6 7\t3\t 1,\n");
    const ColumnFacts facts_of_two(ItemNames({{1, "c=1"}, {7, "c=7"}}), classes.classes, 4);
    EXPECT_FALSE(facts_of_two.imply({Itemset{1}, false}, {Itemset{7}, true}));
}

TEST(ColumnFacts, KnowThatItemsMeetThatAreInMoreTransactionsThanThereAre) {
    const test::LoadedClasses classes("4\t40\t 4,\n5\t61\t 5,\n");
    EXPECT_FALSE(ColumnFacts(names(), classes.classes, 100).imply({Itemset{4}, false}, {Itemset{5}, true}));
}

TEST(ColumnFacts, DoNotTakeAColumnForExhaustiveOfWhichSomeHaveNoValue) {
    const test::LoadedClasses classes("4\t40\t 4,\n5\t59\t 5,\n");
    const ColumnFacts some_without(names(), classes.classes, 100);
    EXPECT_EQ(text_of(some_without.worded(Itemset{4}).side(true)), "-4");
    EXPECT_FALSE(some_without.imply({Itemset{4}, true}, {Itemset{5}, false}));
    EXPECT_TRUE(some_without.imply({Itemset{4}, false}, {Itemset{5}, true}));
}

TEST(ColumnFacts, OfTransactionsSayWhetherItemsMeet) {
    // Lines: 4; 5; 5 and 1; 1 and 2.
    Database database;
    database.items = {{1, {2, 3}}, {2, {3}}, {4, {0}}, {5, {1, 2}}};
    database.lines = 4;
    database.transactions = 4;
    const ColumnFacts of_transactions(names(), database);
    EXPECT_FALSE(of_transactions.imply({Itemset{1}, false}, {Itemset{2}, true}));
    EXPECT_TRUE(of_transactions.imply({Itemset{4}, false}, {Itemset{5}, true}));
    // The last line has no sex.
    EXPECT_FALSE(of_transactions.imply({Itemset{4}, true}, {Itemset{5}, false}));
}

}  // namespace

}  // namespace korv::tools
