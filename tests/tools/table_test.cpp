#include "mine/table.h"

#include <gtest/gtest.h>

#include "tools/complaint.h"
#include "tools/named_database.h"

namespace korv::tools {
namespace {

using Names = std::vector<std::string>;

Database read(const std::string& text, const std::vector<BinRule>& rules = {}) {
    return read_table({"a.csv", text}, ',', rules);
}

std::string complaint(const std::string& text, const std::vector<BinRule>& rules = {}) {
    return complaint_of([&] { read(text, rules); });
}

TEST(Table, MakesAnItemOfEachCell) {
    const Database database = read("class,age\n1st,adult\n3rd,child\n3rd,adult\n");
    EXPECT_EQ(database.names, (Names{"class=1st", "class=3rd", "age=adult", "age=child"}));
    EXPECT_EQ(database.transactions, 3U);
    EXPECT_EQ(
        named_columns(database),
        (NamedColumns{{"class=1st", {0}}, {"class=3rd", {1, 2}}, {"age=adult", {0, 2}}, {"age=child", {1}}}));
}

TEST(Table, LeavesOutEmptyCells) {
    EXPECT_EQ(named_columns(read("a,b\n1,\n,2\n")), (NamedColumns{{"a=1", {0}}, {"b=2", {1}}}));
}

TEST(Table, TakesABlankLineForAnEmptyTransaction) {
    const Database database = read("a,b\n1,2\n\n3,4\n");
    EXPECT_EQ(database.transactions, 3U);
    EXPECT_EQ(named_columns(database).at("a=3"), (std::vector<Transaction>{2}));
}

TEST(Table, TellsEqualValuesOfColumnsApart) {
    EXPECT_EQ(read("a,b\nx,x\n").names, (Names{"a=x", "b=x"}));
}

TEST(Table, CutsNumbersIntoBinsOfAsManyCells) {
    const Database database = read("age\n30\n10\n20\n40\n", {{"age", 2}});
    EXPECT_EQ(database.names, (Names{"age=10..20", "age=30..40"}));
    EXPECT_EQ(named_columns(database), (NamedColumns{{"age=10..20", {1, 2}}, {"age=30..40", {0, 3}}}));
}

TEST(Table, NeverPartsEqualNumbers) {
    // The place of the first 5 is in the first of two bins, that of the 9 in the second.
    EXPECT_EQ(read("n\n1\n5\n5.0\n9\n5\n", {{"n", 2}}).names, (Names{"n=1..5", "n=9"}));
}

TEST(Table, NamesABinOfOneNumberByIt) {
    EXPECT_EQ(read("n\n2\n1\n", {{"n", 5}}).names, (Names{"n=1", "n=2"}));
}

TEST(Table, NamesABinByTheFirstSpellingOfItsNumbers) {
    EXPECT_EQ(read("n\n1.0\n4.0\n1\n2\n3\n4\n", {{"n", 2}}).names, (Names{"n=1.0..2", "n=3..4.0"}));
    EXPECT_EQ(read("n\n1.0\n1\n1e0\n", {{"n", 1}}).names, (Names{"n=1.0"}));
}

TEST(Table, OrdersNumbersByTheirValue) {
    EXPECT_EQ(read("n\n10\n9\n-1e1\n0.5\n", {{"n", 2}}).names, (Names{"n=-1e1..0.5", "n=9..10"}));
}

TEST(Table, CutsAllColumnsOfNumbersUnlessOneHasItsOwnRule) {
    const Database database = read("a,b,c\n1,1,x\n2,2,2\n3,3,3\n4,4,4\n", {{"", 2}, {"b", 1}});
    EXPECT_EQ(database.names, (Names{"a=1..2", "a=3..4", "b=1..4", "c=x", "c=2", "c=3", "c=4"}));
}

TEST(Table, CutsAroundEmptyCells) {
    EXPECT_EQ(named_columns(read("a,n\nx,1\nx,\nx,2\n", {{"n", 2}})),
              (NamedColumns{{"a=x", {0, 1, 2}}, {"n=1", {0}}, {"n=2", {2}}}));
}

TEST(Table, ReportsAnUnknownColumn) {
    EXPECT_EQ(complaint("a,b\n1,2\n", {{"age", 2}}),
              "--bins: found the column \"age\"; expected one of a.csv: \"a\", \"b\"");
}

TEST(Table, ReportsWhatCannotBeCut) {
    EXPECT_EQ(complaint("a,n\nx,1\nx,many\n", {{"n", 2}}),
              "a.csv:3:3: found \"many\"; expected a number, since --bins cuts the column \"n\"");
}

TEST(Table, ReportsALineWithMoreOrFewerCells) {
    EXPECT_EQ(complaint("a,b\n1,2\n1\n"),
              "a.csv:3:1: found a line of 1; expected 2 cells, as many as the header has");
    EXPECT_EQ(complaint("a,b\n1,2,3\n"),
              "a.csv:2:1: found a line of 3; expected 2 cells, as many as the header has");
}

TEST(Table, ReportsAHeaderWithoutOrWithTheSameNames) {
    EXPECT_EQ(complaint("a,\n1,2\n"),
              "a.csv:1:3: found a column without a name; expected a name for each column");
    EXPECT_EQ(complaint("a,a\n1,2\n"),
              "a.csv:1:3: found \"a\"; expected a name of a column that no other has");
    EXPECT_EQ(complaint(""), "a.csv:1:1: found nothing; expected a line with the names of the columns");
}

TEST(Table, ReportsItemsOfTwoColumnsThatHaveOneName) {
    EXPECT_EQ(complaint("a,a=b\nb=c,c\n"),
              "a.csv:2:5: found \"a=b=c\"; expected an item that no column before has");
}

TEST(Table, HasNoMoreBinsThanCells) {
    EXPECT_EQ(read("n\n2\n1\n3\n", {{"n", 18446744073709551615U}}).names, (Names{"n=1", "n=2", "n=3"}));
}

TEST(Table, ReportsATableWithoutItems) {
    EXPECT_EQ(complaint("a,b\n,\n"), "a.csv: found no item; expected a header and one transaction a line");
}

}  // namespace
}  // namespace korv::tools
