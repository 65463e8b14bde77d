#include "rules/table_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "made_rules.h"
#include "rules/display_text.h"

namespace korv::tools {

namespace {

class TableWriterTest : public ::testing::Test {
protected:
    std::string table(const std::vector<FoundRule>& rows, const TerminalStyle& style,
                      std::vector<Measure> measures = {}) const {
        return written(RuleFormat::table, rules.book(2201, std::move(measures)), rows, style);
    }

    MadeRules rules{titanic_names};
    FoundRule women_survived = known_rule(rules.any({6}), rules.any({10}), {470, 711, 344});
    FoundRule crew_or_woman = known_rule(rules.any({4, 6}), rules.none({1, 2, 7}), {1332, 1562, 1112});
    FoundRule no_child_in_the_crew = known_rule(rules.any({7}), rules.none({4}), {109, 1316, 109});
};

TEST_F(TableWriterTest, IsAlignedAndNoWiderThanItsRules) {
    EXPECT_EQ(table({women_survived, no_child_in_the_crew}, {.width = 100}),
              "#  rule                         confidence  lift  support  leverage\n"
              "1  sex=female => survived=yes        0.732  2.27      344    0.0873\n"
              "2  age=child => class not crew       1.000  1.67      109    0.0199\n");
}

TEST_F(TableWriterTest, HasColumnsForWhatOtherTransactionsSay) {
    const std::vector<HoldoutCounts> holdout = {{{1470, 1711, 1344}, 12.34}, {{9, 7, 8}, 1.5}};
    RuleBook book = rules.book(2201);
    book.holdout = &holdout;
    EXPECT_EQ(
        written(RuleFormat::table, book, {women_survived, no_child_in_the_crew}, {.width = 100}),
        "#  rule                         confidence  lift  support  leverage         holdout  holdout_p\n"
        "1  sex=female => survived=yes        0.732  2.27      344    0.0873  1,344 of 1,470       12.3\n"
        "2  age=child => class not crew       1.000  1.67      109    0.0199          8 of 9       1.50\n");
}

TEST_F(TableWriterTest, WritesNothingWithoutRules) {
    EXPECT_EQ(table({}, {.width = 100}), "");
}

TEST_F(TableWriterTest, WrapsRulesToTheWidth) {
    EXPECT_EQ(table({women_survived, crew_or_woman}, {.width = 70}),
              "#  rule                           confidence  lift  support  leverage\n"
              "1  sex=female => survived=yes          0.732  2.27      344    0.0873\n"
              "2  class=crew or sex=female =>         0.835  1.18    1,112    0.0757\n"
              "     class not in {1st, 2nd} and\n"
              "     age not child\n");
}

TEST_F(TableWriterTest, PutsNumbersBelowRulesWhereItIsNarrow) {
    EXPECT_EQ(table({women_survived, crew_or_woman}, {.width = 42}),
              "1  sex=female => survived=yes\n"
              "   confidence 0.732, lift 2.27, support\n"
              "   344, leverage 0.0873\n"
              "2  class=crew or sex=female => class not\n"
              "     in {1st, 2nd} and age not child\n"
              "   confidence 0.835, lift 1.18, support\n"
              "   1,112, leverage 0.0757\n");
}

TEST_F(TableWriterTest, ShowsRangesAndFurtherMeasures) {
    women_survived.at_high.both = 376;
    EXPECT_EQ(table({women_survived}, {.width = 120}, {Measure::jaccard, Measure::p}),
              "#  rule                            confidence          lift     support          leverage"
              "         jaccard            p\n"
              "1  sex=female => survived=yes  0.732 to 0.800  2.27 to 2.48  344 to 376  0.0873 to 0.1019"
              "  0.411 to 0.467  95.6 to 131\n");
}

TEST_F(TableWriterTest, SaysNothingIs0Or1ThatOnlyComesClose) {
    // Of 2,100, one is an exception, and so it is of all 2,201: 2099/2100, 2099*2201/(2100*2200), and
    // (2099*2201 - 2100*2200)/2201^2.
    EXPECT_EQ(table({known_rule(rules.any({6}), rules.any({10}), {2100, 2200, 2099})}, {.width = 100}),
              "#  rule                        confidence   lift  support  leverage\n"
              "1  sex=female => survived=yes      >0.999  >0.99    2,099  -2.1e-05\n");
}

TEST_F(TableWriterTest, HasColourOnlyWhereATerminalHas) {
    EXPECT_EQ(table({women_survived}, {.width = 100, .has_color = true}),
              "\x1B[1m#  rule                        confidence  lift  support  leverage\x1B[22m\n"
              "1  sex=female => \x1B[1msurvived=yes\x1B[22m       0.732  2.27      344    0.0873\n");
    EXPECT_EQ(table({women_survived, crew_or_woman}, {.width = 42}).find('\x1B'), std::string::npos);
}

TEST_F(TableWriterTest, HasTheWholeOfAWrappedConclusionInColour) {
    const std::string text = table({crew_or_woman}, {.width = 70, .has_color = true});
    EXPECT_NE(
        text.find("\n     \x1B[1mclass not in {1st, 2nd} and\x1B[22m\n     \x1B[1mage not child\x1B[22m\n"),
        std::string::npos)
        << text;
}

TEST_F(TableWriterTest, ShortensLongSidesAndNames) {
    MadeRules many({{1, std::string(50, 'a')}, {2, "b\x1B[2J\nc"}});
    EXPECT_EQ(
        written(RuleFormat::table, many.book(10),
                {known_rule(many.any({1}), many.none({2, 3, 4, 5, 6, 7, 8, 9}), {4, 8, 4})}, {.width = 95}),
        "#  rule                                                 confidence  lift  support  leverage\n"
        "1  aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa… => none of       1.000  1.25        4    0.0800\n"
        "     b\\x1B[2J\\x0Ac, 3, 4, 5, 6, 7 and not 2 more\n");
}

TEST_F(TableWriterTest, NeverExceedsTheWidth) {
    MadeRules many({{1, "パンとバターとミルク 👩‍👩‍👧 לחם"},
                    {2, std::string(39, 'x')},
                    {3, "e\u0301e\u0301 butter"}});
    const FoundRule rule =
        known_rule(many.any({1, 2, 3}), many.none({2, 3, 4}), {1'000'000, 2'000'000, 900'000});
    for (std::size_t width = 24; width <= 160; ++width) {
        for (const std::vector<Measure>& measures :
             {std::vector<Measure>{}, {Measure::jaccard, Measure::cosine, Measure::recall}}) {
            std::istringstream lines(
                written(RuleFormat::table, many.book(3'000'000, measures), {rule}, {.width = width}));
            for (std::string line; std::getline(lines, line);) {
                EXPECT_LE(display_width(line), width) << line;
            }
        }
    }
}

TEST_F(TableWriterTest, GoesOnBeyondTheRowsThatSetItsWidths) {
    const std::string text = table(std::vector<FoundRule>(2500, women_survived), {.width = 100});
    EXPECT_EQ(std::ranges::count(text, '\n'), 2501);
    EXPECT_TRUE(text.ends_with("\n2500  sex=female => survived=yes       0.732  2.27      344    0.0873\n"))
        << text;
}

}  // namespace

}  // namespace korv::tools
