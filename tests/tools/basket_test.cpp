#include "mine/basket.h"

#include <gtest/gtest.h>

#include "tools/complaint.h"
#include "tools/named_database.h"

namespace korv::tools {
namespace {

Database read(const std::string& text, char separator = ',') {
    return read_basket({"a.csv", text}, separator);
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
              "a.csv:1:6: found \"rye\\x09bread\"; expected a name in UTF-8 without tabs, line "
              "ends and NUL bytes");
}

TEST(Basket, ReportsAFileWithoutItems) {
    EXPECT_EQ(complaint(""), "a.csv: found no item; expected one transaction a line");
    EXPECT_EQ(complaint(",\n"), "a.csv: found no item; expected one transaction a line");
}

}  // namespace
}  // namespace korv::tools
