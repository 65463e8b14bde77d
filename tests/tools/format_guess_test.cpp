#include "mine/format_guess.h"

#include <gtest/gtest.h>

#include <random>

#include "tools/complaint.h"

namespace korv::tools {
namespace {

/// A guess in one line: the format, or "doubt"; the separator; what was seen, and in which line.
std::string in_words(const FormatGuess& guess) {
    return (guess.format ? word_for(*guess.format) : "doubt") +
           (guess.separator ? " " + shown_separator(*guess.separator) : "") + ": " + guess.seen +
           (guess.line ? " in line " + std::to_string(*guess.line) : "");
}

std::string guess_of(const std::string& text) {
    return in_words(guess_format({"a", text}, {}));
}

std::string guess_with(char separator, const std::string& text) {
    return in_words(guess_format({"a", text}, {separator, false}));
}

std::string guess_of_weighted(const std::string& text) {
    return in_words(guess_format({"a", text}, {{}, true}));
}

const std::string fimi = "fimi: whole numbers with blanks between them";

TEST(FormatGuess, SeesFimiInWholeNumbersWithBlanksOrTabsBetweenThem) {
    EXPECT_EQ(guess_of("1 2 3\n4 5\n"), fimi);
    EXPECT_EQ(guess_of("1 2 3"), fimi);
    EXPECT_EQ(guess_of("1\t2\n3\n"), fimi);
    EXPECT_EQ(guess_of(" 1  2 \r\n3\r\n"), fimi);
    EXPECT_EQ(guess_of("7\n8\n9\n"), fimi);
    EXPECT_EQ(guess_of("\n\n1 2\n\n"), fimi);
    EXPECT_EQ(guess_of("99999999999999999999 1\n"), fimi);
}

TEST(FormatGuess, TakesATextWithoutWordsForFimi) {
    EXPECT_EQ(guess_of(""), fimi);
    EXPECT_EQ(guess_of("\n \n\t\r\n"), fimi);
}

TEST(FormatGuess, LeavesAWrongWordAmongNumbersToTheReaderOfFimi) {
    const std::string faulty = "fimi: lines of whole numbers with blanks between them";
    EXPECT_EQ(guess_of("1 2\nx\n3 4\n"), faulty);
    EXPECT_EQ(guess_of("1 2\n3,4\n5 6\n"), faulty);
    EXPECT_EQ(guess_of("items\n1 2 3\n4 5\n"), faulty);
}

TEST(FormatGuess, SeesATableInRowsOfEqualLengthUnderNames) {
    EXPECT_EQ(guess_of("kind,age\nx,1\ny,2\n"),
              "table \",\": rows of 2 cells under a first line of distinct names");
    EXPECT_EQ(guess_of("a,b,c\n1,2,3\n"),
              "table \",\": rows of 3 cells under a first line of distinct names");
    EXPECT_EQ(guess_of("name,2019,2020\nx,1,2\n"),
              "table \",\": rows of 3 cells under a first line of distinct names");
    EXPECT_EQ(guess_of("\nkind,age\n\nx,1\n\ny,2"),
              "table \",\": rows of 2 cells under a first line of distinct names");
}

TEST(FormatGuess, SeesATableWithEmptyCells) {
    EXPECT_EQ(guess_of("a,b,c\n1,,3\n1,2,\n,,\n"),
              "table \",\": rows of 3 cells under a first line of distinct names");
    EXPECT_EQ(guess_of("a,b,note\n1,2,\n1,2,x\n"),
              "table \",\": rows of 3 cells under a first line of distinct names");
}

TEST(FormatGuess, SeesEachOfTheLikelySeparators) {
    EXPECT_EQ(guess_of("a;b\n1,5;2,5\n"),
              "table \";\": rows of 2 cells under a first line of distinct names");
    EXPECT_EQ(guess_of("a\tb\n1\t2\n"), "table tab: rows of 2 cells under a first line of distinct names");
    EXPECT_EQ(guess_of("a|b\n1|2\n"), "table \"|\": rows of 2 cells under a first line of distinct names");
}

TEST(FormatGuess, SeesSeparatorsWithinQuotesAsText) {
    EXPECT_EQ(guess_of("name;note\n\"a, b\";\"c; d\"\n\"x\n,y\";z\n"),
              "table \";\": rows of 2 cells under a first line of distinct names");
    EXPECT_EQ(guess_of("\"a;b\",c\n\"1;2\",3\n"),
              "table \",\": rows of 2 cells under a first line of distinct names");
}

TEST(FormatGuess, SeesBasketsInLinesOfVaryingLength) {
    EXPECT_EQ(guess_of("milk,bread\nmilk\nbread,eggs,ham\n"), "basket \",\": lines of 1 to 3 cells");
    EXPECT_EQ(guess_of("milk;rye bread\nmilk\n"), "basket \";\": lines of 1 to 2 cells");
    EXPECT_EQ(guess_of("milk\neggs|bread\n"), "basket \"|\": lines of 1 to 2 cells");
    EXPECT_EQ(guess_of("1\n2,x\n"), "basket \",\": lines of 1 to 2 cells");
}

TEST(FormatGuess, DoubtsASingleColumn) {
    const std::string doubt = "doubt: a single column, without commas, semicolons, tabs or bars";
    EXPECT_EQ(guess_of("milk\nbread\n"), doubt);
    EXPECT_EQ(guess_of("rye bread\nmilk\n"), doubt);
    EXPECT_EQ(guess_of("age\n12\n13\n"), doubt);
    EXPECT_EQ(guess_of("1.5\n2.5\n"), doubt);
    EXPECT_EQ(guess_with(';', "milk,bread\neggs\n"), "doubt \";\": a single column");
}

TEST(FormatGuess, DoubtsASeparatorThatHardlyOccurs) {
    std::string names;
    for (int i = 0; i < 20; ++i) {
        names += "item " + std::to_string(i) + '\n';
    }
    EXPECT_EQ(guess_of("bread, white\n" + names),
              "doubt \",\": a line of 2 cells, where nearly all have 1 in line 1");
}

TEST(FormatGuess, DoubtsASingleLine) {
    EXPECT_EQ(guess_of("milk,bread,eggs\n"), "doubt \",\": a single line of 3 cells");
}

TEST(FormatGuess, DoubtsRowsOfEqualLengthUnderWhatIsNoHeader) {
    EXPECT_EQ(guess_of("a,b,a\n1,2,3\n"), "doubt \",\": rows of 3 cells under a first line with \"a\" twice");
    EXPECT_EQ(guess_of("a,,b\n1,2,3\n"),
              "doubt \",\": rows of 3 cells under a first line with an empty cell");
    EXPECT_EQ(guess_of(",a,b\n1,2,3\n1,4,5\n"),
              "doubt \",\": rows of 3 cells under a first line with an empty cell");
    EXPECT_EQ(guess_of(",a,b\n1,2,3\n,4,5\n"),
              "doubt \",\": rows of 3 cells under a first line with an empty cell");
    EXPECT_EQ(guess_of("1,2.5,3\n4,5,6\n"), "doubt \",\": rows of 3 cells under a first line of numbers");
    EXPECT_EQ(guess_of("milk,bread\neggs,milk\n"),
              "doubt \",\": rows of 2 cells under a first line with \"milk\", which occurs again below");
}

TEST(FormatGuess, SeesATableWhoseFirstColumnIsLabelsWithoutAName) {
    EXPECT_EQ(guess_of(",a,b\n1,2,3\n2,4,5\n"), guess_of("id,a,b\n1,2,3\n2,4,5\n"));
    EXPECT_EQ(guess_of("\"\",\"mpg\"\n\"Mazda RX4\",21\n\"Fiat 128\",32.4\n"),
              guess_of("car,mpg\nMazda RX4,21\nFiat 128,32.4\n"));
}

TEST(FormatGuess, DoubtsBasketsThatAreFilledUpWithEmptyCells) {
    EXPECT_EQ(guess_of("milk,bread,eggs\nham,,\nbeer,ham,\n"),
              "doubt \",\": rows of 3 cells, the last of which are often empty");
}

TEST(FormatGuess, DoubtsATableWithLinesThatAreTooShort) {
    EXPECT_EQ(guess_of("a,b,note\n1,2\n3,4,x\n"),
              "doubt \",\": lines of 2 to 3 cells, none longer than the first, which may be a header");
}

TEST(FormatGuess, DoubtsATableUnderATitle) {
    EXPECT_EQ(guess_of("Sales of 2020\n\na,b,c\n1,2,3\n4,5,6\n7,8,9\n"),
              "doubt \",\": a line of 1 cell, where nearly all have 3 in line 1");
}

TEST(FormatGuess, TellsTheFirstLineThatIsShorterOrLongerThanNearlyAll) {
    const std::string rows = "4,5,6\n\n7,8,9\n\"1\n\n2\",2,3\n4,5,6\n";
    const std::string doubt = "doubt \",\": a line of 2 cells, where nearly all have 3 in line ";
    EXPECT_EQ(guess_of("a,b,c\n" + rows + "1,2\n"), doubt + "9");
    EXPECT_EQ(guess_of("\n\na,b,c\n" + rows + "1,2\n1,2,3,4\n" + rows), doubt + "11");
}

TEST(FormatGuess, DoubtsNumbersAndNamesBetweenTabs) {
    EXPECT_EQ(guess_of("1\t2\n3\tx\n4\n"), "doubt tab: lines of numbers with tabs between them, and others");
}

TEST(FormatGuess, DoubtsBasketsOfNumbersAlone) {
    EXPECT_EQ(guess_of("1,2,3\n4,5\n"), "doubt \",\": whole numbers with \",\" between them");
    EXPECT_EQ(guess_of("1\n2;3;\n"), "doubt \";\": whole numbers with \";\" between them");
    EXPECT_EQ(guess_of_weighted("  3 1,2,3\n  1 4,5\n"),
              "doubt \",\": whole numbers with \",\" between them");
    EXPECT_EQ(guess_with(',', "1,2,3\n4,5\n"), "basket \",\": lines of 2 to 3 cells");
}

TEST(FormatGuess, DoubtsSeveralSeparators) {
    const FormatGuess guess = guess_format({"a", "a;b,c\nd;e,f\n"}, {});
    EXPECT_EQ(in_words(guess), "doubt: \",\" and \";\", each of which may be the separator");
    EXPECT_TRUE(guess.has_several_separators);
    EXPECT_EQ(guess_of("a;b|c\nd,e\nf\n"),
              "doubt: \",\", \";\" and \"|\", each of which may be the separator");
}

TEST(FormatGuess, OverlooksASeparatorInFewLinesOfBaskets) {
    std::string baskets = "milk,rye; dark\n";
    for (int i = 0; i < 10; ++i) {
        baskets += "milk,bread,eggs\nmilk\n";
    }
    EXPECT_EQ(guess_of(baskets), "basket \",\": lines of 1 to 3 cells");
}

TEST(FormatGuess, TakesTheSeparatorThatIsGiven) {
    EXPECT_EQ(guess_with('|', "a;b|c\nd|e;f\n"),
              "table \"|\": rows of 2 cells under a first line of distinct names");
    EXPECT_EQ(guess_with(' ', "rye milk\nmilk\n"), "basket \" \": lines of 1 to 2 cells");
}

TEST(FormatGuess, LooksBehindTheWeights) {
    EXPECT_EQ(guess_of_weighted("      3 1 2\n     12 4\n      1 \n"), fimi);
    EXPECT_EQ(guess_of_weighted("      3 milk,bread\n      1 eggs\n"),
              "basket \",\": numbers, each with 1 to 2 cells");
    EXPECT_EQ(guess_of_weighted("      3 milk,bread\n      1 eggs,milk\n"),
              "basket \",\": numbers, each with 2 cells");
    EXPECT_EQ(guess_of_weighted("      3 milk\n      1 bread\n"),
              "doubt: a single column, without commas, semicolons, tabs or bars");
}

TEST(FormatGuess, LooksAtTheFirstThousandLines) {
    std::string table = "a,b\n";
    for (int i = 0; i < 999; ++i) {
        table += "1,2\n";
    }
    EXPECT_EQ(guess_of(table + "1,2,3\n"),
              "table \",\": rows of 2 cells under a first line of distinct names");
    EXPECT_EQ(guess_of(table.substr(0, table.size() - 4) + "1,2,3\n"),
              "doubt \",\": a line of 3 cells, where nearly all have 2 in line 1000");
}

TEST(FormatGuess, LooksAtWholeLinesOfALongText) {
    const std::string wide(400'000, 'x');
    const std::string rows = "a,b\n" + wide + ",1\n" + wide + ",2\n" + wide + ",3\n";
    EXPECT_EQ(guess_of(rows), "table \",\": rows of 2 cells under a first line of distinct names");
}

TEST(FormatGuess, LooksAtWhatIsBeforeAQuoteThatIsNotClosed) {
    EXPECT_EQ(guess_of("a;b\n1;2\n3;\"4\n"),
              "table \";\": rows of 2 cells under a first line of distinct names");
}

/// Whatever is written as one format is guessed as that or doubted, never as another.
TEST(FormatGuess, IsNeverWrongAboutRandomBasketsAndTables) {
    std::mt19937 random(11);
    int tables = 0;
    int baskets = 0;
    for (int run = 0; run < 500; ++run) {
        const char separator = likely_separators[random() % likely_separators.size()];
        std::string basket;
        for (int line = 0; line < 40; ++line) {
            for (auto cell = random() % 5 + 1; cell > 0; --cell) {
                basket +=
                    "item" + std::to_string(random() % 12) + (cell > 1 ? std::string(1, separator) : "\n");
            }
        }
        const std::string guessed_basket = guess_of(basket);
        EXPECT_FALSE(guessed_basket.starts_with("table") || guessed_basket.starts_with("fimi")) << basket;
        baskets += guessed_basket.starts_with("basket " + shown_separator(separator)) ? 1 : 0;

        const auto columns = random() % 5 + 2;
        std::string table;
        for (std::size_t line = 0; line < 20; ++line) {
            for (std::size_t column = 0; column < columns; ++column) {
                table += line == 0 ? "column" + std::to_string(column)
                                   : std::string(random() % 4 == 0 ? "" : std::to_string(random() % 9));
                table += column + 1 < columns ? std::string(1, separator) : "\n";
            }
        }
        const std::string guessed_table = guess_of(table);
        EXPECT_FALSE(guessed_table.starts_with("basket") || guessed_table.starts_with("fimi")) << table;
        tables += guessed_table.starts_with("table " + shown_separator(separator)) ? 1 : 0;
    }
    EXPECT_GT(baskets, 490);
    EXPECT_GT(tables, 490);
}

TEST(GuessOfNames, SeesTablesAndBasketsAlone) {
    const auto guess_of_names = [](const std::string& text) {
        return in_words(guess_format_of_names({"a", text}, {}));
    };
    EXPECT_EQ(guess_of_names("milk,bread\nmilk\n"), "basket \",\": lines of 1 to 2 cells");
    EXPECT_EQ(guess_of_names("a,b\n1,2\n"),
              "table \",\": rows of 2 cells under a first line of distinct names");
    EXPECT_EQ(guess_of_names("1 2\n3,4\n5 6\n"), "doubt: lines of whole numbers");
}

TEST(TableWithoutWeights, HasAHeaderThatNoNumberPrecedes) {
    const auto is_one = [](const std::string& text, std::optional<char> separator = {}) {
        return is_table_without_weights({"a", text}, separator);
    };
    EXPECT_TRUE(is_one("kind,age\nx,1\ny,2\n"));
    EXPECT_TRUE(is_one("\n kind;age\r\nx;1\r\n"));
    EXPECT_TRUE(is_one("kind:age\nx:1\n", ':'));
    EXPECT_FALSE(is_one("      3 milk,bread\n      2 eggs,ham\n"));
    EXPECT_FALSE(is_one("sep=,\n3 milk,bread\n2 eggs,ham\n"));
    EXPECT_FALSE(is_one("milk,bread\nmilk\n"));
    EXPECT_FALSE(is_one(""));
}

char separator_of(const std::string& text, Format format) {
    return guess_separator({"a.csv", text}, format, false);
}

TEST(SeparatorGuess, IsTheOnlyOneThatOccurs) {
    EXPECT_EQ(separator_of("milk;bread\n", Format::basket), ';');
    EXPECT_EQ(separator_of("milk\nbread\teggs\n", Format::basket), '\t');
    EXPECT_EQ(separator_of("a|b\n", Format::table), '|');
}

TEST(SeparatorGuess, IsACommaWhereNoneOccurs) {
    EXPECT_EQ(separator_of("milk\nbread\n", Format::basket), ',');
    EXPECT_EQ(separator_of("age\n1\n2\n", Format::table), ',');
    EXPECT_EQ(separator_of("note\na; b\nc\n", Format::table), ',');
    EXPECT_EQ(separator_of("", Format::basket), ',');
}

TEST(SeparatorGuess, OfATableIsThatOfItsHeader) {
    EXPECT_EQ(separator_of("a;b\n1,5;2\n1,6;\n", Format::table), ';');
    EXPECT_EQ(separator_of("name;unit (m, s)\nx;m\ny;s\n", Format::table), ';');
}

TEST(SeparatorGuess, IsRefusedWhereSeveralAreLikely) {
    EXPECT_EQ(complaint_of([] { separator_of("milk;bread\nmilk,bread\n", Format::basket); }),
              "a.csv: found \",\" and \";\", each of which may be the separator; expected --separator to say "
              "which");
    EXPECT_EQ(complaint_of([] { separator_of("a;b,c\nd;e,f\n", Format::table); }),
              "a.csv: found \",\" and \";\", each of which may be the separator; expected --separator to say "
              "which");
}

TEST(AnotherSeparator, IsTheOneThatLinesHoldInstead) {
    EXPECT_EQ(another_separator({"a", "milk;bread\n"}, ',', false), ';');
    EXPECT_EQ(another_separator({"a", "milk;bread\neggs,ham\n"}, ',', false), std::nullopt);
    EXPECT_EQ(another_separator({"a", "milk;bread\neggs|ham\n"}, ',', false), std::nullopt);
    EXPECT_EQ(another_separator({"a", "milk\n"}, ',', false), std::nullopt);
}

TEST(OtherSeparatorOfAHeader, IsTheMostFrequentOne) {
    const auto other = other_separator_of_header({"a", "a;b;c|d\n1;2;3|4\n"}, ',');
    ASSERT_TRUE(other);
    EXPECT_EQ(other->separator, ';');
    EXPECT_EQ(other->count, 2U);
}

TEST(OtherSeparatorOfAHeader, IsNoneWhereTheHeaderHasCellsOrTheRowsHaveNone) {
    EXPECT_FALSE(other_separator_of_header({"a", "a;b,c\n1;2,3\n"}, ','));
    EXPECT_FALSE(other_separator_of_header({"a", "price (net; total)\n1\n2\n"}, ','));
    EXPECT_FALSE(other_separator_of_header({"a", "a\n1\n"}, ','));
    EXPECT_FALSE(other_separator_of_header({"a", ""}, ','));
}

TEST(FormatGuess, SaysThatDoubtMayComeFromAQuote) {
    EXPECT_EQ(
        guess_of("name,size\nTV,\"12\nPC,9\n"),
        "doubt \",\": a single line of 2 cells, before a quote that is not closed, or is not the end of "
        "its cell");
}

}  // namespace
}  // namespace korv::tools
