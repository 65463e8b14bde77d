#include "io/rule_printing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "support/files.h"

namespace korv {
namespace {

/// An output file, and what was written to it.
class RulePrinting : public ::testing::Test {
protected:
    std::string written() {
        out.flush();
        return test::read_file(name_);
    }

    /// The rule line of two sides.
    std::string rule(Mode premise_mode, const Itemset& premise, Mode conclusion_mode,
                     const Itemset& conclusion) {
        afficher_regle(Sides(premise).text(premise_mode), Sides(conclusion).text(conclusion_mode), out);
        return written();
    }

private:
    test::TemporaryDirectory directory_;
    const std::string name_ = (directory_.path() / "rules.txt").string();

protected:
    Output_Manager out{name_};
};

constexpr Mode plain = Mode::disjunction;
constexpr Mode negated = Mode::negation;
constexpr double infinity = std::numeric_limits<double>::infinity();

TEST_F(RulePrinting, HeaderIsTheTitleBetweenTwoLinesOf42Stars) {
    entete_fichier("\t\t\t*** Title ***\n", out);
    EXPECT_EQ(written(),
              "\t\t\t******************************************\n"
              "\t\t\t*** Title ***\n"
              "\t\t\t******************************************\n");
}

TEST_F(RulePrinting, HeaderAddsNoLineEndToItsTitle) {
    entete_fichier("Title", out);
    EXPECT_EQ(written(),
              "\t\t\t******************************************\n"
              "Title\t\t\t******************************************\n");
}

TEST_F(RulePrinting, PlainSidesAreDisjunctions) {
    EXPECT_EQ(rule(plain, {2}, plain, {3, 5}), "2-->3 v 5\n");
}

TEST_F(RulePrinting, DisjunctionOfThreeItems) {
    EXPECT_EQ(rule(plain, {1, 4, 7}, plain, {2}), "1 v 4 v 7-->2\n");
}

TEST_F(RulePrinting, NegatedSidesNegateEachItem) {
    EXPECT_EQ(rule(negated, {2}, negated, {3, 5}), "not(2)-->not(3)not(5)\n");
}

TEST_F(RulePrinting, NegationOfOneItem) {
    EXPECT_EQ(rule(negated, {7}, plain, {1}), "not(7)-->1\n");
}

TEST_F(RulePrinting, NegationOfThreeItems) {
    EXPECT_EQ(rule(negated, {1, 2, 3}, plain, {4}), "not(1)not(2)not(3)-->4\n");
}

TEST_F(RulePrinting, NegatedConclusionOfAPlainPremise) {
    EXPECT_EQ(rule(plain, {1, 2}, negated, {3, 4}), "1 v 2-->not(3)not(4)\n");
}

TEST_F(RulePrinting, EmptyPremiseIsNamed) {
    EXPECT_EQ(rule(plain, {}, plain, {1, 2}), "empty_set-->1 v 2\n");
}

TEST_F(RulePrinting, EmptyConclusionIsNamed) {
    EXPECT_EQ(rule(plain, {1, 2}, plain, {}), "1 v 2-->empty_set\n");
}

TEST_F(RulePrinting, EmptySidesAreNotNegated) {
    EXPECT_EQ(rule(negated, {}, negated, {}), "empty_set-->empty_set\n");
}

TEST_F(RulePrinting, ItemsAreUnsignedDecimals) {
    EXPECT_EQ(rule(plain, {0, 4294967295U}, negated, {10, 4294967295U}),
              "0 v 4294967295-->not(10)not(4294967295)\n");
}

TEST_F(RulePrinting, RepeatedItemsAreWrittenAsOftenAsTheyOccur) {
    EXPECT_EQ(rule(plain, {2, 2}, negated, {3, 3}), "2 v 2-->not(3)not(3)\n");
}

TEST_F(RulePrinting, ModesHaveTheirLetters) {
    EXPECT_EQ(static_cast<char>(Mode::disjunction), 'O');
    EXPECT_EQ(static_cast<char>(Mode::negation), '!');
}

TEST_F(RulePrinting, SidesAreMadeAnewForAnotherItemset) {
    const Itemset first = {1, 4};
    const Itemset second = {7};
    Sides sides(first);
    EXPECT_EQ(sides.text(plain), "1 v 4");
    EXPECT_EQ(sides.text(negated), "not(1)not(4)");
    sides.refer_to(second);
    EXPECT_EQ(sides.text(negated), "not(7)");
    EXPECT_EQ(sides.text(plain), "7");
}

TEST_F(RulePrinting, SupportIsFollowedByAnEmptyLine) {
    afficher_supp(42, out);
    EXPECT_EQ(written(), "support:42\n\n");
}

TEST_F(RulePrinting, SupportIsAnUnsignedDecimal) {
    afficher_supp(0, out);
    afficher_supp(4294967295U, out);
    EXPECT_EQ(written(), "support:0\n\nsupport:4294967295\n\n");
}

TEST_F(RulePrinting, SupportIntervalIsOneLine) {
    afficher_supp_approx(40, 60, out);
    EXPECT_EQ(written(), "40< support <60\n");
}

TEST_F(RulePrinting, SupportIntervalIsWrittenAsItStands) {
    afficher_supp_approx(4294967295U, 0, out);
    EXPECT_EQ(written(), "4294967295< support <0\n");
}

TEST_F(RulePrinting, ConfidenceIsFollowedByTheSeparator) {
    afficher_conf(0.75, out);
    EXPECT_EQ(written(), "confiance:0.75\n---------------------------\n");
}

TEST_F(RulePrinting, ConfidenceIntervalIsFollowedByTheSeparator) {
    afficher_conf_approx(0.25, 1.0, out);
    EXPECT_EQ(written(), "0.25< confiance <1\n---------------------------\n");
}

struct PrintedNumber {
    std::string name;
    double number;
    std::string text;
};

class ConfidenceNumber : public RulePrinting, public ::testing::WithParamInterface<PrintedNumber> {};

TEST_P(ConfidenceNumber, HasSixSignificantDigits) {
    afficher_conf(GetParam().number, out);
    EXPECT_EQ(written(), "confiance:" + GetParam().text + "\n---------------------------\n");
}

TEST_P(ConfidenceNumber, HasSixSignificantDigitsInAnInterval) {
    afficher_conf_approx(GetParam().number, GetParam().number, out);
    EXPECT_EQ(written(),
              GetParam().text + "< confiance <" + GetParam().text + "\n---------------------------\n");
}

INSTANTIATE_TEST_SUITE_P(
    All, ConfidenceNumber,
    ::testing::Values(
        PrintedNumber{"Zero", 0.0, "0"}, PrintedNumber{"One", 1.0, "1"},
        PrintedNumber{"NoTrailingZeros", 0.5, "0.5"}, PrintedNumber{"CutThird", 1.0 / 3.0, "0.333333"},
        PrintedNumber{"RoundedTwoThirds", 2.0 / 3.0, "0.666667"},
        PrintedNumber{"LeadingZerosDoNotCount", 1.0 / 14.0, "0.0714286"},
        PrintedNumber{"JustBelowOne", 0.9999999, "1"}, PrintedNumber{"SmallestFixed", 0.0001, "0.0001"},
        PrintedNumber{"SmallScientific", 0.00001, "1e-05"}, PrintedNumber{"LargestFixed", 999999.0, "999999"},
        PrintedNumber{"LargeScientific", 1234567.0, "1.23457e+06"},
        PrintedNumber{"Infinity", infinity, "inf"},
        PrintedNumber{"PositiveNaN", std::copysign(std::nan(""), 1.0), "nan"},
        PrintedNumber{"NegativeNaN", std::copysign(std::nan(""), -1.0), "-nan"}),
    [](const auto& instance) { return instance.param.name; });

}  // namespace
}  // namespace korv
