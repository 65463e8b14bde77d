#include "check/database_check.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "finding_words.h"

namespace korv::tools {
namespace {

using Lines = std::vector<std::string>;

/// The transactions 1 3, 1 3, 2 3, 2 4, 2 4.
Database small_database() {
    Database database;
    database.items = {{1, {0, 1}}, {2, {2, 3, 4}}, {3, {0, 1, 2}}, {4, {3, 4}}};
    database.lines = 5;
    database.transactions = 5;
    return database;
}

const std::string small_classes = "1\t2\t 1,\n4\t2\t 4,\n1 3\t3\t 3,\n2 4\t3\t 2,\n1 2 3 4\t5\t 2 3,\n";

Lines found_in(const std::string& text, const Database& database = small_database(),
               const ClassSample& sample = {}) {
    Findings findings({"a.classes"}, 0, true);
    const CheckedClasses checked = check_class_file({"a.classes", text}, findings);
    check_against_database(checked, database, "a.dat", sample, findings);
    Lines lines;
    for (const Finding& each : findings.in_order()) {
        lines.push_back(place_and_code(each) + ": found " + each.found + "; expected " + each.expected);
    }
    return lines;
}

TEST(DatabaseCheck, FindsNothingInTheClassesOfTheDatabase) {
    EXPECT_EQ(found_in(small_classes), Lines());
}

TEST(DatabaseCheck, NamesASupportWithBothNumbers) {
    EXPECT_EQ(
        found_in("1\t3\t 1,\n"),
        (Lines{"1:1 error wrong-support: found the support 3; expected 2, the support of \"1\" in a.dat"}));
}

TEST(DatabaseCheck, NamesAnItemOfTheFileThatAClosureLacks) {
    EXPECT_EQ(
        found_in("1\t2\t 1,\n3\t3\t 3,\n"),
        (Lines{"2:1 error wrong-closure: found the closed itemset \"3\" without the item 1; expected that "
               "item, too, since each transaction in a.dat that holds it holds another one of them"}));
}

TEST(DatabaseCheck, NotesClosuresOverTheItemsOfTheFileAlone) {
    EXPECT_EQ(
        found_in("2\t3\t 2,\n3\t3\t 3,\n"),
        (Lines{"1:1 note partial-closures: found closures over the 2 items of the file alone; expected "
               "further ones of the 4 in a.dat in 2 classes, if they are to be closures over all items"}));
}

TEST(DatabaseCheck, NamesAnEssentialItemsetOfAnotherSupport) {
    EXPECT_EQ(
        found_in("1 3\t3\t 1,\n"),
        (Lines{"1:1 error wrong-essential: found the essential itemset \"1\" of support 2 in a.dat; expected "
               "the support of its closed itemset, 3"}));
}

TEST(DatabaseCheck, NamesAnItemThatAddsNothingToAnEssentialItemset) {
    EXPECT_EQ(
        found_in("1 3\t3\t 1 3,\n"),
        (Lines{"1:1 error wrong-essential: found the essential itemset \"1 3\" with the item 1; expected "
               "essential itemsets without it, since it adds no transaction in a.dat"}));
}

TEST(DatabaseCheck, NamesAnItemThatNoTransactionHolds) {
    EXPECT_EQ(found_in("1 9\t2\t 1,\n"),
              (Lines{"1:1 error unknown-item: found the item 9; expected items of the "
                     "transactions in a.dat"}));
}

TEST(DatabaseCheck, CountsTransactionsAsOftenAsTheyAreThere) {
    Database database = small_database();
    database.weights = {2, 1, 1, 1, 1};
    database.transactions = 6;
    EXPECT_EQ(found_in("1\t3\t 1,\n", database), Lines());
}

TEST(DatabaseCheck, CountsASampleThatTheSeedChooses) {
    const std::string wrong = "1\t3\t 1,\n4\t3\t 4,\n1 3\t4\t 3,\n2 4\t4\t 2,\n";
    const Lines one = found_in(wrong, small_database(), {.classes = 2, .seed = 7});

    EXPECT_GE(one.size(), 2U);
    EXPECT_LT(one.size(), found_in(wrong).size());
    EXPECT_EQ(found_in(wrong, small_database(), {.classes = 2, .seed = 7}), one);
    EXPECT_EQ(found_in(wrong, small_database(), {.classes = 9, .seed = 7}), found_in(wrong));
}

}  // namespace
}  // namespace korv::tools
