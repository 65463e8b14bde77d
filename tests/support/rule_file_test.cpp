#include "support/rule_file.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace korv::test {
namespace {

const std::string header =
    "\t\t\t******************************************\n"
    "\t\t\t***   Regles exactes inter noeuds     ***\n"
    "\t\t\t******************************************\n";

const std::string separator = "---------------------------\n";

/// The only rule of a file. It must not refer to a temporary, so the file is kept here.
ReadRule only_rule(const std::string& record) {
    static std::string text;
    text = header + record;
    const ReadRuleFile file = read_rule_file(text);
    EXPECT_EQ(file.rules.size(), 1U);
    EXPECT_EQ(file.rules.at(0).text, record);
    return file.rules.at(0);
}

ReadSide plain(const Itemset& itemset) {
    return {Mode::disjunction, itemset};
}

ReadSide negated(const Itemset& itemset) {
    return {Mode::negation, itemset};
}

TEST(RuleFile, HasATitleAndNoRuleAtFirst) {
    const ReadRuleFile file = read_rule_file(header);
    EXPECT_EQ(file.title, "***   Regles exactes inter noeuds     ***");
    EXPECT_TRUE(file.rules.empty());
}

TEST(RuleFile, ReadsAnExactRecord) {
    const ReadRule rule = only_rule("1 v 20 v 3-->not(4)not(55)\nsupport:4294967295\n\n");
    EXPECT_EQ(rule.premise, plain({1, 20, 3}));
    EXPECT_EQ(rule.conclusion, negated({4, 55}));
    EXPECT_EQ(rule.support, (ReadSupport{false, 4294967295U, 4294967295U}));
    EXPECT_EQ(rule.confidence, std::nullopt);
}

TEST(RuleFile, ReadsARecordWithSupportAndConfidence) {
    const ReadRule rule = only_rule("not(1)-->2\nsupport:7\n\nconfiance:0.875\n" + separator);
    EXPECT_EQ(rule.premise, negated({1}));
    EXPECT_EQ(rule.conclusion, plain({2}));
    EXPECT_EQ(rule.support, (ReadSupport{false, 7, 7}));
    EXPECT_EQ(rule.confidence, (ReadConfidence{false, "0.875", "0.875"}));
}

TEST(RuleFile, ReadsARecordWithIntervals) {
    const ReadRule rule = only_rule("1-->2\n3< support <7\n1e-05< confiance <1\n" + separator);
    EXPECT_EQ(rule.support, (ReadSupport{true, 3, 7}));
    EXPECT_EQ(rule.confidence, (ReadConfidence{true, "1e-05", "1"}));
}

TEST(RuleFile, ReadsARecordWithSupportAndConfidenceInterval) {
    const ReadRule rule = only_rule("1-->2\nsupport:3\n\n0.5< confiance <-nan\n" + separator);
    EXPECT_EQ(rule.support, (ReadSupport{false, 3, 3}));
    EXPECT_EQ(rule.confidence, (ReadConfidence{true, "0.5", "-nan"}));
}

TEST(RuleFile, ReadsARecordWithASupportIntervalOnly) {
    const ReadRule rule = only_rule("1-->2\n3< support <7\n");
    EXPECT_EQ(rule.support, (ReadSupport{true, 3, 7}));
    EXPECT_EQ(rule.confidence, std::nullopt);
}

TEST(RuleFile, ReadsAnEmptySide) {
    const ReadRule rule = only_rule("empty_set-->not(1)\nsupport:3\n\n");
    EXPECT_EQ(rule.premise, plain({}));
    EXPECT_EQ(rule.conclusion, negated({1}));
}

TEST(RuleFile, ReadsRecordsInTheirOrder) {
    const std::string text = header +
                             "1-->2\nsupport:3\n\n"
                             "3-->4\n3< support <7\n"
                             "5-->6\nsupport:3\n\nconfiance:0.5\n" +
                             separator + "7-->8\nsupport:3\n\n";
    const ReadRuleFile file = read_rule_file(text);
    ASSERT_EQ(file.rules.size(), 4U);
    EXPECT_EQ(file.rules[0].premise, plain({1}));
    EXPECT_EQ(file.rules[1].premise, plain({3}));
    EXPECT_EQ(file.rules[2].premise, plain({5}));
    EXPECT_EQ(file.rules[3].premise, plain({7}));
}

class RefusedRecord : public ::testing::TestWithParam<const char*> {};

TEST_P(RefusedRecord, Throws) {
    const std::string text = header + GetParam();
    EXPECT_THROW(read_rule_file(text), std::runtime_error);
}

INSTANTIATE_TEST_SUITE_P(RuleFile, RefusedRecord,
                         ::testing::Values("1-->2\n",                                  // no support
                                           "1-->2",                                    // no line end
                                           "1-->2\nsupport:3\n",                       // no empty line
                                           "1-->2\nsupport:3\n\n\n",                   // one too many
                                           "1-->2\nsupport:\n\n",                      // no number
                                           "1-->2\nsupport:3x\n\n",                    // more than a number
                                           "1-->2\nsupport:-3\n\n",                    // a sign
                                           "1-->2\n3< support <\n",                    // half an interval
                                           "1-->2\nsupport:3\n\nconfiance:0.5\n",      // no separator
                                           "1-->2\nsupport:3\n\nconfiance:0.5\n--\n",  // another separator
                                           "1-->2\nsupport:3\n\n0.5< confiance <1\n",  // no separator
                                           "1\nsupport:3\n\n",                         // no arrow
                                           "-->2\nsupport:3\n\n",                      // no premise
                                           "1-->\nsupport:3\n\n",                      // no conclusion
                                           "1-->2-->3\nsupport:3\n\n",                 // two conclusions
                                           "1 v -->2\nsupport:3\n\n",                  // no item
                                           "1 2-->3\nsupport:3\n\n",                   // no "v"
                                           "not(1) not(2)-->3\nsupport:3\n\n",         // a blank
                                           "not(1) v 2-->3\nsupport:3\n\n",            // both modes
                                           "1-->2 \nsupport:3\n\n"));                  // a blank

TEST(RuleFile, RefusesAnotherHeader) {
    EXPECT_THROW(read_rule_file(""), std::runtime_error);
    EXPECT_THROW(read_rule_file(header.substr(1)), std::runtime_error);
    EXPECT_THROW(read_rule_file(header.substr(0, header.size() - 1)), std::runtime_error);
}

TEST(RuleFile, NamesTheLineItStopsAt) {
    const std::string text = header + "1-->2\nsupport:3\n\nx-->y\n";
    try {
        read_rule_file(text);
        FAIL() << "read without complaint";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "line 7: a rule expected, got \"x-->y\"");
    }
}

}  // namespace
}  // namespace korv::test
