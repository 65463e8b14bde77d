#include "mine/reading_arguments.h"

#include <gtest/gtest.h>

#include <CLI/CLI.hpp>

#include "tools/complaint.h"

namespace korv::tools {
namespace {

/// What the words of a command line say. Throws as CLI11 does for wrong ones.
ReadingOptions options_of(std::vector<std::string> words, Reader reader = Reader::mining) {
    CLI::App app;
    ReadingWords typed;
    add_reading_options(app, typed, reader);
    std::ranges::reverse(words);  // as CLI11 takes them
    app.parse(words);
    return reading_options(app, typed);
}

std::string complaint(const std::vector<std::string>& words) {
    return complaint_of([&] { options_of(words); });
}

using Words = std::vector<std::string>;

TEST(ReadingArguments, AreNotNeeded) {
    const ReadingOptions options = options_of({});
    EXPECT_EQ(options.format, std::nullopt);
    EXPECT_EQ(options.separator, std::nullopt);
    EXPECT_FALSE(options.weighted);
    EXPECT_FALSE(options.table.only_true);
    EXPECT_EQ(options.table.columns, Words{});
    EXPECT_EQ(options.table.missing, TableOptions().missing);
    EXPECT_EQ(options.table.weight_column, "");
    EXPECT_EQ(options.given_for_tables, Words{});
}

TEST(ReadingArguments, NameTheFormatAndTheSeparator) {
    EXPECT_EQ(options_of({"--format", "fimi"}).format, Format::fimi);
    EXPECT_EQ(options_of({"--format", "basket"}).format, Format::basket);
    EXPECT_EQ(options_of({"--format", "table"}).format, Format::table);
    EXPECT_EQ(options_of({"--separator", ";"}).separator, ';');
    EXPECT_EQ(options_of({"--separator", "tab"}).separator, '\t');
    EXPECT_EQ(options_of({"--separator", " "}).separator, ' ');
    EXPECT_TRUE(options_of({"--weighted"}).weighted);
}

TEST(ReadingArguments, ChooseColumns) {
    const ReadingOptions options =
        options_of({"--columns", "age, sex,\"a,b\"", "--ignore", "id*", "--weight", "n"});
    EXPECT_EQ(options.table.columns, (Words{"age", "sex", "a,b"}));
    EXPECT_EQ(options.table.ignored, Words{"id*"});
    EXPECT_EQ(options.table.weight_column, "n");
    EXPECT_EQ(options.given_for_tables, (Words{"--columns", "--ignore", "--weight"}));
}

TEST(ReadingArguments, NameMissingWords) {
    EXPECT_EQ(options_of({"--missing", "NA,-"}).table.missing, (Words{"NA", "-"}));
    EXPECT_EQ(options_of({"--missing", ""}).table.missing, Words{});
    EXPECT_EQ(options_of({"--missing", ""}).given_for_tables, Words{"--missing"});
}

TEST(ReadingArguments, MayRepeatBinsAndSplits) {
    const ReadingOptions options =
        options_of({"--bins", "4", "--bins", "age=3", "--split", "a=;", "--split", "b=|"});
    ASSERT_EQ(options.table.bins.size(), 2U);
    EXPECT_EQ(options.table.bins[0].column, "");
    EXPECT_EQ(options.table.bins[0].bins, 4U);
    EXPECT_EQ(options.table.bins[1].column, "age");
    EXPECT_EQ(options.table.bins[1].bins, 3U);
    ASSERT_EQ(options.table.splits.size(), 2U);
    EXPECT_EQ(options.table.splits[0].column, "a");
    EXPECT_EQ(options.table.splits[0].separator, ";");
    EXPECT_EQ(options.table.splits[1].separator, "|");
    EXPECT_EQ(options.given_for_tables, (Words{"--bins", "--split"}));
}

TEST(ReadingArguments, MayCutAtPoints) {
    const ReadingOptions options = options_of({"--bins", "age=18,65", "--bins", "height=180,"});
    ASSERT_EQ(options.table.bins.size(), 2U);
    EXPECT_EQ(options.table.bins[0].column, "age");
    EXPECT_EQ(options.table.bins[0].points, (Words{"18", "65"}));
    EXPECT_EQ(options.table.bins[1].points, Words{"180"});
}

TEST(ReadingArguments, TakeCellsForFlags) {
    const ReadingOptions options = options_of({"--only-true"});
    EXPECT_TRUE(options.table.only_true);
    EXPECT_EQ(options.given_for_tables, Words{"--only-true"});
}

TEST(ReadingArguments, MustNotHaveTwoRulesForAColumn) {
    const std::string said = complaint({"--bins", "4", "--bins", "5"});
    EXPECT_TRUE(said.starts_with("--bins: found ")) << said;
    EXPECT_NE(said.find("all columns; expected one"), std::string::npos) << said;
}

TEST(ReadingArguments, MustGoTogether) {
    EXPECT_EQ(complaint({"--format", "basket", "--bins", "4"}),
              "--bins: goes with --format table only; found --format basket");
    EXPECT_EQ(
        complaint({"--format", "table", "--weighted"}),
        "--weighted: goes with --format fimi or basket only, and --weight NAME with tables; found --format "
        "table");
    EXPECT_EQ(complaint({"--format", "fimi", "--columns", "a"}),
              "--columns: goes with --format table only; found --format fimi");
}

TEST(ReadingArguments, MustNameSomething) {
    EXPECT_EQ(complaint({"--columns", ""}),
              "--columns: found no name; expected names of columns with commas between them");
    EXPECT_EQ(complaint({"--ignore", ","}),
              "--ignore: found no name; expected names of columns with commas between them");
    EXPECT_EQ(complaint({"--weight", ""}), "--weight: found no name; expected the name of a column");
}

TEST(ReadingArguments, MustBeWellFormed) {
    for (const Words& words : std::vector<Words>{{"--format", "csv"},
                                                 {"--separator", "ab"},
                                                 {"--separator", ""},
                                                 {"--bins", "0"},
                                                 {"--bins", "4", "5"},
                                                 {"--split", "a"}}) {
        EXPECT_THROW(options_of(words), CLI::ParseError) << testing::PrintToString(words);
    }
}

TEST(ParseSeparator, TakesOneByteOrTheWordTab) {
    EXPECT_EQ(parse_separator(";"), ';');
    EXPECT_EQ(parse_separator("\t"), '\t');
    EXPECT_EQ(parse_separator("tab"), '\t');
}

TEST(ParseSeparator, TakesNothingThatCannotSeparate) {
    for (const char* const text : {"", "ab", "\"", "\n", "\r"}) {
        EXPECT_EQ(parse_separator(text), std::nullopt) << text;
    }
}

TEST(ParseWords, SplitsAtCommas) {
    EXPECT_EQ(parse_words("--columns", "a, b ,,\"c, d\""), (Words{"a", "b", "c, d"}));
    EXPECT_EQ(parse_words("--columns", ""), Words{});
    EXPECT_EQ(complaint_of([] { parse_words("--columns", "a,\"b"); }),
              "--columns:1:3: found a quote that is not closed; expected a closing quote");
}

TEST(ReadingArguments, OfRulesTakeClassFilesAndNoBins) {
    EXPECT_EQ(options_of({"--format", "classes"}, Reader::rules).format, std::nullopt);
    EXPECT_EQ(options_of({"--format", "table"}, Reader::rules).format, Format::table);
    const ReadingOptions none = options_of({"--format", "fimi", "--bins", "none"}, Reader::rules);
    EXPECT_TRUE(none.table.bins.empty());
    EXPECT_EQ(none.given_for_tables, Words{});
    EXPECT_EQ(options_of({"--bins", "age=3"}, Reader::rules).table.bins.front().bins, 3U);
    EXPECT_EQ(complaint_of([] {
                  options_of({"--bins", "none", "--bins", "age=3"}, Reader::rules);
              }),
              "--bins: found none among other rules; expected none alone, or rules");
}

TEST(ReadingArguments, OfMiningTakeNeither) {
    EXPECT_THROW(options_of({"--format", "classes"}), CLI::ParseError);
    EXPECT_THROW(options_of({"--bins", "none"}), CLI::ParseError);
}

}  // namespace
}  // namespace korv::tools
