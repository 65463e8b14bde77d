#include "mine/table.h"

#include <gtest/gtest.h>

#include "tools/complaint.h"
#include "tools/named_database.h"

namespace korv::tools {
namespace {

using Names = std::vector<std::string>;

/// What is read of files named a.csv, b.csv and so on.
struct Reading {
    Database database;
    TableReport report;
};

Reading read_files(const std::vector<std::string>& texts, const TableOptions& options = {}) {
    TableReader reader(',', options);
    std::string name = "a.csv";
    for (const std::string& text : texts) {
        reader.add({name, text});
        ++name.front();
    }
    Database database = reader.finish();
    return {std::move(database), reader.report()};
}

Database read(const std::string& text, const TableOptions& options = {}) {
    return read_files({text}, options).database;
}

TableReport report(const std::string& text, const TableOptions& options = {}) {
    return read_files({text}, options).report;
}

std::string complaint(const std::string& text, const TableOptions& options = {}) {
    return complaint_of([&] { read(text, options); });
}

std::string complaint_of_files(const std::vector<std::string>& texts, const TableOptions& options = {}) {
    return complaint_of([&] { read_files(texts, options); });
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

TEST(Table, LeavesOutTheFirstColumnWhereItHasNoName) {
    const std::string text = ",a,b\nx,1,2\ny,1,3\n";
    EXPECT_EQ(read(text).names, (Names{"a=1", "b=2", "b=3"}));
    EXPECT_TRUE(report(text).has_labels);
    EXPECT_EQ(read(text, {.columns = {"*"}}).names, (Names{"a=1", "b=2", "b=3"}));
    EXPECT_EQ(read(text, {.weight_column = "b"}).names, (Names{"a=1"}));
    EXPECT_FALSE(report("n,a\nx,1\n").has_labels);
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
    const Database database = read("age\n30\n10\n20\n40\n", {.bins = {{"age", 2}}});
    EXPECT_EQ(database.names, (Names{"age=10..20", "age=30..40"}));
    EXPECT_EQ(named_columns(database), (NamedColumns{{"age=10..20", {1, 2}}, {"age=30..40", {0, 3}}}));
}

TEST(Table, NeverPartsEqualNumbers) {
    // The place of the first 5 is in the first of two bins, that of the 9 in the second.
    EXPECT_EQ(read("n\n1\n5\n5.0\n9\n5\n", {.bins = {{"n", 2}}}).names, (Names{"n=1..5", "n=9"}));
}

TEST(Table, NamesABinOfOneNumberByIt) {
    EXPECT_EQ(read("n\n2\n1\n", {.bins = {{"n", 5}}}).names, (Names{"n=1", "n=2"}));
}

TEST(Table, NamesABinByTheFirstSpellingOfItsNumbers) {
    EXPECT_EQ(read("n\n1.0\n4.0\n1\n2\n3\n4\n", {.bins = {{"n", 2}}}).names, (Names{"n=1.0..2", "n=3..4.0"}));
    EXPECT_EQ(read("n\n1.0\n1\n1e0\n", {.bins = {{"n", 1}}}).names, (Names{"n=1.0"}));
}

TEST(Table, OrdersNumbersByTheirValue) {
    EXPECT_EQ(read("n\n10\n9\n-1e1\n0.5\n", {.bins = {{"n", 2}}}).names, (Names{"n=-1e1..0.5", "n=9..10"}));
}

TEST(Table, CutsAllColumnsOfNumbersUnlessOneHasItsOwnRule) {
    const Database database = read("a,b,c\n1,1,x\n2,2,2\n3,3,3\n4,4,4\n", {.bins = {{"", 2}, {"b", 1}}});
    EXPECT_EQ(database.names, (Names{"a=1..2", "a=3..4", "b=1..4", "c=x", "c=2", "c=3", "c=4"}));
}

TEST(Table, CutsAroundEmptyCells) {
    EXPECT_EQ(named_columns(read("a,n\nx,1\nx,\nx,2\n", {.bins = {{"n", 2}}})),
              (NamedColumns{{"a=x", {0, 1, 2}}, {"n=1", {0}}, {"n=2", {2}}}));
}

TEST(Table, ReportsAnUnknownColumn) {
    EXPECT_EQ(complaint("a,b\n1,2\n", {.bins = {{"age", 2}}}),
              "--bins: found the column \"age\"; expected one of a.csv: \"a\", \"b\"");
}

TEST(Table, ReportsWhatCannotBeCut) {
    EXPECT_EQ(
        complaint("a,n\nx,1\nx,many\n", {.bins = {{"n", 2}}}),
        "a.csv:3:3: found \"many\"; expected a number such as 1234.5, since --bins cuts the column \"n\"");
}

TEST(Table, ReportsALineWithMoreOrFewerCells) {
    EXPECT_EQ(complaint("a,b\n1,2\n1\n"),
              "a.csv:3:1: found a line of 1 cell; expected 2, as many as the header has");
    EXPECT_EQ(complaint("a,b\n1,2,3\n"),
              "a.csv:2:1: found a line of 3 cells; expected 2, as many as the header has");
    EXPECT_EQ(complaint("a,b\n1,2,\n"),
              "a.csv:2:1: found a line of 3 cells, the last of them empty; expected 2, as many as the header "
              "has");
}

TEST(Table, ReportsAHeaderWithoutOrWithTheSameNames) {
    EXPECT_EQ(complaint("a,,b\n1,2,3\n"),
              "a.csv:1:3: found a column without a name; expected a name for each column");
    EXPECT_EQ(complaint("a,\n1,2\n"),
              "a.csv:1:3: found a column without a name; expected a name for each column, and no separator "
              "behind the last");
    EXPECT_EQ(
        complaint("a,a\n1,2\n"),
        "a.csv:1:3: found the name \"a\" twice in the header; expected a different name for each column");
    EXPECT_EQ(complaint(""), "a.csv:1:1: found nothing; expected a line with the names of the columns");
}

TEST(Table, ReportsItemsOfTwoColumnsThatHaveOneName) {
    EXPECT_EQ(complaint("a,a=b\nb=c,c\n"),
              "a.csv: found the item \"a=b=c\" in the columns \"a\" and \"a=b\"; expected a different name "
              "for each "
              "item");
}

TEST(Table, HasNoMoreBinsThanCells) {
    EXPECT_EQ(read("n\n2\n1\n3\n", {.bins = {{"n", 18446744073709551615U}}}).names,
              (Names{"n=1", "n=2", "n=3"}));
}

TEST(Table, ReportsATableWithoutItems) {
    EXPECT_EQ(complaint("a,b\n,\n"), "a.csv: found no item; expected a header and one transaction a line");
}

TEST(Table, ReadsTheColumnsThatAreNamedButNotIgnored) {
    EXPECT_EQ(read("id,age,sex\n7,x,f\n8,y,m\n", {.columns = {"id", "a*"}, .ignored = {"i?"}}).names,
              (Names{"age=x", "age=y"}));
}

TEST(Table, ChecksNoCellsOfColumnsThatAreIgnored) {
    EXPECT_EQ(read("id,a\n\"x\ty\",1\n", {.ignored = {"id"}}).names, (Names{"a=1"}));
}

TEST(Table, LeavesOutCellsThatAreMissing) {
    EXPECT_EQ(read("a\nNA\n\"NaN\"\nnull\n?\nNULL\nna\n").names, (Names{"a=NULL", "a=na"}));
    EXPECT_EQ(read("a\nNA\n-\n\n", {.missing = {"-"}}).names, (Names{"a=NA"}));
    EXPECT_EQ(read("a\nNA\n", {.missing = {}}).names, (Names{"a=NA"}));
}

TEST(Table, CutsAroundCellsThatAreMissing) {
    const TableOptions options = {.bins = {{"", 1}, {"m", 1}}};
    const auto [database, report] = read_files({"n,m\n1,5\nNA,?\n2,6\n"}, options);
    EXPECT_EQ(named_columns(database), (NamedColumns{{"n=1..2", {0, 2}}, {"m=5..6", {0, 2}}}));
    EXPECT_TRUE(report.uncut.empty());
}

TEST(Table, LeavesColumnsOfAtMostAsManyNumbersAsBinsAsTheyAre) {
    EXPECT_EQ(read("pclass\n3\n1\n3\n2\n1\n", {.bins = {{"", 3}}}).names,
              (Names{"pclass=3", "pclass=1", "pclass=2"}));
    EXPECT_EQ(read("pclass\n3\n1\n3\n2\n1\n", {.bins = {{"", 2}}}).names, (Names{"pclass=1..2", "pclass=3"}));
}

TEST(Table, CountsDifferentSpellingsOfANumberOnceForThat) {
    EXPECT_EQ(read("n\n1\n1.0\n2\n", {.bins = {{"", 2}}}).names, (Names{"n=1", "n=1.0", "n=2"}));
}

TEST(Table, RuleForColumnsOfManyNumbersLeavesTheOthersAndNamesWhatItCuts) {
    const TableOptions options = {.bins = {{.column = "", .bins = 2, .points = {}, .more_than = 3}}};
    const std::string text = "few,many,word\n1,1,a\n2,2,b\n3,3,c\n3,4,d\n";

    EXPECT_EQ(read(text, options).names, (Names{"few=1", "few=2", "few=3", "many=1..2", "many=3..4", "word=a",
                                                "word=b", "word=c", "word=d"}));
    EXPECT_EQ(report(text, options).cut, Names{"many"});
}

TEST(Table, RuleForColumnsOfManyNumbersStillTakesMoreNumbersThanBins) {
    EXPECT_EQ(read("n\n1\n2\n", {.bins = {{.column = "", .bins = 2, .points = {}, .more_than = 1}}}).names,
              (Names{"n=1", "n=2"}));
}

TEST(Table, ColumnsThatOtherRulesCutAreNotNamed) {
    EXPECT_TRUE(report("n\n1\n2\n3\n", {.bins = {{"", 2}}}).cut.empty());
}

TEST(Table, CutsAColumnThatIsNamedInAnyCase) {
    EXPECT_EQ(read("n\n1\n2\n", {.bins = {{"", 5}, {"n", 1}}}).names, (Names{"n=1..2"}));
}

TEST(Table, CutsAColumnAtPoints) {
    EXPECT_EQ(named_columns(read("age\n20\n9\n10\n30\n", {.bins = {{"age", 4, {"10", "20", "40"}}}})),
              (NamedColumns{{"age=..<10", {1}}, {"age=10..<20", {2}}, {"age=20..<40", {0, 3}}}));
}

TEST(Table, ReportsWhatKeptAColumnFromBeingCut) {
    const TableReport said =
        report("a,n,m\nx,1,\n\"\ny\",2,b\nz,many,3\n", {.columns = {"n", "m"}, .bins = {{"", 1}}});
    ASSERT_EQ(said.uncut.size(), 2U);
    EXPECT_EQ(said.uncut[0].name, "n");
    EXPECT_EQ(said.uncut[0].cell, "many");
    EXPECT_EQ(said.uncut[0].file, "a.csv");
    EXPECT_EQ(said.uncut[0].place.line, 5U);
    EXPECT_EQ(said.uncut[0].place.column, 3U);
    EXPECT_TRUE(said.uncut[0].has_numbers);
    EXPECT_EQ(said.uncut[1].name, "m");
    EXPECT_EQ(said.uncut[1].cell, "b");
    EXPECT_EQ(said.uncut[1].place.line, 4U);
    EXPECT_EQ(said.uncut[1].place.column, 6U);
}

TEST(Table, ReportsUncutColumnsOfWhatPeopleTakeForNumbers) {
    const TableReport said = report(
        "a,b,c,d,e\n\"1,5\",5%,2024-01-12,-$ 7,1..2\n\"2,5\",6%,2024-01-13,-$ 8,1..3\n", {.bins = {{"", 1}}});
    std::vector<bool> has_numbers;
    for (const UncutColumn& column : said.uncut) {
        has_numbers.push_back(column.has_numbers);
    }
    EXPECT_EQ(has_numbers, (std::vector<bool>{true, true, false, true, true}));
}

TEST(Table, SaysWhichColumnToLeaveOutForItsCells) {
    EXPECT_TRUE(complaint("n,a\n1,x\x01y\n", {})
                    .ends_with("such as tabs and line ends; --ignore leaves the column \"a\" out"));
    EXPECT_EQ(complaint("n,a\n1,x\x01y\n", {.ignored = {"a"}}), "");
}

TEST(Table, ReportsSeveralColumnsOfALineThatAreNotCut) {
    const TableReport said = report("a,b,c\n1,2,3\n1x,2y,3z\n", {.bins = {{"", 1}}});
    ASSERT_EQ(said.uncut.size(), 3U);
    EXPECT_EQ(said.uncut[0].place.column, 1U);
    EXPECT_EQ(said.uncut[1].place.column, 4U);
    EXPECT_EQ(said.uncut[2].place.column, 7U);
    EXPECT_EQ(said.uncut[2].place.line, 3U);
}

TEST(Table, ReportsWhatKeptAColumnFromBeingCutInTheFileThatHasIt) {
    const TableReport said = read_files({"a,n\nx,1\n", "a,n\ny,2\nz,many\n", "a,n\nz,none\n"},
                                        {.columns = {"n"}, .bins = {{"", 1}}})
                                 .report;
    ASSERT_EQ(said.uncut.size(), 1U);
    EXPECT_EQ(said.uncut[0].file, "b.csv");
    EXPECT_EQ(said.uncut[0].cell, "many");
    EXPECT_EQ(said.uncut[0].place.line, 3U);
    EXPECT_EQ(said.uncut[0].place.column, 3U);
}

TEST(Table, SaysThatAColumnHasNoNumbers) {
    const TableReport said = report("a\nx\ny\n", {.bins = {{"", 1}}});
    ASSERT_EQ(said.uncut.size(), 1U);
    EXPECT_FALSE(said.uncut[0].has_numbers);
}

TEST(Table, DoesNotReportColumnsWithTooFewValuesToBeCut) {
    EXPECT_TRUE(report("a\n1\nmany\n", {.bins = {{"", 2}}}).uncut.empty());
}

TEST(Table, SplitsCellsIntoAnswers) {
    const Database database =
        read("id,tongues\n1,de; en\n2,\n3,\"en;fr;;en; NA\"\n", {.splits = {{"tongues", ";"}}});
    EXPECT_EQ(database.names, (Names{"id=1", "id=2", "id=3", "tongues=de", "tongues=en", "tongues=fr"}));
    EXPECT_EQ(named_columns(database).at("tongues=en"), (std::vector<Transaction>{0, 2}));
    EXPECT_EQ(named_columns(database).at("tongues=fr"), (std::vector<Transaction>{2}));
}

TEST(Table, SplitsAtSeparatorsOfSeveralBytesOrLineEnds) {
    EXPECT_EQ(read("a\nx || y | z\n", {.splits = {{"a", "||"}}}).names, (Names{"a=x", "a=y | z"}));
    EXPECT_EQ(read("a\n\"x\ny\"\n", {.splits = {{"a", "\n"}}}).names, (Names{"a=x", "a=y"}));
}

TEST(Table, ChecksEachAnswer) {
    EXPECT_TRUE(complaint("a\n\"x;\ty\"\n", {.splits = {{"a", ";"}}}).empty());
    EXPECT_TRUE(complaint("a\n\"x;y\tz\"\n", {.splits = {{"a", ";"}}}).starts_with("a.csv:2:"));
}

TEST(Table, TakesFlagsInAnySpelling) {
    EXPECT_EQ(
        named_columns(read("a,b,c\n1,YES,True\n0,No,FALSE\nx,y,T\nn,f,\n?,X,NA\n", {.only_true = true})),
        (NamedColumns{{"a", {0, 2}}, {"b", {0, 2, 4}}, {"c", {0, 2}}}));
}

TEST(Table, ReportsWhatIsNoFlag) {
    EXPECT_EQ(complaint("a,b\n1,0\n1,2\n", {.only_true = true}),
              "a.csv:3:3: found \"2\"; expected 1, yes, true, y, t or x, or 0, no, false, n or f, since "
              "--only-true is given; --ignore leaves the column \"b\" out");
}

TEST(Table, CutsAndSplitsColumnsOfTheirOwnRulesAmongFlags) {
    EXPECT_EQ(
        read("a,n,s\n1,5,x;y\n0,6,\n", {.bins = {{"n", 1}}, .splits = {{"s", ";"}}, .only_true = true}).names,
        (Names{"a", "n=5..6", "s=x", "s=y"}));
}

TEST(Table, CountsALineAsOftenAsItsWeightSays) {
    const Database database = read("a,n,b\nx,3,y\nz,1,y\n", {.weight_column = "n"});
    EXPECT_EQ(named_columns(database), (NamedColumns{{"a=x", {0}}, {"a=z", {1}}, {"b=y", {0, 1}}}));
    EXPECT_EQ(database.lines, 2U);
    EXPECT_EQ(database.weights, (std::vector<Count>{3, 1}));
    EXPECT_EQ(database.transactions, 4U);
}

TEST(Table, HasNoWeightsWhereEachLineStandsForOneTransaction) {
    EXPECT_TRUE(read("a,n\nx,1\ny,1\n", {.weight_column = "n"}).weights.empty());
}

TEST(Table, LeavesOutLinesWithoutWeight) {
    const auto [database, report] = read_files({"a,n\nx,0\ny,2\nz,0\n"}, {.weight_column = "n"});
    EXPECT_EQ(named_columns(database), (NamedColumns{{"a=y", {0}}}));
    EXPECT_EQ(database.transactions, 2U);
    EXPECT_EQ(report.left_out, 2U);
}

TEST(Table, CutsByTheWeights) {
    EXPECT_EQ(read("k,w\n1,1\n2,1\n3,4\n4,1\n5,1\n", {.bins = {{"k", 2}}, .weight_column = "w"}).names,
              (Names{"k=1..3", "k=4..5"}));
}

TEST(Table, ReportsWhatIsNoWeight) {
    const std::string expected =
        "; expected a whole number in the column \"n\", for how many transactions the line stands";
    const TableOptions options = {.weight_column = "n"};
    EXPECT_EQ(complaint("a,n\nx,1.0\n", options), "a.csv:2:3: found \"1.0\"" + expected);
    EXPECT_EQ(complaint("a,n\nx,-1\n", options), "a.csv:2:3: found \"-1\"" + expected);
    EXPECT_EQ(complaint("a,n\nx,\n", options), "a.csv:2:3: found \"\"" + expected);
    EXPECT_EQ(complaint("a,n\n\n", options), "a.csv:2:1: found a blank line" + expected);
}

TEST(Table, TakesAsManyTransactionsAsCanBeCounted) {
    const TableOptions options = {.weight_column = "n"};
    EXPECT_EQ(read("a,n\nx,2147483646\ny,1\n", options).transactions, 2147483647U);
    EXPECT_EQ(complaint("a,n\nx,2147483646\ny,2\n", options),
              "a.csv:3:1: found more than 2147483647 transactions; expected at most that many");
    EXPECT_EQ(complaint("a,n\nx,18446744073709551615\n", options),
              "a.csv:2:1: found more than 2147483647 transactions; expected at most that many");
}

TEST(Table, ReportsColumnsThatSayTheSameInOtherWords) {
    const TableReport said =
        report("survived,sex,alive,empty,deck\n1,m,yes,,b\n0,f,no,,b\n1,f,yes,NA,\n,f,?,,a\n");
    EXPECT_EQ(said.twins, (std::vector<Names>{{"survived", "alive"}}));
}

TEST(Table, ReportsColumnsThatAreCutInTheSameWay) {
    EXPECT_EQ(report("cm,inch\n150,59\n180,71\n170,67\n200,79\n", {.bins = {{"", 2}}}).twins,
              (std::vector<Names>{{"cm", "inch"}}));
}

/// A table with the columns "id" and "kind": the lines from 1 to `lines`, numbered, of two kinds.
std::string numbered_lines(int lines) {
    std::string text = "id,kind\n";
    for (int line = 1; line <= lines; ++line) {
        text += std::to_string(line) + (line % 2 == 0 ? ",even\n" : ",odd\n");
    }
    return text;
}

TEST(Table, ReportsColumnsWithADifferentCellInEachLine) {
    EXPECT_EQ(report(numbered_lines(21)).identifiers, Names{"id"});
    EXPECT_EQ(report(numbered_lines(20)).identifiers, Names{});
    EXPECT_EQ(report(numbered_lines(300) + "300,even\n").identifiers, Names{});
}

TEST(Table, ReportsIdentifiersThatHardlyEverLack) {
    EXPECT_EQ(report(numbered_lines(38) + "NA,odd\n,even\n").identifiers, Names{"id"});    // 2 of 40
    EXPECT_EQ(report(numbered_lines(36) + "NA,odd\nNA,even\n").identifiers, Names{});      // 2 of 38
    EXPECT_EQ(report(numbered_lines(40) + "NA,odd\nNA,even\n").identifiers, Names{"id"});  // 2 of 42
    EXPECT_EQ(report(numbered_lines(40) + "NA,odd\n40,even\n").identifiers, Names{});      // 40 twice
}

TEST(Table, ReportsNoIdentifierThatIsCutSplitOrLeftOut) {
    const std::string text = numbered_lines(30);
    EXPECT_EQ(report(text, {.bins = {{"id", 3}}}).identifiers, Names{});
    EXPECT_EQ(report(text, {.bins = {{"", 3}}}).identifiers, Names{});
    EXPECT_EQ(report(text, {.bins = {{"", 30}}}).identifiers, Names{"id"});  // too few values to be cut
    EXPECT_EQ(report(text, {.splits = {{"id", ";"}}}).identifiers, Names{});
    EXPECT_EQ(report(text, {.ignored = {"id"}}).identifiers, Names{});
}

TEST(Table, ReportsIdentifiersOfLinesWithWeights) {
    EXPECT_EQ(report(numbered_lines(30), {.weight_column = "id"}).identifiers, Names{});
    std::string text = "id,n\n0,0\n0,0\n";
    for (int line = 1; line <= 21; ++line) {
        text += std::to_string(line) + ",5\n";
    }
    EXPECT_EQ(report(text, {.weight_column = "n"}).identifiers, Names{"id"});
}

TEST(Table, ReadsSeveralFilesOneAfterTheOther) {
    const Database database = read_files({"a,b\nx,y\n", "a,\"b\"\r\nz,y", "a,b\n"}).database;
    EXPECT_EQ(named_columns(database), (NamedColumns{{"a=x", {0}}, {"a=z", {1}}, {"b=y", {0, 1}}}));
    EXPECT_EQ(database.transactions, 2U);
}

TEST(Table, ReportsAHeaderThatDiffersFromTheFirst) {
    EXPECT_EQ(complaint_of_files({"a,b\n1,2\n", "a,c\n1,2\n"}),
              "b.csv:1:3: found \"c\"; expected \"b\", as in the header of a.csv");
    EXPECT_EQ(complaint_of_files({"a,b\n1,2\n", "a\n1\n"}),
              "b.csv:1:1: found a header of 1 cell; expected 2, as many as that of a.csv");
    EXPECT_EQ(complaint_of_files({"a,b\n1,2\n", ""}),
              "b.csv:1:1: found nothing; expected a line with the names of the columns");
}

TEST(Table, ReportsOptionsThatContradictEachOther) {
    EXPECT_EQ(complaint("a\n1\n", {.bins = {{"a", 2}, {"a", 3}}}),
              "--bins: found a second rule for the column \"a\"; expected one at most");
}

TEST(Table, ReportsAnItemThatTheNamesFileCannotHold) {
    EXPECT_NE(complaint("a\n\"x\ty\"\n"), "");
    EXPECT_NE(complaint("\"x\ty\"\n1\n"), "");
}

TEST(Table, HasManyMoreValuesThanABytesWorth) {
    std::string text = "n,m\n";
    for (int i = 0; i < 70'000; ++i) {
        text += std::to_string(i) + "," + std::to_string(i % 300) + "\n";
    }
    const Database database = read(text);
    ASSERT_EQ(database.items.size(), 70'300U);
    EXPECT_EQ(database.names[69'999], "n=69999");
    EXPECT_EQ(database.items[69'999].transactions, (std::vector<Transaction>{69'999}));
    EXPECT_EQ(database.names[70'000 + 299], "m=299");
    EXPECT_EQ(database.items[70'000 + 299].item, 70'300U);
    EXPECT_EQ(database.items[70'000 + 299].transactions.size(), 233U);  // 299, 599, ..., 69,899
    EXPECT_EQ(database.items[70'000 + 299].transactions[1], 599U);
}

/// Admissions by sex and place, each combination once, with a column of another name.
std::string admissions(const std::string& name, const std::string& last_count = "8") {
    return "sex,place,admitted," + name + "\nm,A,yes,512\nm,A,no,313\nm,B,yes,353\nm,B,no,207\nf,A,yes,89\n" +
           "f,A,no,19\nf,B,yes,17\nf,B,no," + last_count + "\n";
}

TEST(TableReport, NamesAColumnThatLooksLikeCounts) {
    EXPECT_EQ(report(admissions("Freq")).counts, "Freq");
    EXPECT_EQ(report(admissions("n")).counts, "n");
    EXPECT_EQ(report(admissions("Freq"), {.weight_column = "Freq"}).counts, "");
}

TEST(TableReport, NamesNoColumnOfCountsInDoubt) {
    EXPECT_EQ(report(admissions("price")).counts, "");
    EXPECT_EQ(report(admissions("Freq", "8.5")).counts, "");
    EXPECT_EQ(report(admissions("Freq") + "f,B,no,9\n").counts, "");  // a combination twice
    // The first column tells the lines apart by itself.
    EXPECT_EQ(report("id,sex,n\n1,m,3\n2,m,4\n3,f,5\n4,f,6\n").counts, "");
}

}  // namespace
}  // namespace korv::tools
