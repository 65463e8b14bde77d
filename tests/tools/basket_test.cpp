#include "mine/basket.h"

#include <gtest/gtest.h>

#include "tools/complaint.h"
#include "tools/named_database.h"

namespace korv::tools {
namespace {

Database read(const std::string& text, char separator = ',') {
    BasketReader reader(separator);
    reader.add({"a.csv", text});
    return reader.finish();
}

Database read_weighted(const std::string& text, char separator = ',') {
    BasketReader reader(separator, true);
    reader.add({"a.csv", text});
    return reader.finish();
}

std::string complaint(const std::string& text) {
    return complaint_of([&] { read(text); });
}

TEST(Basket, NumbersItemsAsTheyComeUp) {
    const Database database = read("milk,bread\nbread,eggs\n");
    EXPECT_EQ(database.names, (std::vector<std::string>{"milk", "bread", "eggs"}));
    ASSERT_EQ(database.items.size(), 3U);
    EXPECT_EQ(database.items[1].item, 2U);
    EXPECT_EQ(named_columns(database), (NamedColumns{{"milk", {0}}, {"bread", {0, 1}}, {"eggs", {1}}}));
}

TEST(Basket, LeavesOutEmptyCells) {
    EXPECT_EQ(named_columns(read("milk,,\n,bread,\n")), (NamedColumns{{"milk", {0}}, {"bread", {1}}}));
}

TEST(Basket, TakesABlankLineForAnEmptyTransaction) {
    const Database database = read("milk\n\n,,\nbread\n");
    EXPECT_EQ(database.transactions, 4U);
    EXPECT_EQ(named_columns(database), (NamedColumns{{"milk", {0}}, {"bread", {3}}}));
}

TEST(Basket, CountsARepeatedNameOnce) {
    EXPECT_EQ(named_columns(read("milk, milk,\"milk\"\n")), (NamedColumns{{"milk", {0}}}));
}

TEST(Basket, TakesAnySeparator) {
    EXPECT_EQ(named_columns(read("rye bread;milk\n", ';')),
              (NamedColumns{{"rye bread", {0}}, {"milk", {0}}}));
}

TEST(Basket, ReportsANameThatTheNamesFileCannotHold) {
    EXPECT_EQ(complaint("milk,\"rye\tbread\"\n"),
              "a.csv:1:10: found \"rye\\x09bread\"; expected a name without control characters, such as tabs "
              "and line ends");
}

TEST(Basket, GoesOnInTheNextText) {
    BasketReader reader(',');
    reader.add({"a.csv", "milk,bread"});
    reader.add({"b.csv", "eggs,bread\n"});
    const Database database = reader.finish();
    EXPECT_EQ(database.transactions, 2U);
    EXPECT_EQ(database.names, (std::vector<std::string>{"milk", "bread", "eggs"}));
    EXPECT_EQ(named_columns(database), (NamedColumns{{"milk", {0}}, {"bread", {0, 1}}, {"eggs", {1}}}));
}

TEST(Basket, MayBeginWithHowOftenItOccurs) {
    const Database database = read_weighted("      3 milk,\"rye, bread\"\n     12 \r\n      1 \"milk\",eggs");
    EXPECT_EQ(database.weights, (std::vector<Count>{3, 12, 1}));
    EXPECT_EQ(database.transactions, 16U);
    EXPECT_EQ(named_columns(database), (NamedColumns{{"milk", {0, 2}}, {"rye, bread", {0}}, {"eggs", {2}}}));
}

TEST(Basket, MayBeginWithHowOftenItOccursAndHaveBlanksBetweenNames) {
    EXPECT_EQ(named_columns(read_weighted("  3 milk 7\n", ' ')), (NamedColumns{{"milk", {0}}, {"7", {0}}}));
}

TEST(Basket, ReportsAWeightThatIsNone) {
    EXPECT_EQ(complaint_of([] { read_weighted(" 3 milk\n 0 bread\n"); }),
              "a.csv:2:2: found \"0\"; expected how many times the transaction occurs, a number from 1 to "
              "4294967295, and a blank");
}

}  // namespace
}  // namespace korv::tools
