#include "mine/fimi.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <sstream>

#include "tools/complaint.h"

namespace korv::tools {
namespace {

Database read(const std::string& text) {
    FimiReader reader;
    reader.add({"a.dat", text});
    return reader.finish();
}

/// The transactions of each item.
using Columns = std::map<Item, std::vector<Transaction>>;

Columns columns_of(const std::string& text) {
    Columns columns;
    for (const Database::ItemColumn& column : read(text).items) {
        columns[column.item] = column.transactions;
    }
    return columns;
}

Count transactions_in(const std::string& text) {
    return read(text).transactions;
}

std::string complaint(const std::string& text) {
    return complaint_of([&] { read(text); });
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

TEST(Fimi, ReadsLeadingZeros) {
    EXPECT_EQ(columns_of("007 000000000000000000000000000042\n"), (Columns{{7, {0}}, {42, {0}}}));
}

TEST(Fimi, ReportsANumberFarAbove32Bits) {
    EXPECT_EQ(complaint("18446744073709551617\n"),
              "a.dat:1:1: found \"18446744073709551617\"; expected an item number below 4294967296");
}

TEST(Fimi, ReportsAWordThatBeginsAsANumber) {
    EXPECT_EQ(complaint("1 23x 4\n"), "a.dat:1:3: found \"23x\"; expected an item number");
    EXPECT_EQ(complaint("1\r2\n"), "a.dat:1:1: found \"1\\x0D2\"; expected an item number");
}

TEST(Fimi, GoesOnInTheNextText) {
    FimiReader reader;
    reader.add({"a.dat", "3 5"});
    reader.add({"b.dat", "5\n"});
    const Database database = reader.finish();
    EXPECT_EQ(database.transactions, 2U);
    ASSERT_EQ(database.items.size(), 2U);
    EXPECT_EQ(database.items[1].transactions, (std::vector<Transaction>{0, 1}));
}

TEST(Fimi, MayBeginWithHowOftenATransactionOccurs) {
    FimiReader reader(true);
    reader.add({"a.dat", "      3 7 8\n     12 \n      1 8\n"});
    const Database database = reader.finish();
    EXPECT_EQ(database.weights, (std::vector<Count>{3, 12, 1}));
    EXPECT_EQ(database.transactions, 16U);
    EXPECT_EQ(database.lines, 3U);
    ASSERT_EQ(database.items.size(), 2U);
    EXPECT_EQ(database.items[0].transactions, (std::vector<Transaction>{0}));
    EXPECT_EQ(database.items[1].transactions, (std::vector<Transaction>{0, 2}));
}

TEST(Fimi, IsAsReadByStreams) {
    std::mt19937 random(7);
    for (int run = 0; run < 300; ++run) {
        std::string text;
        for (auto line = random() % 8; line > 0; --line) {
            for (auto word = random() % 6; word > 0; --word) {
                // Near the end of the table for small numbers, and of 32 bits, too.
                const Item large = random() % 2 == 0 ? 1'048'573 : 4'294'967'290;
                text += std::string(random() % 3, ' ') +
                        std::to_string(random() % 6 + (random() % 2 == 0 ? 0 : large)) +
                        (random() % 4 == 0 ? '\t' : ' ');
            }
            text += '\n';
        }
        Columns expected;
        std::istringstream lines(text);
        Transaction transaction = 0;
        for (std::string line; std::getline(lines, line); ++transaction) {
            std::istringstream words(line);
            std::set<Item> items;
            for (Item item = 0; words >> item;) {
                items.insert(item);
            }
            for (const Item item : items) {
                expected[item].push_back(transaction);
            }
        }
        EXPECT_EQ(columns_of(text), expected) << text;
        EXPECT_EQ(transactions_in(text), transaction) << text;
    }
}

}  // namespace
}  // namespace korv::tools
