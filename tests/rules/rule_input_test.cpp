#include "rules/rule_input.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>

#include "common/class_agreement.h"
#include "engine/lattice_entries.h"
#include "support/files.h"
#include "tools/complaint.h"

namespace korv::tools {
namespace {

const std::string examples = EXAMPLES;

/// A directory of its own, with files.
class RuleInputTest : public testing::Test {
protected:
    std::string file(const std::string& name, const std::string& text) const {
        const std::filesystem::path path = directory_.path() / name;
        test::write_file(path, text);
        return path.string();
    }

private:
    test::TemporaryDirectory directory_;
};

InputRequest request_for(const std::string& path) {
    InputRequest request;
    request.paths = {path};
    request.mining.min_supports = {{1, true}};
    return request;
}

/// A request for a class file of so many transactions.
InputRequest classes_of(const std::string& path, Count transactions) {
    InputRequest request = request_for(path);
    request.transactions = transactions;
    return request;
}

RuleInput read(const InputRequest& request) {
    return read_input(request, {});
}

std::string complaint(const InputRequest& request) {
    return complaint_of([&request] { read(request); });
}

using Notes = std::vector<std::string>;

bool has_note(const RuleInput& input, const std::string& note) {
    return std::ranges::find(input.notes, note) != input.notes.end();
}

TEST_F(RuleInputTest, ClassFileIsSeenAndReadWithItsLines) {
    const std::string path = file("a.classes", "2\t3\t 2,\n1\t4\t 1,\n1 2\t5\t 1 2,\n");

    const RuleInput input = read(classes_of(path, 10));

    EXPECT_EQ(input.transactions, 10U);
    ASSERT_EQ(input.classes.size(), 3U);
    EXPECT_EQ(input.classes.at({1, 2}).support, 5U);
    EXPECT_EQ(input.lines, (std::vector<std::uint32_t>{2, 3, 1}));
    EXPECT_EQ(input.path, path);
    EXPECT_FALSE(input.database);
    EXPECT_EQ(input.notes, (Notes{"class file          " + path + " (seen from its first lines)",
                                  "classes             3", "transactions        10"}));
}

TEST_F(RuleInputTest, NotesPartThousands) {
    EXPECT_EQ(read(classes_of(file("a.classes", "1\t4\t 1,\n"), 12345)).notes.back(),
              "transactions        12,345");
}

TEST_F(RuleInputTest, ClassFileNeedsTheNumberOfTransactions) {
    const std::string path = file("a.classes", "1\t4\t 1,\n");
    EXPECT_EQ(complaint(request_for(path)),
              path +
                  ": found a class file, which does not say how many transactions there are; expected "
                  "--database-size N (-n N), or --database FILE");
}

TEST_F(RuleInputTest, FaultOfAClassFileIsNamed) {
    const std::string path = file("a.classes", "1\t4\t 1,\n2\t4\t 1,\n");
    EXPECT_EQ(complaint(classes_of(path, 9)),
              path +
                  ":2:6: found an essential itemset with the item 1; expected items of the closed itemset "
                  "alone");
}

TEST_F(RuleInputTest, WhatIsSaidToBeAClassFileIsReadAsOne) {
    InputRequest request = classes_of(file("a.dat", "1 2\n"), 9);
    request.is_class_file = true;
    EXPECT_EQ(complaint(request),
              request.paths[0] +
                  ":1:4: found a line without a tab; expected a tab before the support, and one behind it");
}

TEST_F(RuleInputTest, NamesAreBesideAClassFileUnlessAnotherFileIsGiven) {
    const std::string path = file("a.classes", "1\t4\t 1,\n");
    file("a.names", "1\tbread\n");
    EXPECT_EQ(read(classes_of(path, 9)).names.name(1), "bread");

    InputRequest request = classes_of(path, 9);
    request.names = file("other.names", "1\tmilk\n");
    const RuleInput input = read(request);
    EXPECT_EQ(input.names.name(1), "milk");
    EXPECT_TRUE(has_note(input, "names               " + request.names));
}

TEST_F(RuleInputTest, ClassFileWithoutNamesHasNumbers) {
    EXPECT_EQ(read(classes_of(file("a.classes", "1\t4\t 1,\n"), 9)).names.name(1), "1");
}

TEST_F(RuleInputTest, OptionsForTransactionsDoNotGoWithAClassFile) {
    InputRequest request = classes_of(file("a.classes", "1\t4\t 1,\n"), 9);
    request.mining.max_size = 3;
    EXPECT_EQ(complaint(request),
              "--max-size: goes with transactions only; " + request.paths[0] + " is a class file");
    request.mining.max_size.reset();
    request.reading.given_for_tables = {"--bins"};
    EXPECT_EQ(complaint(request),
              "--bins: goes with transactions only; " + request.paths[0] + " is a class file");
}

TEST_F(RuleInputTest, SecondInputBehindAClassFileIsRefused) {
    InputRequest request = classes_of(file("a.classes", "1\t4\t 1,\n"), 9);
    request.paths.emplace_back("b.classes");
    EXPECT_EQ(complaint(request), "b.classes: found a second input behind the class file " +
                                      request.paths[0] +
                                      "; expected one class file, or files of transactions alone");
}

TEST_F(RuleInputTest, DatabaseOfAClassFileGivesItsNumberAndTheNames) {
    InputRequest request = request_for(file("a.classes", "1 2\t2\t 2,\n1\t1\t 1,\n"));
    request.database = file("a.csv", "bread,butter\nbutter\nsalt\n");
    request.reading.format = Format::basket;

    const RuleInput input = read(request);

    EXPECT_EQ(input.transactions, 3U);
    ASSERT_TRUE(input.database);
    EXPECT_EQ(input.database->lines, 3U);
    EXPECT_EQ(input.names.name(2), "butter");
    EXPECT_TRUE(has_note(
        input, "database            " + request.database + ", which has all supports of the classes"));
}

TEST_F(RuleInputTest, SupportOfAClosedItemsetThatTheDatabaseDoesNotHaveIsNamed) {
    InputRequest request = request_for(file("a.classes", "2\t2\t 2,\n1 2\t4\t 1 2,\n1\t2\t 1,\n"));
    request.database = file("a.dat", "1 2\n2\n3 1\n");
    EXPECT_EQ(complaint(request), request.paths[0] +
                                      ":2:1: found the support 4; expected 3, the support of "
                                      "\"1 2\" in " +
                                      request.database);
}

TEST_F(RuleInputTest, SupportOfAnEssentialItemsetThatTheDatabaseDoesNotHaveIsNamed) {
    InputRequest request = request_for(file("a.classes", "1 2\t3\t 1, 2,\n"));
    request.database = file("a.dat", "1 2\n1\n1\n");
    EXPECT_EQ(complaint(request), request.paths[0] +
                                      ":1:1: found the support 3; expected 1, the support of "
                                      "\"2\" in " +
                                      request.database);
}

TEST_F(RuleInputTest, NumberOfTransactionsThatTheDatabaseDoesNotHaveIsRefused) {
    InputRequest request = classes_of(file("a.classes", "1\t2\t 1,\n"), 5);
    request.database = file("a.dat", "1 2\n1\n3\n");
    EXPECT_EQ(complaint(request),
              "--database-size: found 5; expected 3 as in " + request.database + ", or no such option");
}

TEST_F(RuleInputTest, OptionsForClassFilesDoNotGoWithTransactions) {
    const InputRequest request = classes_of(file("a.dat", "1 2\n1\n3 4 5\n"), 5);
    EXPECT_EQ(complaint(request),
              "--database-size: goes with a class file only; " + request.paths[0] +
                  " holds transactions, as far as its first lines tell (--format classes says that it is a "
                  "class file)");
}

TEST_F(RuleInputTest, TransactionsAreMinedAndKept) {
    InputRequest request = request_for(file("a.dat", "1 2\n2\n3\n"));
    request.mining.min_supports = {{1, false}};

    const RuleInput input = read(request);

    // 1 is only where 2 is, so the closure of 2 is 1 2. No item meets 3.
    ASSERT_EQ(input.classes.size(), 3U);
    EXPECT_EQ(input.classes.at({1}).support, 1U);
    EXPECT_EQ(input.classes.at({1, 2}).support, 2U);
    EXPECT_EQ(input.classes.at({1, 2}).essentials, std::vector<Itemset>{{2}});
    EXPECT_EQ(input.classes.at({3}).support, 1U);
    EXPECT_TRUE(input.classes.at({3}).essentials.empty());
    EXPECT_EQ(input.transactions, 3U);
    EXPECT_TRUE(input.lines.empty());
    ASSERT_TRUE(input.database);
    EXPECT_TRUE(has_note(input, "transactions        3"));
    EXPECT_TRUE(has_note(input, "classes             3"));
}

/// Each subset of four items, once.
constexpr const char* subsets =
    "1\n2\n3\n4\n1 2\n1 3\n1 4\n2 3\n2 4\n3 4\n1 2 3\n1 2 4\n1 3 4\n2 3 4\n1 2 3 4\n";

TEST_F(RuleInputTest, EssentialItemsetsHaveNoMoreItemsThanRulesUnlessTheirSizeIsGiven) {
    InputRequest request = request_for(file("a.dat", subsets));
    EXPECT_EQ(read(request).classes.size(), 15U);
    request.max_items = 3;
    EXPECT_EQ(read(request).classes.size(), 14U);
    request.mining.max_size = 4;
    EXPECT_EQ(read(request).classes.size(), 15U);
    request.mining.max_size.reset();
    request.max_items = 0;
    EXPECT_EQ(read(request).classes.size(), 15U);
}

TEST_F(RuleInputTest, SmallerSizeForTooManyClassesIsSaid) {
    InputRequest request = request_for(file("a.dat", subsets));
    request.mining.max_classes = 14;

    const RuleInput input = read(request);

    EXPECT_EQ(input.classes.size(), 14U);
    EXPECT_TRUE(has_note(input,
                         "Itemsets of more than 3 items are left out, since with them there are more than 14 "
                         "classes: --max-classes allows more, a higher --min-support brings fewer"));
}

TEST_F(RuleInputTest, NamesFileGoesWithItemsAsNumbers) {
    InputRequest request = request_for(file("a.dat", "1 2\n2\n3\n"));
    request.names = file("a.names", "3\tsalt\n");
    EXPECT_EQ(read(request).names.name(3), "salt");
}

TEST_F(RuleInputTest, NamesFileBesideItemsAsNumbersIsRead) {
    const std::string names = file("a.names", "3\tsalt\n");
    const RuleInput input = read(request_for(file("a.dat", "1 2\n2\n3\n")));
    EXPECT_EQ(input.names.name(3), "salt");
    EXPECT_EQ(input.names_path, names);
    EXPECT_TRUE(has_note(input, "names               " + names));
}

TEST_F(RuleInputTest, NamesFileBesideBasketsIsNotRead) {
    file("a.names", "1\tsalt\n");
    InputRequest request = request_for(file("a.txt", "tea,milk\ntea\n"));
    request.reading.format = Format::basket;
    const RuleInput input = read(request);
    EXPECT_EQ(input.names.name(1), "tea");
    EXPECT_EQ(input.names_path, "");
}

TEST_F(RuleInputTest, LargerItemsetsThatWereNotLookedForAreSaid) {
    InputRequest request = request_for(file("a.dat", subsets));
    request.mining.max_size = 3;
    EXPECT_TRUE(
        has_note(read(request),
                 "Essential itemsets of more than 3 items were not looked for: --max-size, by default "
                 "--max-items, says how many they have"));
    request.mining.max_size = 5;
    const RuleInput input = read(request);
    EXPECT_TRUE(std::ranges::none_of(input.notes,
                                     [](const std::string& note) { return note.starts_with("Essential"); }));
}

/// A table of numbers from 1 to 12 and 1 to 8, and a word.
std::string table() {
    std::string text = "twelve,eight,word\n";
    for (int i = 0; i < 24; ++i) {
        text += std::to_string(i % 12 + 1) + "," + std::to_string(i % 8 + 1) + (i < 9 ? ",a\n" : ",b\n");
    }
    return text;
}

TEST_F(RuleInputTest, ColumnsOfMoreThanEightNumbersAreCutIntoFourBins) {
    const RuleInput input = read(request_for(file("a.csv", table())));

    EXPECT_EQ(input.names.columns()[1].name, "twelve");
    std::vector<std::string> bins;
    for (const Item item : input.names.columns()[1].items) {
        bins.emplace_back(input.names.value(item));
    }
    EXPECT_EQ(bins, (std::vector<std::string>{"1..3", "4..6", "7..9", "10..12"}));
    EXPECT_EQ(input.names.columns()[0].items.size(), 8U);
    EXPECT_TRUE(
        has_note(input,
                 "Cut into bins: the column \"twelve\", of many numbers (--bins says how; --bins none "
                 "leaves them)"));
}

TEST_F(RuleInputTest, NoColumnIsCutByDefaultWhereBinsWereGiven) {
    InputRequest request = request_for(file("a.csv", table()));
    request.has_bins = true;
    EXPECT_EQ(read(request).names.columns()[1].items.size(), 12U);
}

TEST_F(RuleInputTest, ARuleForOneColumnLeavesTheOthersToTheDefault) {
    InputRequest request = request_for(file("a.csv", table()));
    request.reading.table.bins = {{.column = "twelve", .bins = 2}};
    EXPECT_EQ(read(request).names.columns()[1].items.size(), 2U);
    request.reading.table.bins = {{.column = "eight", .bins = 2}};
    const RuleInput input = read(request);
    EXPECT_EQ(input.names.columns()[0].items.size(), 2U);
    EXPECT_EQ(input.names.columns()[1].items.size(), 4U);
}

TEST_F(RuleInputTest, MiningThatIsStoppedIsAnError) {
    const InputRequest request = request_for(file("a.dat", subsets));
    EXPECT_EQ(complaint_of([&] { read_input(request, [](const MiningProgress&) { return false; }); }),
              "stopped before all classes were mined");
}

TEST_F(RuleInputTest, InputThatIsNotThereIsNamed) {
    EXPECT_TRUE(complaint(request_for("no/such.csv")).starts_with("no/such.csv: cannot be read: "));
}

TEST(RuleInputOfExamples, PersonsAreMinedFromTheirTable) {
    const RuleInput input = read(request_for(examples + "/persons/persons.csv"));

    EXPECT_EQ(input.transactions, 60U);
    ASSERT_TRUE(input.database);
    EXPECT_TRUE(
        has_note(input,
                 "Cut into bins: the columns \"age\" and \"income\", of many numbers (--bins says how; "
                 "--bins none leaves them)"));
    EXPECT_GT(input.classes.size(), 100U);
    const auto& columns = input.names.columns();
    const auto retired = std::ranges::find(columns, "retired", &ItemNames::Column::name);
    ASSERT_NE(retired, columns.end());
    EXPECT_EQ(retired->items.size(), 2U);
}

TEST(RuleInputOfExamples, TitanicClassesAreThoseOfItsTransactions) {
    InputRequest of_classes = request_for(examples + "/titanic/titanic.classes");
    of_classes.database = examples + "/titanic/titanic.dat";
    const RuleInput classes = read(of_classes);
    EXPECT_EQ(classes.transactions, 2201U);
    EXPECT_EQ(classes.classes.size(), 96U);
    EXPECT_EQ(classes.names.name(1), "class=1st");

    InputRequest of_transactions = request_for(examples + "/titanic/titanic.dat");
    of_transactions.max_items = 0;
    of_transactions.mining.min_supports = {{1, false}};
    const RuleInput mined = read(of_transactions);
    EXPECT_EQ(mined.transactions, 2201U);
    ASSERT_EQ(mined.classes.size(), 96U);
    for (const auto& [closed_itemset, of_class] : mined.classes) {
        ASSERT_TRUE(classes.classes.contains(closed_itemset));
        EXPECT_EQ(classes.classes.at(closed_itemset).support, of_class.support);
        EXPECT_EQ(classes.classes.at(closed_itemset).essentials, of_class.essentials);
    }

    const LatticeEntries entries = lattice_entries(classes.classes);
    DifferenceSupports supports(entries);
    EXPECT_EQ(complaint_of([&] {
                  require_agreement(classes.classes, classes.lines, classes.path, classes.transactions,
                                    supports);
              }),
              "");
}

TEST_F(RuleInputTest, WhatDoesNotGoWithTheInputIsWrongUsage) {
    const std::string classes = file("a.classes", "1\t4\t 1,\n");
    EXPECT_THROW(read(request_for(classes)), UsageError);
    InputRequest reading = classes_of(classes, 9);
    reading.mining.max_size = 3;
    EXPECT_THROW(read(reading), UsageError);
    EXPECT_THROW(read(classes_of(file("a.dat", "1 2\n1 2\n"), 9)), UsageError);
    InputRequest support = request_for(file("b.dat", "1 2\n1 2\n"));
    support.mining.min_supports = {{3, false}};
    EXPECT_THROW(read(support), UsageError);
}

TEST_F(RuleInputTest, FileOfTransactionsBesideAClassFileIsProposed) {
    const std::string classes = file("a.classes", "1\t4\t 1,\n");
    const std::string transactions = file("a.csv", "bread,butter\n");
    EXPECT_TRUE(complaint(request_for(classes)).ends_with("FILE, such as --database " + transactions));
}

TEST_F(RuleInputTest, NoItemThatIsFrequentEnoughIsNotedAndNoFault) {
    InputRequest request = request_for(file("a.dat", "1 2\n1\n3\n"));
    request.mining.min_supports = {{3, false}};
    const RuleInput input = read(request);
    EXPECT_TRUE(input.classes.empty());
    EXPECT_EQ(input.transactions, 3U);
    EXPECT_TRUE(
        has_note(input, "--min-support: no item is in 3 transactions; the most frequent one is in 2"));
}

TEST_F(RuleInputTest, ItemsOfTheDatabaseAreKnownByTheNamesBesideTheClassFile) {
    // In the baskets, bread would be 1 and butter 2.
    InputRequest request = request_for(file("a.classes", "1\t2\t 1,\n2\t1\t 2,\n1 2\t2\t 1 2,\n"));
    file("a.names", "1\tbutter\n2\tbread\n");
    request.database = file("a.csv", "bread,butter\nbutter\nsalt\n");
    request.reading.format = Format::basket;

    const RuleInput input = read(request);

    EXPECT_EQ(input.names.name(1), "butter");
    ASSERT_EQ(input.database->items.size(), 3U);
    EXPECT_EQ(input.database->items[0].item, 1U);
    EXPECT_EQ(input.database->items[0].transactions, (std::vector<Transaction>{0, 1}));
    EXPECT_EQ(input.database->items[2].item, 3U);  // salt
}

TEST_F(RuleInputTest, PathOfTheNamesIsTold) {
    const std::string path = file("a.classes", "1\t4\t 1,\n");
    EXPECT_EQ(read(classes_of(path, 9)).names_path, "");
    const std::string names = file("a.names", "1\tbread\n");
    EXPECT_EQ(read(classes_of(path, 9)).names_path, names);
}

TEST_F(RuleInputTest, StandardInputIsTakenOnce) {
    InputRequest request = classes_of("-", 9);
    request.names = "-";
    EXPECT_EQ(complaint(request),
              "-: found as the input and the names file (--names); expected standard input at most once");
    request = request_for("a.classes");
    request.database = request.names = "-";
    EXPECT_EQ(
        complaint(request),
        "-: found as the database (--database) and the names file (--names); expected standard input at "
        "most once");
}

TEST_F(RuleInputTest, HoldoutIsReadAsTheInputWasSeen) {
    InputRequest request = request_for(file("a.txt", "bread,milk\nbread,milk,salt\nmilk\n"));
    request.holdout = file("b.txt", "tea,milk\nbread\n");  // which could be a table by itself
    const RuleInput input = read(request);
    ASSERT_TRUE(input.holdout);
    ASSERT_EQ(input.holdout->items.size(), 3U);
    EXPECT_EQ(input.holdout->items[0].item, 1U);  // bread
    EXPECT_EQ(input.holdout->items[0].transactions, std::vector<Transaction>{1});
    EXPECT_EQ(input.holdout->items[1].item, 2U);  // milk
    EXPECT_EQ(input.holdout->items[1].transactions, std::vector<Transaction>{0});
    EXPECT_TRUE(has_note(input, "holdout             " + request.holdout + ", 2 transactions"));
}

TEST_F(RuleInputTest, HoldoutGoesWithAClassFile) {
    InputRequest request = classes_of(file("a.classes", "1\t4\t 1,\n2\t4\t 2,\n1 2\t5\t 1 2,\n"), 8);
    request.holdout = file("b.dat", "1;2\n2\n\n");
    request.is_class_file = true;
    request.reading.separator = ';';
    request.reading.format = Format::basket;
    EXPECT_NE(complaint(request).find("found no item of the input"), std::string::npos);  // for want of names
    request.names = file("a.names", "1\t1\n2\t2\n");
    const RuleInput input = read(request);
    EXPECT_EQ(input.holdout->transactions, 3U);
    EXPECT_FALSE(input.database);
}

TEST_F(RuleInputTest, HoldoutIsNotTheInput) {
    InputRequest request = request_for(file("a.dat", "1 2\n1\n"));
    request.holdout = request.paths.front();
    EXPECT_EQ(complaint(request), "--holdout: found \"" + request.holdout +
                                      "\", the input itself; expected other transactions than those of the "
                                      "rules");
}

}  // namespace
}  // namespace korv::tools
