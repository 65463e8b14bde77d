#include "rules/exclusion_writer.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "made_rules.h"

namespace korv::tools {
namespace {

class ExclusionWriterTest : public ::testing::Test {
protected:
    explicit ExclusionWriterTest(std::map<Item, std::string> names = {{1, "beer"},
                                                                      {2, "diapers"},
                                                                      {3, "milk"},
                                                                      {4, "=1+1"},
                                                                      {5, "a \"b\", c\td"}})
        : rules(std::move(names)) {
        for (Item item = 1; item <= 10; ++item) {
            rules.any({item});
        }
    }

    std::string written(RuleFormat format, const std::vector<Exclusion>& exclusions,
                        const TerminalStyle& style = {}) const {
        std::string text;
        const RuleBook book = rules.book(1000);
        const auto writer = exclusion_writer(format, book, min_confidence, style,
                                             [&text](std::string_view piece) { text += piece; });
        for (const Exclusion& each : exclusions) {
            writer->write(each);
        }
        writer->finish();
        return text;
    }

    MadeRules rules;
    double min_confidence = 0.8;
    // Of 1,000: 290 and 300, of which 3 are both; 87 are expected.
    Exclusion beer_and_diapers = {.size = 2,
                                  .numbers = {1, 2, 0},
                                  .counts = {290, 300, 0},
                                  .together = 3,
                                  .covered = 587,
                                  .expected_times_all = 87'000,
                                  .p = 40.5};
    Exclusion three = {.size = 3,
                       .numbers = {1, 2, 3},
                       .counts = {290, 300, 400},
                       .together = 0,
                       .covered = 700,
                       .expected_times_all = 12'500,
                       .p = 5.25};
};

TEST_F(ExclusionWriterTest, SaysAPairWithTheRulesThatAreSureEnough) {
    EXPECT_EQ(
        written(RuleFormat::words, {beer_and_diapers}),
        "1. beer and diapers exclude each other: together in 3 transactions, 87.0 expected; one of them "
        "is in\n"
        "   59 %\n"
        "   beer => not diapers (0.990), diapers => not beer (0.990)\n");
    min_confidence = 0.4;
    EXPECT_EQ(
        written(RuleFormat::words, {beer_and_diapers}, {.width = 200}),
        "1. beer and diapers exclude each other: together in 3 transactions, 87.0 expected; one of them "
        "is in 59 %\n"
        "   beer => not diapers (0.990), diapers => not beer (0.990), not beer => diapers (0.418), not "
        "diapers => beer (0.410)\n");
    min_confidence = 1;
    EXPECT_EQ(
        written(RuleFormat::words, {beer_and_diapers}, {.width = 200}),
        "1. beer and diapers exclude each other: together in 3 transactions, 87.0 expected; one of them "
        "is in 59 %\n");
}

TEST_F(ExclusionWriterTest, SaysThatItemsAvoidEachOtherWhereTheyMeetNowAndThen) {
    min_confidence = 1;
    beer_and_diapers.together = 22;
    EXPECT_TRUE(written(RuleFormat::words, {beer_and_diapers})
                    .starts_with("1. beer and diapers avoid each other: together in 22 transactions, "));
    beer_and_diapers.together = 21;  // a quarter of 87 is 21.75
    EXPECT_TRUE(written(RuleFormat::words, {beer_and_diapers}).starts_with("1. beer and diapers exclude "));
}

TEST_F(ExclusionWriterTest, SaysNoneAndOne) {
    min_confidence = 1;
    Exclusion one = beer_and_diapers;
    one.together = 1;
    beer_and_diapers.together = 0;
    const std::string text = written(RuleFormat::words, {beer_and_diapers, one}, {.width = 200});
    EXPECT_NE(text.find("together in no transaction, 87.0 expected"), std::string::npos) << text;
    EXPECT_NE(text.find("\n\n2. beer and diapers exclude each other: together in 1 transaction, 87.0"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("beer => not diapers (1.000), diapers => not beer (1.000)"), std::string::npos)
        << text;
}

TEST_F(ExclusionWriterTest, SaysATriple) {
    EXPECT_EQ(written(RuleFormat::words, {three}, {.width = 200}),
              "1. beer, diapers and milk are seldom together, though each two of them are: all three in no "
              "transaction, 12.5 expected; one of them is in 70 %\n");
}

TEST_F(ExclusionWriterTest, WritesATable) {
    EXPECT_EQ(written(RuleFormat::table, {beer_and_diapers, three}),
              "#  seldom together         together  expected  covered     p\n"
              "1  beer and diapers               3      87.0    0.587  40.5\n"
              "2  beer, diapers and milk         0      12.5    0.700  5.25\n");
}

TEST_F(ExclusionWriterTest, HasABoldHeaderInColour) {
    const std::string text = written(RuleFormat::table, {beer_and_diapers}, {.has_color = true});
    EXPECT_TRUE(text.starts_with("\x1B[1m#  seldom together")) << text;
    EXPECT_TRUE(text.ends_with("\x1B[22m\n1  beer and diapers         3      87.0    0.587  40.5\n")) << text;
}

const std::string header =
    "id,items,numbers,size,together,expected,covered,transactions,p,a_not_b,b_not_a,not_a_b,not_b_a\n";

TEST_F(ExclusionWriterTest, WritesCsv) {
    beer_and_diapers.counts = {250, 320, 0};
    beer_and_diapers.together = 5;
    EXPECT_EQ(written(RuleFormat::csv, {beer_and_diapers, three}),
              header +
                  "1,beer and diapers,1 2,2,5,87,587,1000,40.5,0.98,0.984375,0.42,"
                  "0.3602941176470588\n"
                  "2,beer and diapers and milk,1 2 3,3,0,12.5,700,1000,5.25,,,,\n");
}

TEST_F(ExclusionWriterTest, WritesTheHeaderWithoutExclusions) {
    EXPECT_EQ(written(RuleFormat::csv, {}), header);
    EXPECT_EQ(written(RuleFormat::words, {}), "");
    EXPECT_EQ(written(RuleFormat::table, {}), "");
    EXPECT_EQ(written(RuleFormat::jsonl, {}), "");
}

TEST_F(ExclusionWriterTest, QuotesNamesAsThoseOfRules) {
    beer_and_diapers.numbers = {4, 5, 0};
    EXPECT_TRUE(written(RuleFormat::csv, {beer_and_diapers})
                    .starts_with(header + "1,\"'=1+1 and a \"\"b\"\", c\td\",4 5,2,3,"));
    const std::string tsv = written(RuleFormat::tsv, {beer_and_diapers});
    EXPECT_NE(tsv.find("\n1\t'=1+1 and a \"b\", c\\td\t4 5\t2\t3\t"), std::string::npos) << tsv;
}

TEST_F(ExclusionWriterTest, WritesJsonLines) {
    beer_and_diapers.numbers = {4, 5, 0};
    beer_and_diapers.counts = {250, 320, 0};
    beer_and_diapers.together = 5;
    EXPECT_EQ(written(RuleFormat::jsonl, {beer_and_diapers, three}),
              "{\"id\":1,\"items\":[\"=1+1\",\"a \\\"b\\\", c\\td\"],\"numbers\":[4,5],\"size\":2,"
              "\"together\":5,\"expected\":87,\"covered\":587,\"transactions\":1000,\"p\":40.5,"
              "\"a_not_b\":0.98,\"b_not_a\":0.984375,\"not_a_b\":0.42,\"not_b_a\":0.3602941176470588}\n"
              "{\"id\":2,\"items\":[\"beer\",\"diapers\",\"milk\"],\"numbers\":[1,2,3],\"size\":3,"
              "\"together\":0,\"expected\":12.5,\"covered\":700,\"transactions\":1000,\"p\":5.25,"
              "\"a_not_b\":null,\"b_not_a\":null,\"not_a_b\":null,\"not_b_a\":null}\n");
}

class ExclusionsOfColumns : public ExclusionWriterTest {
protected:
    ExclusionsOfColumns() : ExclusionWriterTest(titanic_names) {}
};

TEST_F(ExclusionsOfColumns, SaysSidesAsRulesDo) {
    beer_and_diapers.numbers = {4, 6, 0};
    EXPECT_EQ(
        written(RuleFormat::words, {beer_and_diapers}, {.width = 200}),
        "1. class=crew and sex=female exclude each other: together in 3 transactions, 87.0 expected; one "
        "of them is in 59 %\n"
        "   class=crew => sex not female (0.990), sex=female => class not crew (0.990)\n");
}

}  // namespace
}  // namespace korv::tools
