#include "mine/reading.h"

#include <gtest/gtest.h>

#include "support/files.h"
#include "tools/complaint.h"
#include "tools/named_database.h"

namespace korv::tools {
namespace {

class Reading : public ::testing::Test {
protected:
    /// Writes the texts to the files a, b and so on, and reads these.
    Database read(const std::vector<std::string>& texts, const ReadingOptions& options = {}) {
        std::vector<std::string> paths;
        for (const std::string& text : texts) {
            paths.push_back(path(std::string(1, static_cast<char>('a' + paths.size()))));
            test::write_file(paths.back(), text);
        }
        return read_database(paths, options, report_);
    }

    /// What is said of such files, with their names alone instead of paths.
    std::string complaint(const std::vector<std::string>& texts, const ReadingOptions& options = {}) {
        std::string said = complaint_of([&] { read(texts, options); });
        const std::string directory = directory_.path().string() + "/";
        for (std::size_t at = said.find(directory); at != std::string::npos; at = said.find(directory)) {
            said.erase(at, directory.size());
        }
        return said;
    }

    std::string path(const std::string& name) const { return (directory_.path() / name).string(); }

    ReadingReport report_;
    test::TemporaryDirectory directory_;
};

ReadingOptions as(Format format) {
    ReadingOptions options;
    options.format = format;
    return options;
}

ReadingOptions with_separator(char separator) {
    ReadingOptions options;
    options.separator = separator;
    return options;
}

ReadingOptions weighted() {
    ReadingOptions options;
    options.weighted = true;
    return options;
}

ReadingOptions with_bins() {
    ReadingOptions options;
    options.given_for_tables = {"--bins"};
    return options;
}

TEST_F(Reading, GuessesFimi) {
    const Database database = read({"1 2\n\n2\n"});
    EXPECT_EQ(database.transactions, 3U);
    EXPECT_EQ(database.names, std::vector<std::string>{});
    EXPECT_EQ(report_.format, Format::fimi);
    EXPECT_EQ(report_.separator, std::nullopt);
    EXPECT_EQ(description(report_), "fimi (guessed from whole numbers with blanks between them)");
}

TEST_F(Reading, GuessesBaskets) {
    EXPECT_EQ(named_columns(read({"milk;bread\nmilk\n"})), (NamedColumns{{"milk", {0, 1}}, {"bread", {0}}}));
    EXPECT_EQ(description(report_), "basket with \";\" (guessed from lines of 1 to 2 cells)");
    EXPECT_TRUE(report_.separator_guessed);
}

TEST_F(Reading, GuessesTables) {
    EXPECT_EQ(named_columns(read({"kind\tage\nx\t1\n"})), (NamedColumns{{"kind=x", {0}}, {"age=1", {0}}}));
    EXPECT_EQ(description(report_),
              "table with tab (guessed from rows of 2 cells under a first line of distinct names)");
    EXPECT_TRUE(report_.table);
}

TEST_F(Reading, TakesTheFormatAndTheSeparatorThatAreGiven) {
    ReadingOptions options = as(Format::basket);
    options.separator = ' ';
    EXPECT_EQ(named_columns(read({"1 2\n"}, options)), (NamedColumns{{"1", {0}}, {"2", {0}}}));
    EXPECT_EQ(description(report_), "basket with \" \"");
    EXPECT_FALSE(report_.separator_guessed);
    EXPECT_FALSE(report_.table);
}

TEST_F(Reading, GuessesTheSeparatorOfAFormatThatIsGiven) {
    EXPECT_EQ(named_columns(read({"milk;bread\n"}, as(Format::basket))),
              (NamedColumns{{"milk", {0}}, {"bread", {0}}}));
    EXPECT_EQ(description(report_), "basket with \";\" (its separator was guessed)");
    EXPECT_EQ(named_columns(read({"a|b\n1|2\n"}, as(Format::table))),
              (NamedColumns{{"a=1", {0}}, {"b=2", {0}}}));
}

TEST_F(Reading, TakesTheSeparatorOfAFirstLineThatSaysIt) {
    const NamedColumns columns = {{"kind=x", {0}}, {"age=1,5", {0}}};
    EXPECT_EQ(named_columns(read({"sep=;\r\nkind;age\r\nx;1,5\r\n"})), columns);
    EXPECT_EQ(description(report_),
              "table with \";\" (guessed from rows of 2 cells under a first line of distinct names)");
    EXPECT_EQ(named_columns(read({"sep=;\nkind;age\nx;1,5\n"}, as(Format::table))), columns);
    EXPECT_EQ(description(report_), "table with \";\"");
    EXPECT_EQ(named_columns(read({"sep=;\nkind;age\nx;1,5\n"}, with_separator(';'))), columns);
    EXPECT_EQ(named_columns(read({"sep=\t\n1,2\nmilk\trye, dark\n"})),
              (NamedColumns{{"1,2", {0}}, {"milk", {1}}, {"rye, dark", {1}}}));
    EXPECT_EQ(named_columns(read({"sep=\t\n1\n2\t3\n"})), (NamedColumns{{"1", {0}}, {"2", {1}}, {"3", {1}}}));
}

TEST_F(Reading, SkipsTheLineThatSaysTheSeparatorInEachFile) {
    EXPECT_EQ(named_columns(read({"sep=;\nk;n\nx;1\n", "sep=;\nk;n\ny;1\n", "k;n\nx;1\n"})),
              (NamedColumns{{"k=x", {0, 2}}, {"k=y", {1}}, {"n=1", {0, 1, 2}}}));
    EXPECT_EQ(named_columns(read({"sep=|\n2 milk|tea\n1 tea\n", "sep=|\n3 milk\n"}, weighted())),
              (NamedColumns{{"milk", {0, 2}}, {"tea", {0, 1}}}));
    EXPECT_EQ(complaint({"sep=;\nmilk;tea\ntea\n", "sep=,\nmilk,tea\ntea\n"}),
              "b: found \",\" between cells; expected \";\" as in a, or --separator to say which");
}

TEST_F(Reading, TellsPlacesBehindALineThatSaysTheSeparator) {
    EXPECT_EQ(complaint({"sep=;\nk;k\nx;1\n"}, as(Format::table)),
              "a:2:3: found the name \"k\" twice in the header; expected a different name for each column");
    EXPECT_EQ(complaint({"sep=;\nk;n\nx;1\ny;2\nz;3\nz\n"}),
              "a:6: found a line of 1 cell, where nearly all have 2; expected --format to say whether it is "
              "fimi, basket or table");
    EXPECT_EQ(complaint({"sep=;\nmilk;\"tea\n"}, as(Format::basket)),
              "a:2:6: found a quote that is not closed; expected a closing quote");
    EXPECT_EQ(complaint({"sep=;\n"}, as(Format::table)),
              "a:2:1: found nothing; expected a line with the names of the columns");
}

TEST_F(Reading, TakesALineThatSaysAnotherSeparatorThanTheOneGivenForText) {
    ReadingOptions options = with_separator(',');
    options.format = Format::basket;
    EXPECT_EQ(named_columns(read({"sep=;\nmilk,tea\n"}, options)),
              (NamedColumns{{"sep=;", {0}}, {"milk", {1}}, {"tea", {1}}}));
    EXPECT_EQ(complaint({"sep=;\n1 2\n"}, as(Format::fimi)),
              "a:1:1: found \"sep=;\"; expected an item number");
}

TEST_F(Reading, CountsTransactionsWithoutItems) {
    read({"1 2\n\n \n2\n"});
    EXPECT_EQ(report_.empty_transactions, 2U);
    read({"   3 1 2\n   4 \n"}, weighted());
    EXPECT_EQ(report_.empty_transactions, 4U);
    read({"1\n"});
    EXPECT_EQ(report_.empty_transactions, 0U);
}

TEST_F(Reading, ReadsWeightedLines) {
    const Database fimi = read({"   3 1 2\n   4 2\n"}, weighted());
    EXPECT_EQ(fimi.weights, (std::vector<Count>{3, 4}));
    EXPECT_EQ(fimi.transactions, 7U);
    EXPECT_EQ(report_.format, Format::fimi);
    const Database baskets = read({"   3 milk,bread\n   4 milk\n"}, weighted());
    EXPECT_EQ(baskets.weights, (std::vector<Count>{3, 4}));
    EXPECT_EQ(named_columns(baskets), (NamedColumns{{"milk", {0, 1}}, {"bread", {0}}}));
}

TEST_F(Reading, SaysHowWeightsOfATableAreReadWhereLinesShouldBeginWithThem) {
    const std::string table = "kind,n\nx,1\ny,2\n";
    const std::string expected =
        "expected how many times the transaction occurs, a number from 1 to 4294967295, and a blank";
    const std::string hint =
        "; if this is a table, say --format table, and --weight COLUMN where a column says how many times "
        "each line occurs";
    EXPECT_EQ(complaint({table}, weighted()), "a:1:1: found \"kind,n\"; " + expected + hint);
    EXPECT_EQ(complaint({"sep=;\nkind;n\nx;1\n"}, weighted()), "a:2:1: found \"kind;n\"; " + expected + hint);
    ReadingOptions options = as(Format::fimi);
    options.weighted = true;
    EXPECT_EQ(complaint({table}, options), "a:1:1: found \"kind,n\"; " + expected + hint);
    EXPECT_EQ(complaint({"milk,bread\nmilk\n"}, weighted()), "a:1:1: found \"milk,bread\"; " + expected);
}

TEST_F(Reading, RefusesMoreTransactionsThanCanBeCounted) {
    EXPECT_EQ(complaint({"2147483647 1\n1 2\n"}, weighted()),
              "found more than 2147483647 transactions; expected at most so many");
    EXPECT_EQ(read({"2147483647 1\n"}, weighted()).transactions, 2147483647U);
}

TEST_F(Reading, JoinsFiles) {
    const Database database = read({"milk,bread\nmilk", "eggs,milk\n"}, as(Format::basket));
    EXPECT_EQ(database.names, (std::vector<std::string>{"milk", "bread", "eggs"}));
    EXPECT_EQ(named_columns(database), (NamedColumns{{"milk", {0, 1, 2}}, {"bread", {0}}, {"eggs", {2}}}));
}

TEST_F(Reading, GuessesByTheFirstFileThatIsNotBlank) {
    const Database database = read({"", "\n\n", "milk;bread\nmilk\n", "milk\n"});
    EXPECT_EQ(database.transactions, 5U);
    EXPECT_EQ(report_.empty_transactions, 2U);
    EXPECT_EQ(named_columns(database), (NamedColumns{{"milk", {2, 3, 4}}, {"bread", {2}}}));
    EXPECT_EQ(report_.separator, ';');
}

TEST_F(Reading, RefusesFilesOfDifferentFormats) {
    EXPECT_EQ(
        complaint({"milk,bread\nmilk\n", "1 2\n3\n"}),
        "b: found whole numbers with blanks between them, which looks like fimi; expected basket as in a, "
        "or --format to say which");
    EXPECT_EQ(
        complaint({"milk,bread\nmilk\n", "kind,age\nx,1\n"}),
        "b: found rows of 2 cells under a first line of distinct names, which looks like table; expected "
        "basket as in a, or --format to say which");
    EXPECT_EQ(
        complaint({"1 2\n3\n", "milk,bread\nmilk\n"}),
        "b: found lines of 1 to 2 cells, which looks like basket; expected fimi as in a, or --format to "
        "say which");
}

TEST_F(Reading, RefusesFilesWithDifferentSeparators) {
    EXPECT_EQ(complaint({"milk,bread\nmilk\n", "milk;bread\nmilk\n"}),
              "b: found \";\" between cells; expected \",\" as in a, or --separator to say which");
    EXPECT_EQ(complaint({"milk,bread\nmilk\n", "milk;bread\nmilk\n"}, as(Format::basket)),
              "b: found \";\" between cells; expected \",\" as in a, or --separator to say which");
}

TEST_F(Reading, NamesTheOptionWhereTheFormatIsDoubtful) {
    EXPECT_EQ(complaint({"milk\nbread\n"}),
              "a: found a single column, without commas, semicolons, tabs or bars; expected --format to say "
              "whether it is fimi, basket or table");
    EXPECT_EQ(
        complaint({"a,b,a\n1,2,3\n"}),
        "a: found rows of 3 cells under a first line with \"a\" twice; expected --format to say whether "
        "it is fimi, basket or table");
    EXPECT_EQ(complaint({"a,b\n1,2\n\n3,4\n5\n6,7\n"}),
              "a:5: found a line of 1 cell, where nearly all have 2; expected --format to say whether it is "
              "fimi, basket or table");
    EXPECT_EQ(complaint({"  3 milk\n  2 eggs\n"}, weighted()),
              "a: found a single column, without commas, semicolons, tabs or bars; expected --format to say "
              "whether it is fimi or basket");
    EXPECT_EQ(
        complaint({"a;b,c\nd;e,f\n"}),
        "a: found \",\" and \";\", each of which may be the separator; expected --separator to say which");
}

TEST_F(Reading, RefusesAClassFileUnlessItIsSaidToBeTransactions) {
    EXPECT_EQ(complaint({"1 2\t5\t 1,\n3\t4\t 3,\n"}),
              "a: found a class file, as far as its first lines tell; expected transactions, or --format to "
              "say how "
              "these are written (korv reads class files, and korv-check checks them)");
    EXPECT_EQ(complaint({"1 2\t5\t 1,\n"}, as(Format::fimi)), "a:1:8: found \"1,\"; expected an item number");
}

TEST_F(Reading, HintsAtTheFormatWhereFimiHasNames) {
    EXPECT_EQ(
        complaint({"kind,age\nx,1\ny,2\n"}, as(Format::fimi)),
        "a:1:1: found \"kind,age\"; expected an item number; try --format table, since there are rows of 2 "
        "cells under a first line of distinct names");
    EXPECT_EQ(
        complaint({"1,2\n3\n4,5,6\n"}, as(Format::fimi)),
        "a:1:1: found \"1,2\"; expected an item number; try --format basket, since there are lines of 1 to "
        "3 cells");
    EXPECT_EQ(complaint({"1 2\nx\n"}, as(Format::fimi)), "a:2:1: found \"x\"; expected an item number");
}

TEST_F(Reading, SaysThatAFormatWasGuessedWhereItCannotBeRead) {
    EXPECT_EQ(
        complaint({"milk,bread\nmilk\n\"eggs\n"}),
        "a:3:1: found a quote that is not closed; expected a closing quote (read as baskets, guessed from "
        "lines of 1 to 2 cells; say --format if it is something else)");
    const std::string as_table =
        " (read as a table, guessed from rows of 2 cells under a first line of distinct names; say --format "
        "if it is something else)";
    std::string longer = "kind,age\n";
    for (int line = 2; line <= 1000; ++line) {
        longer += "x,1\n";
    }
    EXPECT_EQ(complaint({longer + "x,1,2\n"}),
              "a:1001:1: found a line of 3 cells; expected 2, as many as the header has" + as_table);
    EXPECT_EQ(complaint({"kind,age\nx,1\n", "kind,size\nx,1\n"}),
              "b:1:6: found \"size\"; expected \"age\", as in the header of a" + as_table);
}

TEST_F(Reading, DoesNotSayThatAFormatWasGuessedWhereNoOtherCouldHelp) {
    const std::string table = "kind,age\nx,1\n";
    ReadingOptions options;
    options.table.ignored = {"town"};
    EXPECT_EQ(complaint({table}, options),
              "--ignore: found the column \"town\"; expected one of a: \"kind\", \"age\"");
    options.table = {.bins = {{"kind", 2}}};
    EXPECT_EQ(complaint({table}, options),
              "a:2:1: found \"x\"; expected a number such as 1234.5, since --bins cuts the column \"kind\"");
    options.table = {.weight_column = "kind"};
    EXPECT_EQ(complaint({table}, options),
              "a:2:1: found \"x\"; expected a whole number in the column \"kind\", for how many "
              "transactions the line stands");
    EXPECT_EQ(complaint({"      1 milk,bread\n      1 milk\n      eggs\n"}, weighted()),
              "a:3:7: found \"eggs\"; expected how many times the transaction occurs, a number from 1 to "
              "4294967295, and a blank");
}

TEST_F(Reading, RecognisesAWrongSeparatorOfATable) {
    ReadingOptions options = as(Format::table);
    options.separator = ',';
    EXPECT_EQ(complaint({"a;b;c\n1;2;3\n"}, options),
              "a: the header has one column and holds 2 \";\"; try --separator ';'");
    EXPECT_EQ(complaint({"a\tb\n1\t2\n"}, options),
              "a: the header has one column and holds 1 tab; try --separator tab");
}

TEST_F(Reading, RefusesOptionsThatDoNotGoWithTheFormat) {
    EXPECT_EQ(complaint({"1 2\n"}, with_bins()),
              "a: found fimi (items as numbers), guessed from whole numbers with blanks between them; "
              "expected a table, since --bins "
              "is given: leave --bins out, or say --format table if that is what it is");
    EXPECT_EQ(
        complaint({"milk,bread\nmilk\n"}, with_bins()),
        "a: found baskets, guessed from lines of 1 to 2 cells; expected a table, since --bins is given: "
        "leave --bins out, or say --format table if that is what it is");
    EXPECT_EQ(complaint({"1 2\n"}, with_separator(';')),
              "a: found fimi (items as numbers), guessed from whole numbers with blanks between them; "
              "expected baskets or a "
              "table, since --separator is given: leave --separator out, or say --format basket or table if "
              "that is what it is");
}

TEST_F(Reading, ReportsInputsWithoutItems) {
    EXPECT_EQ(complaint({""}), "a: found no item; expected one transaction a line");
    EXPECT_EQ(complaint({"\n \n"}), "a: found no item; expected one transaction a line");
    EXPECT_EQ(complaint({",\n"}, as(Format::basket)), "a: found no item; expected one transaction a line");
    EXPECT_EQ(complaint({"", "", ""}), "a and 2 more: found no item; expected one transaction a line");
}

TEST_F(Reading, TakesStandardInputOnce) {
    EXPECT_EQ(complaint_of([] {
                  ReadingReport report;
                  read_database({"-", "a", "-"}, {}, report);
              }),
              "-: found twice among the inputs; expected standard input at most once");
}

TEST(CheckTogether, RefusesOptionsThatDoNotGoWithAFormatThatIsGiven) {
    const auto complaint = [](Format format, ReadingOptions options) {
        options.format = format;
        return complaint_of([&] { check_together(options); });
    };
    EXPECT_EQ(complaint(Format::basket, with_bins()),
              "--bins: goes with --format table only; found --format basket");
    EXPECT_EQ(complaint(Format::fimi, with_separator(';')),
              "--separator: goes with --format basket or table only; found --format fimi");
    EXPECT_EQ(
        complaint(Format::table, weighted()),
        "--weighted: goes with --format fimi or basket only, and --weight NAME with tables; found --format "
        "table");
    EXPECT_EQ(complaint(Format::table, with_bins()), "");
    EXPECT_EQ(complaint(Format::table, with_separator(';')), "");
    EXPECT_EQ(complaint(Format::basket, with_separator(';')), "");
    EXPECT_EQ(complaint(Format::basket, weighted()), "");
    EXPECT_EQ(complaint(Format::fimi, weighted()), "");
}

TEST_F(Reading, RefusesLinesThatEndWithCarriageReturnsAlone) {
    const std::string expected =
        "a:1:4: found a line that ends with CR alone; expected lines that end with LF or CR LF (tr '\\r' "
        "'\\n' converts them)";
    EXPECT_EQ(complaint({"x,y\r1,2\r"}), expected);
    EXPECT_EQ(complaint({"x,y\r1,2\r"}, as(Format::table)), expected);
    EXPECT_EQ(complaint({"1 2\r3"}, as(Format::fimi)), expected);
    EXPECT_EQ(complaint({"1 2\r"}), "");
    EXPECT_EQ(complaint({"\r"}), "a: found no item; expected one transaction a line");
}

}  // namespace
}  // namespace korv::tools
