#include "rules/words_writer.h"

#include <gtest/gtest.h>

#include "made_rules.h"

namespace korv::tools {

namespace {

class WordsWriterTest : public ::testing::Test {
protected:
    std::string words(const std::vector<FoundRule>& written_rules, std::vector<Measure> measures = {}) const {
        return written(RuleFormat::words, rules.book(2201, std::move(measures)), written_rules,
                       {.width = 90});
    }

    MadeRules rules{titanic_names};
    // Counts of the persons aboard the Titanic.
    FoundRule women_survived = known_rule(rules.any({6}), rules.any({10}), {470, 711, 344});
    FoundRule no_child_in_the_crew = known_rule(rules.any({7}), rules.none({4}), {109, 1316, 109});
};

TEST_F(WordsWriterTest, SaysHowOftenARuleHolds) {
    EXPECT_EQ(words({women_survived}),
              "1. If sex=female, then in 73 % of cases: survived=yes\n"
              "   344 of 470, against 711 of all 2,201 (32 %): 2.27 times as often as in general\n");
}

TEST_F(WordsWriterTest, SaysAlwaysOfARuleWithoutException) {
    EXPECT_EQ(words({no_child_in_the_crew}),
              "1. If age=child, then always: class not crew\n"
              "   in all 109 cases, against 1,316 of all 2,201 (60 %): 1.67 times as often as in general\n");
}

TEST_F(WordsWriterTest, SaysWhatOtherTransactionsSay) {
    const std::vector<HoldoutCounts> holdout = {{{1470, 1711, 1344}, 12.34}, {{0, 7, 0}, 0}};
    RuleBook book = rules.book(2201);
    book.holdout = &holdout;
    EXPECT_EQ(written(RuleFormat::words, book, {women_survived, no_child_in_the_crew}, {.width = 90}),
              "1. If sex=female, then in 73 % of cases: survived=yes\n"
              "   344 of 470, against 711 of all 2,201 (32 %): 2.27 times as often as in general\n"
              "   in the holdout, 1,344 of 1,470 (91 %), holdout_p 12.3\n"
              "\n"
              "2. If age=child, then always: class not crew\n"
              "   in all 109 cases, against 1,316 of all 2,201 (60 %): 1.67 times as often as in general\n"
              "   in the holdout, 0 of 0, holdout_p 0.000\n");
}

TEST_F(WordsWriterTest, PartsRulesByAnEmptyLine) {
    EXPECT_EQ(words({no_child_in_the_crew, women_survived}),
              "1. If age=child, then always: class not crew\n"
              "   in all 109 cases, against 1,316 of all 2,201 (60 %): 1.67 times as often as in general\n"
              "\n"
              "2. If sex=female, then in 73 % of cases: survived=yes\n"
              "   344 of 470, against 711 of all 2,201 (32 %): 2.27 times as often as in general\n");
}

TEST_F(WordsWriterTest, SaysTheOnlyCase) {
    EXPECT_EQ(words({known_rule(rules.none({8}), rules.any({10}), {1, 711, 1})}),
              "1. If age not adult, then always: survived=yes\n"
              "   in the only case, against 711 of all 2,201 (32 %): 3.10 times as often as in general\n");
}

TEST_F(WordsWriterTest, SaysWhatHoldsForAll) {
    EXPECT_EQ(words({known_rule(rules.any({6}), rules.any({1, 10}), {470, 2201, 470})}),
              "1. If sex=female, then always: class=1st or survived=yes\n"
              "   in all 470 cases, against all 2,201: just as often as in general\n");
}

TEST_F(WordsWriterTest, SaysWhatMakesHardlyADifference) {
    EXPECT_EQ(words({known_rule(rules.any({6}), rules.any({10}), {470, 2000, 428})}),
              "1. If sex=female, then in 91 % of cases: survived=yes\n"
              "   428 of 470, against 2,000 of all 2,201 (91 %): hardly more often than in general\n");
    EXPECT_EQ(words({known_rule(rules.any({6}), rules.any({10}), {470, 2000, 426})}),
              "1. If sex=female, then in 91 % of cases: survived=yes\n"
              "   426 of 470, against 2,000 of all 2,201 (91 %): hardly less often than in general\n");
}

TEST_F(WordsWriterTest, SaysRangesOfWhatIsBounded) {
    FoundRule rule = known_rule(rules.any({6}), rules.any({10}), {470, 711, 344});
    rule.at_high = {470, 711, 376};
    EXPECT_EQ(words({rule}),
              "1. If sex=female, then in 73 % to 80 % of cases: survived=yes\n"
              "   344 to 376 of 470, against 711 of all 2,201 (32 %): 2.27 to 2.48 times as often as in\n"
              "   general\n");
    rule.at_low = {470, 711, 470};
    rule.at_high = {480, 700, 480};
    EXPECT_EQ(words({rule}),
              "1. If sex=female, then always: survived=yes\n"
              "   in all 470 to 480 cases, against 700 to 711 of all 2,201 (32 %): 3.10 to 3.14 times as\n"
              "   often as in general\n");
}

TEST_F(WordsWriterTest, MentionsWordingsAndReadings) {
    women_survived.wordings = 2;
    EXPECT_TRUE(words({women_survived}).ends_with("\n   the same fact in 1 more wording\n"));
    women_survived.readings = 4;
    EXPECT_TRUE(
        words({women_survived})
            .ends_with("\n   the same fact in 1 more wording; the same association in 3 more readings\n"));
    women_survived.wordings = 1;
    EXPECT_TRUE(words({women_survived}).ends_with("\n   the same association in 3 more readings\n"));
}

TEST_F(WordsWriterTest, AddsFurtherMeasures) {
    FoundRule rule = women_survived;
    rule.at_high.both = 376;
    // 344 / (470 + 711 - 344) and 376 / (470 + 711 - 376); 470 * 1490 / (2201 * 126).
    EXPECT_TRUE(words({women_survived}, {Measure::jaccard, Measure::conviction})
                    .ends_with("\n   jaccard 0.411, conviction 2.53\n"));
    EXPECT_TRUE(words({rule}, {Measure::jaccard}).ends_with("\n   jaccard 0.411 to 0.467\n"));
}

TEST_F(WordsWriterTest, SaysNoMeasureIs1ThatOnlyComesClose) {
    const FoundRule rule = known_rule(rules.any({6}), rules.any({10}), {2100, 2200, 2099});
    EXPECT_EQ(words({rule}, {Measure::confidence, Measure::laplace, Measure::recall, Measure::relative_risk}),
              "1. If sex=female, then in over 99.9 % of cases: survived=yes\n"
              "   2,099 of 2,100, against 2,200 of all 2,201 (over 99.9 %): hardly less often than in\n"
              "   general\n"
              "   laplace 0.999, recall 0.954, relative_risk >0.999\n");
}

TEST_F(WordsWriterTest, WrapsAndNamesTheFirst12Items) {
    MadeRules many({{1, "a\x1B[0m"}});
    Itemset items;
    for (Item item = 1; item <= 20; ++item) {
        items.push_back(item);
    }
    EXPECT_EQ(written(RuleFormat::words, many.book(10),
                      {known_rule(many.any(items), many.none({30}), {4, 5, 2})}, {.width = 60}),
              "1. If a\\x1B[0m or 2 or 3 or 4 or 5 or 6 or 7 or 8 or 9 or 10\n"
              "   or 11 or 12 or 8 more, then in 50 % of cases: not 30\n"
              "   2 of 4, against 5 of all 10 (50 %): just as often as in\n"
              "   general\n");
}

}  // namespace

}  // namespace korv::tools
