#include "rules/rule_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "tools/complaint.h"

namespace korv::tools {
namespace {

const std::string stars = "\t\t\t******************************************\n";
const std::string exact_within = stars + "\t\t\t***   Regles exaxtes intra noeud      ***\n" + stars;
const std::string approximate_within = stars + "\t\t\t*** Regles approximatives intra noeud  ***\n" + stars;
const std::string exact_between = stars + "\t\t\t***   Regles exactes inter noeuds     ***\n" + stars;
const std::string approximate_between = stars + "\t\t\t*** Regles approximatives inter noeuds ***\n" + stars;
const std::string separator = "---------------------------\n";

/// Hands out a text in pieces of a few bytes.
class Pieces {
public:
    Pieces(std::string text, std::size_t size) : text_(std::move(text)), size_(size) {}

    std::size_t operator()(char* out, std::size_t size) {
        const std::size_t count = std::min({size, size_, text_.size() - position_});
        std::copy_n(text_.data() + position_, count, out);
        position_ += count;
        return count;
    }

private:
    std::string text_;
    std::size_t size_;
    std::size_t position_ = 0;
};

std::vector<RuleRecord> records(const std::string& text, std::size_t piece = 1000) {
    RuleFileReader reader(Pieces(text, piece), "a.txt");
    std::vector<RuleRecord> found;
    while (reader.next()) {
        found.push_back(reader.record());
    }
    return found;
}

RuleRecord only_record(const std::string& text) {
    const std::vector<RuleRecord> found = records(text);
    EXPECT_EQ(found.size(), 1U);
    return found.at(0);
}

TEST(RuleFile, AnExactRecordHasNoConfidence) {
    const RuleRecord rule = only_record(exact_within + "3-->2 v 4\nsupport:2\n\n");
    EXPECT_EQ(rule.premise.items, (Itemset{3}));
    EXPECT_FALSE(rule.premise.is_negated);
    EXPECT_EQ(rule.conclusion.items, (Itemset{2, 4}));
    EXPECT_FALSE(rule.conclusion.is_negated);
    EXPECT_EQ(rule.support, known(Count{2}));
    EXPECT_FALSE(rule.confidence);
    EXPECT_FALSE(rule.is_between_nodes);
    EXPECT_EQ(rule.line, 4U);
}

TEST(RuleFile, AnApproximativeRecordHasAConfidence) {
    const RuleRecord rule =
        only_record(approximate_between + "not(2)not(40)-->3\nsupport:2\n\nconfiance:0.666667\n" + separator);
    EXPECT_EQ(rule.premise.items, (Itemset{2, 40}));
    EXPECT_TRUE(rule.premise.is_negated);
    EXPECT_EQ(rule.confidence, known(0.666667));
    EXPECT_TRUE(rule.is_between_nodes);
}

TEST(RuleFile, BothNumbersMayBeBounds) {
    const RuleRecord rule = only_record(
        approximate_within + "1 v 4-->not(2)not(3)\n3< support <5\n0.6< confiance <1\n" + separator);
    EXPECT_EQ(rule.support, between(Count{3}, Count{5}));
    EXPECT_EQ(rule.confidence, between(0.6, 1.0));
}

TEST(RuleFile, TheConfidenceAloneMayBeBounds) {
    const RuleRecord rule = only_record(
        approximate_between + "not(2)not(3)-->not(4)\nsupport:3\n\n0.75< confiance <1\n" + separator);
    EXPECT_EQ(rule.support, known(Count{3}));
    EXPECT_EQ(rule.confidence, between(0.75, 1.0));
}

TEST(RuleFile, TheSupportOfAnExactRuleMayBeBounds) {
    const auto rules =
        records(exact_within + "3-->2 v 4\n0< support <3\nnot(2)not(4)-->not(3)\nsupport:3\n\n");
    ASSERT_EQ(rules.size(), 2U);
    EXPECT_EQ(rules[0].support, between(Count{0}, Count{3}));
    EXPECT_FALSE(rules[0].confidence);
    EXPECT_EQ(rules[1].support, known(Count{3}));
    EXPECT_EQ(rules[1].line, 6U);
}

TEST(RuleFile, SmallNumbersHaveExponentsAndQuotientsByZeroAreInfinite) {
    const auto rules = records(approximate_between + "1-->2\nsupport:1\n\nconfiance:1e-07\n" + separator +
                               "1-->not(2)\nsupport:0\n\n0< confiance <-nan\n" + separator);
    EXPECT_EQ(rules.at(0).confidence, known(1e-7));
    EXPECT_EQ(rules.at(1).confidence, between(0.0, std::numeric_limits<double>::infinity()));
}

TEST(RuleFile, ASideWithoutItemsIsNegatedWhereTransactionsMeetIt) {
    const auto rules = records(exact_within + "empty_set-->1\nsupport:2\n\n1-->empty_set\nsupport:0\n\n");
    EXPECT_TRUE(rules.at(0).premise.items.empty());
    EXPECT_TRUE(rules.at(0).premise.is_negated);
    EXPECT_FALSE(rules.at(1).conclusion.is_negated);
}

TEST(RuleFile, TheFirstFormHasTheSignsAndTheNodesOfTheRule) {
    const auto first_form = [](const std::string& text) { return only_record(text).first_form(); };
    EXPECT_EQ(first_form(exact_within + "1-->2\nsupport:1\n\n"), Form::R111);
    EXPECT_EQ(first_form(exact_between + "1-->2\nsupport:1\n\n"), Form::R121);
    EXPECT_EQ(first_form(exact_within + "not(1)-->not(2)\nsupport:1\n\n"), Form::R211);
    EXPECT_EQ(first_form(exact_between + "1-->not(2)\nsupport:1\n\n"), Form::R321);
    EXPECT_EQ(first_form(exact_within + "not(1)-->2\nsupport:1\n\n"), Form::R411);
    EXPECT_EQ(first_form(exact_between + "not(1)-->2\nsupport:1\n\n"), Form::R421);
}

TEST(RuleFile, MayHoldNoRule) {
    EXPECT_TRUE(records(exact_within).empty());
}

TEST(RuleFile, SeveralMayStandBehindEachOther) {
    const auto rules = records(exact_within + approximate_between + "1-->2\nsupport:1\n\nconfiance:0.5\n" +
                               separator + exact_within + "2-->1\nsupport:1\n\n");
    ASSERT_EQ(rules.size(), 2U);
    EXPECT_TRUE(rules[0].is_between_nodes);
    EXPECT_FALSE(rules[1].is_between_nodes);
    EXPECT_FALSE(rules[1].confidence);
    EXPECT_EQ(rules[1].line, 15U);
}

TEST(RuleFile, IsReadAlikeInPiecesOfAnySize) {
    std::string text = approximate_within;
    std::string side = "1";
    for (int item = 2; item < 60'000; ++item) {  // longer than the first buffer
        side += " v " + std::to_string(item);
    }
    text += side + "-->70000\nsupport:1\n\nconfiance:0.5\n" + separator;
    for (const std::size_t piece : {std::size_t{7}, std::size_t{4096}, text.size()}) {
        const auto rules = records(text, piece);
        ASSERT_EQ(rules.size(), 1U);
        EXPECT_EQ(rules[0].premise.items.size(), 59'999U);
        EXPECT_EQ(rules[0].conclusion.items, (Itemset{70'000}));
    }
}

TEST(RuleFile, IsKnownByItsFirstLine) {
    EXPECT_TRUE(looks_like_rule_file(exact_within));
    EXPECT_FALSE(looks_like_rule_file("\t\t\t***"));
    EXPECT_FALSE(looks_like_rule_file("1 2\t5\t 1 2,\n"));
    EXPECT_FALSE(looks_like_rule_file(""));
}

struct Fault {
    std::string text;
    std::string complaint;  ///< behind the name of the file
};

class RuleFileFault : public testing::TestWithParam<Fault> {};

TEST_P(RuleFileFault, IsNamedWithItsPlace) {
    EXPECT_EQ(complaint_of([] { records(GetParam().text); }), "a.txt:" + GetParam().complaint);
}

INSTANTIATE_TEST_SUITE_P(
    Header, RuleFileFault,
    testing::Values(
        Fault{"", "1:1: found an empty file; expected the header of a rule file"},
        Fault{"1 2\t5\t 1 2,\n", "1:1: found \"1 2\\x095\\x09 1 2,\"; expected the header of a rule file"},
        Fault{stars, "2:1: found the end of the file; expected the title of a rule file"},
        Fault{stars + "x\n",
              "2:1: found \"x\"; expected a title such as \"*** Regles approximatives intra noeud  "
              "***\" behind three tabs"},
        Fault{exact_within.substr(0, exact_within.size() - 1),
              "3:46: found the end of the file; expected the end of the line"}));

INSTANTIATE_TEST_SUITE_P(
    Rule, RuleFileFault,
    testing::Values(
        Fault{exact_within + "1->2\n", "4:2: found \"->2\"; expected another item, or \"-->\""},
        Fault{exact_within + "1\n", "4:2: found the end of the line; expected another item, or \"-->\""},
        Fault{exact_within + "\n", "4:1: found the end of the line; expected an item number"},
        Fault{exact_within + "\xE9-->2\n", "4:1: found \"\\xE9-->2\"; expected an item number"},
        Fault{exact_within + "not(1-->2\n", "4:6: found \"-->2\"; expected a digit, or \")\""},
        Fault{exact_within + "1 v 1-->2\n",
              "4:5: found the item 1 behind the item 1; expected items in ascending order"},
        Fault{exact_within + "4294967296-->2\n",
              "4:1: found \"4294967296\"; expected an item number below 4294967296"},
        Fault{exact_within + "1-->2,3\n", "4:6: found \",3\"; expected another item, or the end of the line"},
        Fault{exact_within + "1-->2", "4:6: found the end of the file; expected the end of the line"},
        Fault{exact_within + "1-->2\r\n",
              "4:6: found CR; expected lines that end with LF alone (tr -d '\\r' takes CR out)"}));

INSTANTIATE_TEST_SUITE_P(
    Numbers, RuleFileFault,
    testing::Values(
        Fault{exact_within + "1-->2\n", "5:1: found the end of the file; expected the support of the rule"},
        Fault{exact_within + "1-->2\n1-->3\n", "5:2: found \"-->3\"; expected a digit, or \"< support <\""},
        Fault{exact_within + "1-->2\nx\n",
              "5:1: found \"x\"; expected \"support:\", or the smallest support and \"< support <\""},
        Fault{exact_within + "1-->2\nsupport:\n", "5:9: found the end of the line; expected a support"},
        Fault{exact_within + "1-->2\nsupport:3\nconfiance:0.5\n",
              "6:1: found \"confiance:0.5\"; expected an empty line"},
        Fault{exact_within + "1-->2\n5< support <3\n",
              "5:13: found 3 as the largest support; expected at least 5, the smallest one"},
        Fault{approximate_within + "1-->2\nsupport:3\n\n",
              "7:1: found the end of the file; expected the confidence of the rule"},
        Fault{approximate_within + "1-->2\nsupport:3\n\n1-->3\n",
              "7:2: found \"-->3\"; expected \"< confiance <\""},
        Fault{approximate_within + "1-->2\nsupport:3\n\nconfiance:1.5\n",
              "7:11: found \"1.5\"; expected a confidence from 0 to 1"},
        Fault{approximate_within + "1-->2\nsupport:3\n\nconfiance:inf\n",
              "7:11: found \"inf\"; expected a confidence from 0 to 1"},
        Fault{approximate_within + "1-->2\nsupport:3\n\nconfiance:-0.5\n",
              "7:11: found \"-0.5\"; expected a confidence"},
        Fault{approximate_within + "1-->2\n3< support <5\nconfiance:0.5\n",
              "6:1: found \"confiance:0.5\"; expected the smallest confidence and \"< confiance <\""},
        Fault{approximate_within + "1-->2\n3< support <5\n0.6< confiance <0.5\n",
              "6:17: found \"0.5\" as the largest confidence; expected at least the smallest one"},
        Fault{approximate_within + "1-->2\nsupport:3\n\nconfiance:0.5\n--\n",
              "8:1: found \"--\"; expected a line of 27 hyphens"},
        Fault{approximate_within + "1-->2\nsupport:3\n\nconfiance:0.5\n" + separator + "x",
              "9:1: found \"x\"; expected an item number"}));

TEST(RuleFile, ALineWithoutEndIsRefusedBeforeItFillsTheMemory) {
    const auto endless = [](char* out, std::size_t size) {
        std::fill_n(out, size, '1');
        return size;
    };
    RuleFileReader reader(endless, "a.txt");
    EXPECT_EQ(complaint_of([&reader] { reader.next(); }),
              "a.txt:1:16777216: found a line that goes on; expected lines of at most 16 MiB");
}

}  // namespace
}  // namespace korv::tools
