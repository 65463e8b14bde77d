#include "mine/summary.h"

#include <gtest/gtest.h>

#include "tools/random_database.h"

namespace korv::tools {
namespace {

/// 10 in two transactions, 11 in two, 12 in one. At a minimum support of 1, there are four classes, of 10, of
/// 12, of 11 with 12, and of all.
const Database database = database_of({0b011, 0b001, 0b110});

/// What a run would have done, by default to a file from numbers without names.
class SummaryTest : public ::testing::Test {
protected:
    std::string text() const {
        return summary({.database = figures_of(database_, options_.min_support),
                        .reading = reading_,
                        .options = options_,
                        .classes = classes_.figures(),
                        .is_complete = is_complete_,
                        .output = output_,
                        .names = names_,
                        .seconds = 1.234});
    }

    /// The lines behind those with numbers.
    std::string notes() const {
        const std::string all = text();
        const std::size_t behind = all.find(" MiB\n");
        return behind == std::string::npos ? all : all.substr(behind + 5);
    }

    Database database_ = database;
    ReadingReport reading_;
    MiningOptions options_ = {.min_support = 2};
    MinedClasses classes_ = mine(database, {.min_support = 1}).classes;
    bool is_complete_ = true;
    std::string output_ = "data/groceries.classes";
    std::string names_;
};

TEST_F(SummaryTest, CountsAndSaysHowToGoOn) {
    const std::string summary = text();
    EXPECT_TRUE(
        summary.starts_with("input               fimi\n"
                            "transactions        3\n"
                            "items               3\n"
                            "frequent items      2\n"
                            "essential itemsets  4\n"
                            "classes             4\n"
                            "largest closure     3 items\n"
                            "class file          52 bytes\n"
                            "time                1.23 s\n"
                            "peak memory         "))
        << summary;
    EXPECT_EQ(notes(), "To derive rules: korv groceries data/groceries.classes 2 0.8 3\n");
}

TEST_F(SummaryTest, CountsEmptyTransactions) {
    reading_.empty_transactions = 7;
    EXPECT_NE(text().find("\nempty transactions  7\n"), std::string::npos) << text();
}

TEST_F(SummaryTest, SaysThatClassesAreMissing) {
    is_complete_ = false;
    EXPECT_NE(text().find("\nclasses             4, which are not all\n"), std::string::npos) << text();
}

TEST_F(SummaryTest, QuotesPathsForTheShell) {
    output_ = "my t's.classes";
    EXPECT_EQ(notes(), "To derive rules: korv 'my t'\\''s' 'my t'\\''s.classes' 2 0.8 3\n");
}

TEST_F(SummaryTest, LeavesTheNamesOpenForStandardOutput) {
    output_ = "-";
    EXPECT_EQ(notes(), "To derive rules: korv NAME CLASSES 2 0.8 3\n");
    output_ = "/dev/null";
    EXPECT_EQ(notes(), "To derive rules: korv NAME CLASSES 2 0.8 3\n");
}

TEST_F(SummaryTest, BeginsAtOneTransactionInAHundred) {
    database_.transactions = 2201;
    EXPECT_NE(text().find("\ntransactions        2,201\n"), std::string::npos) << text();
    EXPECT_EQ(notes(), "To derive rules: korv groceries data/groceries.classes 23 0.8 2201\n");
}

TEST_F(SummaryTest, SaysWhereTheNamesAre) {
    names_ = "data/groceries.names";
    EXPECT_TRUE(notes().ends_with("\nThe names of its items are in data/groceries.names\n")) << notes();
}

TEST_F(SummaryTest, SaysThatThereAreNoNames) {
    database_.names = {"bread", "butter", "tea"};
    output_ = "-";
    EXPECT_TRUE(
        notes().ends_with("\nThe names of its items are not written: --names FILE says where they go\n"))
        << notes();
}

TEST_F(SummaryTest, NamesColumnsThatAreNotCutThoughTheyHoldNumbers) {
    reading_.table = TableReport();
    reading_.table->uncut = {{"age", "n/a", "p.csv", {3, 5}, true}, {"name", "Ann", "p.csv", {2, 1}, false}};
    EXPECT_TRUE(
        notes().starts_with("Not cut: column \"age\", since \"n/a\" in p.csv:3:5 is no number such as 1234.5 "
                            "(--missing says which words are none)\n"
                            "To derive rules"))
        << notes();
}

TEST_F(SummaryTest, NamesColumnsThatDoubleEveryRule) {
    reading_.table = TableReport();
    reading_.table->twins = {{"alive", "survived"}, {"a", "b", "c"}};
    EXPECT_TRUE(
        notes().starts_with("The columns \"alive\" and \"survived\" have their items in the same "
                            "transactions, which doubles every rule: --ignore leaves columns out\n"
                            "The columns \"a\", \"b\" and \"c\" have"))
        << notes();
}

/// How often the words occur.
std::size_t times(const std::string& words, const std::string& text) {
    std::size_t count = 0;
    for (std::size_t at = text.find(words); at != std::string::npos; at = text.find(words, at + 1)) {
        ++count;
    }
    return count;
}

TEST_F(SummaryTest, NamesTenColumnsAtMost) {
    reading_.table = TableReport();
    reading_.table->uncut.assign(1212, {"age", "n/a", "p.csv", {3, 5}, true});
    reading_.table->uncut.push_back({"name", "Ann", "p.csv", {2, 1}, false});
    reading_.table->twins.assign(11, {"a", "b"});
    reading_.table->twins.front() = std::vector<std::string>(12, "x");
    EXPECT_EQ(times("Not cut: column", notes()), 10U);
    EXPECT_NE(notes().find("\nColumns besides these that are not cut for such cells: 1,202\n"),
              std::string::npos)
        << notes();
    EXPECT_NE(notes().find("\"x\", \"x\" and 2 more have their items"), std::string::npos) << notes();
    EXPECT_EQ(times("The columns", notes()), 10U);
    EXPECT_NE(notes().find("\nGroups of such columns besides these: 1\n"), std::string::npos) << notes();
}

TEST_F(SummaryTest, NamesAColumnThatLooksLikeCounts) {
    reading_.table = TableReport();
    reading_.table->counts = "How often";
    EXPECT_TRUE(
        notes().starts_with("The column \"How often\" looks like how often its line occurs: --weight "
                            "'How often' counts it so\nTo derive"))
        << notes();
}

TEST_F(SummaryTest, SaysThatLabelsOfLinesAreLeftOut) {
    reading_.table = TableReport();
    reading_.table->has_labels = true;
    EXPECT_TRUE(notes().starts_with(
        "The first column has no name, as labels of lines have none: it is left out\nTo derive"))
        << notes();
}

TEST_F(SummaryTest, NamesColumnsWithAnotherValueInEveryLine) {
    reading_.table = TableReport();
    reading_.table->identifiers = {"id"};
    EXPECT_TRUE(notes().starts_with(
        "The column \"id\" has another value in every line: --ignore leaves it out\nTo derive"))
        << notes();
    reading_.table->identifiers = {"id", "mail"};
    EXPECT_TRUE(
        notes().starts_with("The columns \"id\" and \"mail\" have other values in every line: --ignore "
                            "leaves columns out\nTo derive"))
        << notes();
}

TEST_F(SummaryTest, CountsLinesWithoutWeight) {
    reading_.table = TableReport();
    reading_.table->left_out = 2;
    EXPECT_TRUE(notes().starts_with("2 lines with the weight 0 are left out\n")) << notes();
    reading_.table->left_out = 1;
    EXPECT_TRUE(notes().starts_with("1 line with the weight 0 is left out\n")) << notes();
}

TEST_F(SummaryTest, CanBeOfTheInputAlone) {
    reading_.empty_transactions = 1;
    reading_.table = TableReport();
    reading_.table->left_out = 1;
    EXPECT_EQ(summary_of_input(database_, reading_),
              "input               fimi\n"
              "transactions        3\n"
              "empty transactions  1\n"
              "items               3\n"
              "1 line with the weight 0 is left out\n");
}

TEST_F(SummaryTest, DoesNotCallItemsRareThatAreInTooFewTransactionsOfTheirOwn) {
    const Database wide = database_of({0b1111111111, 0b1111111111, 0b1});
    options_ = {.min_support = 2, .min_own = 3};
    classes_ = mine(wide, options_).classes;
    EXPECT_EQ(classes_.figures().rare_bytes, 0U);
    EXPECT_TRUE(notes().starts_with("To derive rules")) << notes();
}

TEST_F(SummaryTest, WarnsOfRareItemsThatAreMostOfTheFile) {
    // Nine items in the only transaction with 10.
    const Database wide = database_of({0b1111111111, 0b1, 0b1});
    options_ = {.min_support = 2, .closure_over_all = true};
    classes_ = mine(wide, options_).classes;
    // "10 11 ... 19 TAB 3 TAB  10, LF" are 29 + 4 + 5 bytes, of which 27 for 11 to 19.
    EXPECT_TRUE(
        notes().starts_with("Items in fewer than 2 transactions make up 27 bytes of the class file: "
                            "--closure-items frequent leaves them out\n"))
        << notes();
}

TEST(SummaryOfInput, NamesColumnsThatWereCutForTheirManyNumbers) {
    ReadingReport reading;
    reading.table.emplace();
    reading.table->cut = {"age", "income"};
    EXPECT_EQ(
        summary_of_input(database, reading),
        "input               fimi\n"
        "transactions        3\n"
        "items               3\n"
        "Cut into bins: the columns \"age\" and \"income\", of many numbers (--bins says how; --bins none "
        "leaves them)\n");
}

}  // namespace
}  // namespace korv::tools
