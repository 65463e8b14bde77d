#include "mine/fimi.h"

#include <gtest/gtest.h>

#include <map>

#include "tools/complaint.h"

namespace korv::tools {
namespace {

/// The transactions of each item.
using Columns = std::map<Item, std::vector<Transaction>>;

Columns columns_of(const std::string& text) {
    Columns columns;
    for (const Database::ItemColumn& column : read_fimi({"a.dat", text}).items) {
        columns[column.item] = column.transactions;
    }
    return columns;
}

Count transactions_in(const std::string& text) {
    return read_fimi({"a.dat", text}).transactions;
}

std::string complaint(const std::string& text) {
    return complaint_of([&] { read_fimi({"a.dat", text}); });
}

TEST(Fimi, ReadsATransactionALine) {
    EXPECT_EQ(columns_of("3 5\n5\n"), (Columns{{3, {0}}, {5, {0, 1}}}));
    EXPECT_EQ(transactions_in("3 5\n5\n"), 2U);
}

TEST(Fimi, AcceptsBlanksAndTabsAnywhere) {
    EXPECT_EQ(columns_of("  3\t 5 \n"), (Columns{{3, {0}}, {5, {0}}}));
}

TEST(Fimi, AcceptsCrLfAndAMissingLastLineEnd) {
    EXPECT_EQ(columns_of("3\r\n5"), (Columns{{3, {0}}, {5, {1}}}));
}

TEST(Fimi, TakesABlankLineForAnEmptyTransaction) {
    EXPECT_EQ(transactions_in("\n3\n \n\r\n5\n"), 5U);
    EXPECT_EQ(columns_of("\n3\n \n\r\n5\n"), (Columns{{3, {1}}, {5, {4}}}));
}

TEST(Fimi, CountsARepeatedItemOnce) {
    EXPECT_EQ(columns_of("3 3 5 3\n"), (Columns{{3, {0}}, {5, {0}}}));
}

TEST(Fimi, ReadsTheLargestNumber) {
    EXPECT_EQ(columns_of("4294967295 0\n"), (Columns{{0, {0}}, {4294967295, {0}}}));
}

TEST(Fimi, ReportsWhatIsNoNumber) {
    EXPECT_EQ(complaint("1 2\n3 milk 4\n"), "a.dat:2:3: found \"milk\"; expected an item number");
    EXPECT_EQ(complaint("1,2\n"), "a.dat:1:1: found \"1,2\"; expected an item number");
    EXPECT_EQ(complaint("-1\n"), "a.dat:1:1: found \"-1\"; expected an item number");
    EXPECT_EQ(complaint("1 +2\n"), "a.dat:1:3: found \"+2\"; expected an item number");
}

TEST(Fimi, ReportsANumberAbove32Bits) {
    EXPECT_EQ(complaint("1\n\n2 4294967296\n"),
              "a.dat:3:3: found \"4294967296\"; expected an item number below 4294967296");
}

TEST(Fimi, ReportsAFileWithoutItems) {
    EXPECT_EQ(complaint(""), "a.dat: found no item; expected one transaction a line");
    EXPECT_EQ(complaint("\n \n"), "a.dat: found no item; expected one transaction a line");
}

}  // namespace
}  // namespace korv::tools
