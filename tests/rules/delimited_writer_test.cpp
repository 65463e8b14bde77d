#include "rules/delimited_writer.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "made_rules.h"

namespace korv::tools {

namespace {

constexpr std::string_view csv_header =
    "id,form,kind,premise,conclusion,support,support_max,confidence,confidence_max,lift,lift_max,leverage,"
    "leverage_max,premise_count,premise_count_max,conclusion_count,conclusion_count_max,transactions,items,"
    "wordings";

TEST(CsvWriter, WritesAHeaderAloneWithoutRules) {
    const MadeRules rules({});
    EXPECT_EQ(written(RuleFormat::csv, rules.book(10), {}), std::string(csv_header) + "\n");
}

TEST(CsvWriter, WritesARowForEachRule) {
    MadeRules rules({{1, "bread"}, {2, "butter"}});
    FoundRule first = known_rule(rules.any({1}), rules.none({2}), {4, 5, 4}, Form::R311);
    first.wordings = 3;
    const FoundRule second = known_rule(rules.none({1, 2}), rules.any({3}), {5, 2, 1});
    // Lift: 4 * 10 / (4 * 5) = 2, and 1 * 10 / (5 * 2) = 1; leverage: 4/10 - 20/100, and 1/10 - 10/100.
    EXPECT_EQ(written(RuleFormat::csv, rules.book(10), {first, second}),
              std::string(csv_header) +
                  "\n"
                  "1,R311,exact,bread,not butter,4,4,1,1,2,2,0.2,0.2,4,4,5,5,10,2,3\n"
                  "2,R131,approximative,\"none of bread, butter\",3,1,1,0.2,0.2,1,1,0,0,5,5,2,2,10,3,1\n");
}

TEST(CsvWriter, WritesBothEndsOfWhatIsBounded) {
    MadeRules rules({});
    FoundRule rule = known_rule(rules.any({1}), rules.any({2}), {4, 5, 3});
    rule.at_high = {4, 5, 2};
    EXPECT_EQ(written(RuleFormat::csv, rules.book(10), {rule}),
              std::string(csv_header) + "\n1,R131,bounded,1,2,2,3,0.5,0.75,1,1.5,0,0.1,4,4,5,5,10,2,1\n");
}

TEST(CsvWriter, AddsColumnsForFurtherMeasures) {
    MadeRules rules({});
    const FoundRule exact = known_rule(rules.any({1}), rules.any({2}), {4, 5, 4});
    // Of nothing: confidence, lift and conviction are 0/0.
    const FoundRule empty = known_rule(rules.any({3}), rules.any({2}), {0, 5, 0});
    EXPECT_EQ(
        written(RuleFormat::csv, rules.book(10, {Measure::conviction, Measure::jaccard}), {exact, empty}),
        std::string(csv_header) +
            ",conviction,conviction_max,jaccard,jaccard_max\n"
            "1,R131,exact,1,2,4,4,1,1,2,2,0.2,0.2,4,4,5,5,10,2,1,inf,inf,0.8,0.8\n"
            "2,R131,approximative,3,2,0,0,,,,,0,0,0,0,5,5,10,2,1,,,0,0\n");
}

TEST(CsvWriter, AddsWhatOtherTransactionsSayAtTheEnd) {
    MadeRules rules({});
    const FoundRule exact = known_rule(rules.any({1}), rules.any({2}), {4, 5, 4});
    const std::vector<HoldoutCounts> holdout = {{{8, 9, 6}, 2.5}, {{0, 9, 0}, 0}};
    RuleBook book = rules.book(10, {Measure::jaccard});
    book.holdout = &holdout;
    EXPECT_EQ(written(RuleFormat::csv, book, {exact, exact}),
              std::string(csv_header) +
                  ",jaccard,jaccard_max,holdout_support,holdout_confidence,holdout_p\n"
                  "1,R131,exact,1,2,4,4,1,1,2,2,0.2,0.2,4,4,5,5,10,2,1,0.8,0.8,6,0.75,2.5\n"
                  "2,R131,exact,1,2,4,4,1,1,2,2,0.2,0.2,4,4,5,5,10,2,1,0.8,0.8,0,,0\n");
}

TEST(CsvWriter, WritesWholeLinesInPieces) {
    MadeRules rules({});
    const FoundRule rule = known_rule(rules.any({1}), rules.any({2}), {4, 5, 4});
    const RuleBook book = rules.book(10);
    std::size_t pieces = 0;
    std::size_t lines = 0;
    const auto writer = csv_writer(book, [&](std::string_view text) {
        ++pieces;
        lines += static_cast<std::size_t>(std::ranges::count(text, '\n'));
        EXPECT_TRUE(text.ends_with('\n'));
    });
    for (int i = 0; i < 10'000; ++i) {
        writer->write(rule);
    }
    EXPECT_GT(pieces, 1U);
    writer->finish();
    EXPECT_EQ(lines, 10'001U);
}

TEST(CsvCell, QuotesWhatCommasQuotesAndLineEndsAreIn) {
    EXPECT_EQ(csv_cell("bread"), "bread");
    EXPECT_EQ(csv_cell("a, b"), "\"a, b\"");
    EXPECT_EQ(csv_cell("say \"hi\""), "\"say \"\"hi\"\"\"");
    EXPECT_EQ(csv_cell("a\nb"), "\"a\nb\"");
    EXPECT_EQ(csv_cell("a\rb"), "\"a\rb\"");
    EXPECT_EQ(csv_cell("a\tb;c"), "a\tb;c");
}

TEST(CsvCell, HasAnApostropheBeforeWhatASpreadsheetTakesForAFormula) {
    EXPECT_EQ(csv_cell("=1+1"), "'=1+1");
    EXPECT_EQ(csv_cell("+1"), "'+1");
    EXPECT_EQ(csv_cell("-1"), "'-1");
    EXPECT_EQ(csv_cell("@SUM(A1)"), "'@SUM(A1)");
    EXPECT_EQ(csv_cell("\t=1"), "'\t=1");
    EXPECT_EQ(csv_cell("\r=1"), "\"'\r=1\"");
    EXPECT_EQ(csv_cell("\n=1"), "\"'\n=1\"");
    EXPECT_EQ(csv_cell("=\"a\"&B1"), "\"'=\"\"a\"\"&B1\"");
}

TEST(CsvCell, KeepsApartWhatBeginsWithApostrophes) {
    EXPECT_EQ(csv_cell("'=1"), "''=1");
    EXPECT_EQ(csv_cell("''=1"), "'''=1");
    EXPECT_EQ(csv_cell("'s-Hertogenbosch"), "'s-Hertogenbosch");
    EXPECT_EQ(csv_cell("'"), "'");
    EXPECT_EQ(csv_cell("1=1"), "1=1");
    EXPECT_EQ(csv_cell(""), "");
}

TEST(TsvWriter, HasTabsBetweenCells) {
    MadeRules rules({{1, "a\tb, \"c\""}});
    const FoundRule rule = known_rule(rules.any({1}), rules.none({2, 3}), {4, 5, 4});
    std::string header(csv_header);
    std::ranges::replace(header, ',', '\t');
    EXPECT_EQ(written(RuleFormat::tsv, rules.book(10), {rule}),
              header +
                  "\n1\tR131\texact\ta\\tb, \"c\"\tnone of 2, 3\t4\t4\t1\t1\t2\t2\t0.2\t0.2\t4\t4\t5\t5\t10" +
                  "\t3\t1\n");
}

TEST(TsvCell, SpellsTabsLineEndsAndBackslashes) {
    EXPECT_EQ(tsv_cell("a\tb\nc\rd\\e"), "a\\tb\\nc\\rd\\\\e");
    EXPECT_EQ(tsv_cell("\"a\", b"), "\"a\", b");
}

TEST(TsvCell, HasAnApostropheBeforeWhatASpreadsheetTakesForAFormula) {
    EXPECT_EQ(tsv_cell("=1+1"), "'=1+1");
    EXPECT_EQ(tsv_cell("'=1+1"), "''=1+1");
    EXPECT_EQ(tsv_cell("\t=1"), "\\t=1");  // begins with a backslash
}

}  // namespace

}  // namespace korv::tools
