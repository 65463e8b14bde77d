#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <ostream>
#include <string>
#include <vector>

#include "support/lattice_fixture.h"

namespace korv {
namespace {

using test::CounterCells;
using test::nonzero_counters;
using test::record_of;
using test::rule_lines;
using test::run_totals;
using enum Form;
using enum Kind;

using Lines = std::vector<std::string>;
using Totals = std::array<Count, 3>;

// Rules where the support of the difference is bounded only. Unless a test says otherwise, the base (f1 or
// e1) is {1}, the difference {2}, and there are 100 transactions. The eight rules, for f1 / e1:
//
//   R132/R122  2-->1             R131/R121  1-->2
//   R231/R221  not(1)-->not(2)   R232/R222  not(2)-->not(1)
//   R331/R321  1-->not(2)        R432/R421  not(2)-->1
//   R431/R422  not(1)-->2        R332/R322  2-->not(1)
const Itemset base = {1};
const Itemset rest = {2};

class InterNodeApproximate : public test::LatticeFixture {
protected:
    Lines exact_rules() { return rule_lines(inter_exact()); }
    Lines approx_rules() { return rule_lines(inter_approx()); }
};

/// The quotient 0/0 as the machine makes and the library prints it: its sign differs between processors.
std::string zero_over_zero() {
    const volatile double zero = 0.0;
    return std::signbit(zero / zero) ? "-nan" : "nan";
}

// s1 = 50, s2 = 80, the difference between 35 and 64: 5 to 34 transactions with an item of both, 20 with
// none, 16 to 45 with one of the base only, 30 with one of the difference only. Confidences: 5/64 to 34/35,
// 5/50 to 34/50, 20/50, 20/65 to 20/36, 16/50 to 45/50, 16/65 to 16/36, 30/50, 30/64 to 30/35.
const std::string all_eight_rules = R"(3-->1 v 2
5< support <34
0.078125< confiance <0.971429
---------------------------
1 v 2-->3
5< support <34
0.1< confiance <0.68
---------------------------
not(1)not(2)-->not(3)
support:20

confiance:0.4
---------------------------
not(3)-->not(1)not(2)
support:20

0.307692< confiance <0.555556
---------------------------
1 v 2-->not(3)
16< support <45
0.32< confiance <0.9
---------------------------
not(3)-->1 v 2
16< support <45
0.246154< confiance <0.444444
---------------------------
not(1)not(2)-->3
support:30

confiance:0.6
---------------------------
3-->not(1)not(2)
support:30

0.46875< confiance <0.857143
---------------------------
)";

TEST_F(InterNodeApproximate, WritesAllEightRulesOfAClosedItemset) {
    Lattice& lattice = make_lattice("", {.minsupp = 0, .minconf = 0.0});
    lattice.get_rules_inter_supp_approx({3}, {1, 2}, 50, 80, 35, 64, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(), all_eight_rules);
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R132, apped}, 1},
                                                       {{R131, apped}, 1},
                                                       {{R231, appro}, 1},
                                                       {{R232, apped}, 1},
                                                       {{R331, apped}, 1},
                                                       {{R432, apped}, 1},
                                                       {{R431, appro}, 1},
                                                       {{R332, apped}, 1}}));
    EXPECT_EQ(run_totals(lattice), (Totals{0, 2, 6}));
    EXPECT_EQ(intra_exact() + intra_approx(), "");
}

TEST_F(InterNodeApproximate, CountsTheRulesOfAnEssentialItemsetUnderItsOwnFormsThroughout) {
    Lattice& lattice = make_lattice("", {.minsupp = 0, .minconf = 0.0});
    lattice.get_rules_inter_supp_approx({3}, {1, 2}, 50, 80, 35, 64, false);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(), all_eight_rules);
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R122, apped}, 1},
                                                       {{R121, apped}, 1},
                                                       {{R221, appro}, 1},
                                                       {{R222, apped}, 1},
                                                       {{R321, apped}, 1},
                                                       {{R421, apped}, 1},
                                                       {{R422, appro}, 1},
                                                       {{R322, apped}, 1}}));
    EXPECT_EQ(run_totals(lattice), (Totals{0, 2, 6}));
}

/// Thresholds, and the rules that pass them.
struct ThresholdCase {
    std::string name;
    Count minsupp;
    double minconf;
    Lines approx;
};

void PrintTo(const ThresholdCase& threshold, std::ostream* out) {
    *out << "minsupp " << threshold.minsupp << ", minconf " << threshold.minconf;
}

std::string name_of(const ::testing::TestParamInfo<ThresholdCase>& instance) {
    return instance.param.name;
}

class InterNodeApproximateThresholds : public InterNodeApproximate,
                                       public ::testing::WithParamInterface<ThresholdCase> {};

TEST_P(InterNodeApproximateThresholds, DecideOnEachRule) {
    // The bounds of above: supports from 5, of 20, from 16 and of 30 in the four groups.
    make_lattice("", {.minsupp = GetParam().minsupp, .minconf = GetParam().minconf})
        .get_rules_inter_supp_approx(rest, base, 50, 80, 35, 64, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(approx_rules(), GetParam().approx);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(
    MinimumSupport, InterNodeApproximateThresholds,
    ::testing::Values(
        ThresholdCase{"EqualToTheLowestWithBoth", 5, 0.0,
                      {"2-->1", "1-->2", "not(1)-->not(2)", "not(2)-->not(1)",
                       "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        // Though the highest would pass.
        ThresholdCase{"AboveTheLowestWithBoth", 6, 0.0,
                      {"not(1)-->not(2)", "not(2)-->not(1)",
                       "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"EqualToTheLowestWithTheBaseOnly", 16, 0.0,
                      {"not(1)-->not(2)", "not(2)-->not(1)",
                       "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"AboveTheLowestWithTheBaseOnly", 17, 0.0,
                      {"not(1)-->not(2)", "not(2)-->not(1)", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"EqualToThatOfNeither", 20, 0.0,
                      {"not(1)-->not(2)", "not(2)-->not(1)", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfNeither", 21, 0.0, {"not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"EqualToThatOfTheDifferenceOnly", 30, 0.0, {"not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfTheDifferenceOnly", 31, 0.0, {}}),
    name_of);

// Lower confidences in the order of the rules: 5/64, 5/50, 20/50, 20/65, 16/50, 16/65, 30/50, 30/64.
INSTANTIATE_TEST_SUITE_P(
    MinimumConfidence, InterNodeApproximateThresholds,
    ::testing::Values(
        ThresholdCase{"EqualToThatOfTheFirst", 1, 0.078125,
                      {"2-->1", "1-->2", "not(1)-->not(2)", "not(2)-->not(1)",
                       "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfTheFirst", 1, 0.0781251,
                      {"1-->2", "not(1)-->not(2)", "not(2)-->not(1)",
                       "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"EqualToThatOfTheSecond", 1, 0.1,
                      {"1-->2", "not(1)-->not(2)", "not(2)-->not(1)",
                       "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfTheSecond", 1, 0.1000001,
                      {"not(1)-->not(2)", "not(2)-->not(1)",
                       "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"EqualToThatOfTheSixth", 1, 16.0 / 65.0,
                      {"not(1)-->not(2)", "not(2)-->not(1)",
                       "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfTheSixth", 1, 0.2461539,
                      {"not(1)-->not(2)", "not(2)-->not(1)",
                       "1-->not(2)", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"EqualToThatOfTheFourth", 1, 20.0 / 65.0,
                      {"not(1)-->not(2)", "not(2)-->not(1)",
                       "1-->not(2)", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfTheFourth", 1, 0.3076924,
                      {"not(1)-->not(2)", "1-->not(2)", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"EqualToThatOfTheFifth", 1, 0.32,
                      {"not(1)-->not(2)", "1-->not(2)", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfTheFifth", 1, 0.3200001,
                      {"not(1)-->not(2)", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"EqualToThatOfTheThird", 1, 0.4,
                      {"not(1)-->not(2)", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfTheThird", 1, 0.4000001, {"not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"EqualToThatOfTheLast", 1, 0.46875, {"not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfTheLast", 1, 0.4687501, {"not(1)-->2"}},
        ThresholdCase{"EqualToThatOfTheSeventh", 1, 0.6, {"not(1)-->2"}},
        ThresholdCase{"AboveThatOfTheSeventh", 1, 0.6000001, {}}),
    name_of);
// clang-format on

TEST_F(InterNodeApproximate, SecondRuleOfAGroupDoesNotNeedTheFirst) {
    // s1 = 20, s2 = 80, the difference from 60 to 75: lower ends 20/80 and 20/40, 5/20 and 5/40, 60/80 and
    // 60/75.
    make_lattice("", {.minconf = 0.3}).get_rules_inter_supp_approx(rest, base, 20, 80, 60, 75, true);
    EXPECT_EQ(approx_rules(), (Lines{"not(2)-->not(1)", "not(1)-->2", "2-->not(1)"}));
}

TEST_F(InterNodeApproximate, LastRuleDoesNotNeedTheSeventh) {
    // 60/80 and 60/75
    make_lattice("", {.minconf = 0.78}).get_rules_inter_supp_approx(rest, base, 20, 80, 60, 75, true);
    EXPECT_EQ(approx_rules(), (Lines{"2-->not(1)"}));
}

TEST_F(InterNodeApproximate, SixthRuleDoesNotNeedTheFifth) {
    // s1 = 80, s2 = 90, the difference from 50 to 60: 30/80, and 30/50 to 30/40.
    make_lattice("", {.minconf = 0.5}).get_rules_inter_supp_approx(rest, base, 80, 90, 50, 60, true);
    EXPECT_EQ(record_of("1-->not(2)", inter_approx()), "");
    EXPECT_EQ(record_of("not(2)-->1", inter_approx()),
              "not(2)-->1\n30< support <40\n0.6< confiance <0.75\n---------------------------\n");
}

TEST_F(InterNodeApproximate, UpperBoundOfAllTransactionsLeavesOutTheRulesFromTheAbsenceOfTheDifference) {
    // hi = s2 = N: neither the fourth rule, 0/40 to 0/0, nor the sixth.
    make_lattice("", {.minsupp = 0, .minconf = 0.0})
        .get_rules_inter_supp_approx(rest, base, 50, 100, 60, 100, true);
    EXPECT_EQ(exact_rules(), (Lines{"not(1)-->2"}));
    EXPECT_EQ(approx_rules(), (Lines{"2-->1", "1-->2", "not(1)-->not(2)", "1-->not(2)", "2-->not(1)"}));
}

TEST_F(InterNodeApproximate, EqualBoundsAreStillIntervals) {
    // s1 = 50, s2 = 80, the difference 40.
    Lattice& lattice = make_lattice("");
    lattice.get_rules_inter_supp_approx(rest, base, 50, 80, 40, 40, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(),
              "2-->1\n10< support <10\n0.25< confiance <0.25\n---------------------------\n"
              "1-->2\n10< support <10\n0.2< confiance <0.2\n---------------------------\n"
              "not(1)-->not(2)\nsupport:20\n\nconfiance:0.4\n---------------------------\n"
              "not(2)-->not(1)\nsupport:20\n\n0.333333< confiance <0.333333\n---------------------------\n"
              "1-->not(2)\n40< support <40\n0.8< confiance <0.8\n---------------------------\n"
              "not(2)-->1\n40< support <40\n0.666667< confiance <0.666667\n---------------------------\n"
              "not(1)-->2\nsupport:30\n\nconfiance:0.6\n---------------------------\n"
              "2-->not(1)\nsupport:30\n\n0.75< confiance <0.75\n---------------------------\n");
    EXPECT_EQ(run_totals(lattice), (Totals{0, 2, 6}));
}

TEST_F(InterNodeApproximate, ConfidencesOf1StayApproximated) {
    // The difference as frequent as f2, 80: 50/50 and 20/20.
    Lattice& lattice = make_lattice("", {.minconf = 1.0});
    lattice.get_rules_inter_supp_approx(rest, base, 50, 80, 80, 80, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(),
              "1-->2\n50< support <50\n1< confiance <1\n---------------------------\n"
              "not(2)-->not(1)\nsupport:20\n\n1< confiance <1\n---------------------------\n");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R131, apped}, 1}, {{R232, apped}, 1}}));
}

TEST_F(InterNodeApproximate, ExclusionsOfConfidence1StayApproximated) {
    // s1 = 50, the difference 30 of s2 = 80: 50/50 and 30/30.
    Lattice& lattice = make_lattice("", {.minconf = 1.0});
    lattice.get_rules_inter_supp_approx(rest, base, 50, 80, 30, 30, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(),
              "1-->not(2)\n50< support <50\n1< confiance <1\n---------------------------\n"
              "2-->not(1)\nsupport:30\n\n1< confiance <1\n---------------------------\n");
}

TEST_F(InterNodeApproximate, UpperConfidenceOfTheFirstRuleIsCappedAt1) {
    // a_hi = 40 of lo = 35.
    make_lattice("").get_rules_inter_supp_approx(rest, base, 50, 80, 35, 70, true);
    EXPECT_EQ(record_of("2-->1", inter_approx()),
              "2-->1\n5< support <40\n0.0714286< confiance <1\n---------------------------\n");
}

TEST_F(InterNodeApproximate, LowerConfidenceOfTheFirstRuleIsNotCapped) {
    // Bounds that crossed, lo = 60 and hi = 30, with s1 = s2: 60/30 to 30/60.
    make_lattice("").get_rules_inter_supp_approx(rest, base, 80, 80, 60, 30, true);
    EXPECT_EQ(record_of("2-->1", inter_approx()),
              "2-->1\n60< support <30\n2< confiance <0.5\n---------------------------\n");
}

TEST_F(InterNodeApproximate, UpperConfidenceOfTheFifthRuleIsCappedAt1) {
    // 80 - 25 = 55 of 50.
    make_lattice("").get_rules_inter_supp_approx(rest, base, 50, 80, 25, 64, true);
    EXPECT_EQ(record_of("1-->not(2)", inter_approx()),
              "1-->not(2)\n16< support <55\n0.32< confiance <1\n---------------------------\n");
}

TEST_F(InterNodeApproximate, LowerConfidenceOfTheFifthRuleIsCappedAt1) {
    // 80 - 20 = 60 of 50.
    make_lattice("").get_rules_inter_supp_approx(rest, base, 50, 80, 20, 20, true);
    EXPECT_EQ(record_of("1-->not(2)", inter_approx()),
              "1-->not(2)\n60< support <60\n1< confiance <1\n---------------------------\n");
}

TEST_F(InterNodeApproximate, LowerConfidenceOfTheFifthRuleIsCappedBeforeItIsCompared) {
    // 60/50 would reach 1.1.
    make_lattice("", {.minconf = 1.1}).get_rules_inter_supp_approx(rest, base, 50, 80, 20, 20, true);
    EXPECT_EQ(record_of("1-->not(2)", inter_approx()), "");
}

TEST_F(InterNodeApproximate, FifthRuleOverABaseOfSupport0HasConfidence1) {
    // s1 = 0, the difference as frequent as f2: 0/0, capped to 1 before it is compared, while the 0/0 of
    // 1-->2 is not written. 20/20 and 80/80 reach the minimum too.
    make_lattice("", {.minsupp = 0, .minconf = 1.0})
        .get_rules_inter_supp_approx(rest, base, 0, 80, 80, 80, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(),
              "not(2)-->not(1)\nsupport:20\n\n1< confiance <1\n---------------------------\n"
              "1-->not(2)\n0< support <0\n1< confiance <1\n---------------------------\n"
              "2-->not(1)\nsupport:80\n\n1< confiance <1\n---------------------------\n");
}

TEST_F(InterNodeApproximate, UpperConfidenceOfTheSixthRuleIsCappedAt1) {
    // N = 70 below s2 = 80: 16/35 to 16/6.
    make_lattice("", {.transactions = 70}).get_rules_inter_supp_approx(rest, base, 50, 80, 35, 64, true);
    EXPECT_EQ(record_of("not(2)-->1", inter_approx()),
              "not(2)-->1\n16< support <45\n0.457143< confiance <1\n---------------------------\n");
}

TEST_F(InterNodeApproximate, LowerConfidenceOfTheSixthRuleIsNotCapped) {
    // N = 40 between lo = 35 and hi = 64: 16/5 to 16/(2^32 - 24).
    make_lattice("", {.transactions = 40}).get_rules_inter_supp_approx(rest, base, 50, 80, 35, 64, true);
    EXPECT_EQ(record_of("not(2)-->1", inter_approx()),
              "not(2)-->1\n16< support <45\n3.2< confiance <3.72529e-09\n---------------------------\n");
}

TEST_F(InterNodeApproximate, BoundsAboveTheLargerItemsetAreTakenAsTheyAre) {
    // hi = 90 above s2 = 80, lo = 40: 10/90 to 60/40 capped, 10/50 to 60/50, 20/50, 20/60 to 20/10,
    // (2^32 - 10)/50 capped to 40/50, (2^32 - 10)/60 to (2^32 - 10)/10 capped, 30/50, 30/90 to 30/40.
    make_lattice("").get_rules_inter_supp_approx(rest, base, 50, 80, 40, 90, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(),
              "2-->1\n10< support <60\n0.111111< confiance <1\n---------------------------\n"
              "1-->2\n10< support <60\n0.2< confiance <1.2\n---------------------------\n"
              "not(1)-->not(2)\nsupport:20\n\nconfiance:0.4\n---------------------------\n"
              "not(2)-->not(1)\nsupport:20\n\n0.333333< confiance <2\n---------------------------\n"
              "1-->not(2)\n4294967286< support <40\n1< confiance <0.8\n---------------------------\n"
              "not(2)-->1\n4294967286< support <40\n7.15828e+07< confiance <1\n---------------------------\n"
              "not(1)-->2\nsupport:30\n\nconfiance:0.6\n---------------------------\n"
              "2-->not(1)\nsupport:30\n\n0.333333< confiance <0.75\n---------------------------\n");
}

TEST_F(InterNodeApproximate, UpperConfidenceOfTheLastRuleIsNotCapped) {
    // lo = 20 below the rise of 30.
    make_lattice("").get_rules_inter_supp_approx(rest, base, 50, 80, 20, 64, true);
    EXPECT_EQ(record_of("2-->not(1)", inter_approx()),
              "2-->not(1)\nsupport:30\n\n0.46875< confiance <1.5\n---------------------------\n");
}

TEST_F(InterNodeApproximate, LowerBoundOf0MakesInfiniteUpperConfidences) {
    // s1 = 80, s2 = 110 of 200: 64/0 is capped in the first rule (a_lo = 80 - 110 wraps), 30/0 is not in the
    // last.
    make_lattice("", {.transactions = 200}).get_rules_inter_supp_approx(rest, base, 80, 110, 0, 94, true);
    EXPECT_EQ(record_of("2-->1", inter_approx()),
              "2-->1\n4294967266< support <64\n4.56911e+07< confiance <1\n---------------------------\n");
    EXPECT_EQ(record_of("2-->not(1)", inter_approx()),
              "2-->not(1)\nsupport:30\n\n0.319149< confiance <inf\n---------------------------\n");
}

TEST_F(InterNodeApproximate, UpperConfidenceOfTheFirstRuleThatIsNotANumberIs1) {
    // lo = 0, hi = 30: (2^32 - 30)/30 to 0/0.
    make_lattice("").get_rules_inter_supp_approx(rest, base, 50, 80, 0, 30, true);
    EXPECT_EQ(record_of("2-->1", inter_approx()),
              "2-->1\n4294967266< support <0\n1.43166e+08< confiance <1\n---------------------------\n");
}

TEST_F(InterNodeApproximate, UpperConfidenceOfTheLastRuleThatIsNotANumberIsWritten) {
    // s1 = s2 = 80, the difference from 0 to 40: 0/40 to 0/0.
    make_lattice("", {.minsupp = 0, .minconf = 0.0})
        .get_rules_inter_supp_approx(rest, base, 80, 80, 0, 40, true);
    EXPECT_EQ(
        record_of("2-->not(1)", inter_approx()),
        "2-->not(1)\nsupport:0\n\n0< confiance <" + zero_over_zero() + "\n---------------------------\n");
}

TEST_F(InterNodeApproximate, ThirdRuleOfConfidence1StaysApproximative) {
    // s1 = s2 = 80: 20/20.
    Lattice& lattice = make_lattice("", {.minconf = 1.0});
    lattice.get_rules_inter_supp_approx(rest, base, 80, 80, 10, 40, false);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(), "not(1)-->not(2)\nsupport:20\n\nconfiance:1\n---------------------------\n");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R221, appro}, 1}}));
}

TEST_F(InterNodeApproximate, LowerConfidencesThatAreNotNumbersAreNotWrittenWithoutTheDifference) {
    // hi = 0, s1 = s2 = 80: the first and the last rule are 0/0.
    make_lattice("", {.minsupp = 0, .minconf = 0.0})
        .get_rules_inter_supp_approx(rest, base, 80, 80, 0, 0, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(approx_rules(), (Lines{"1-->2", "not(1)-->not(2)", "not(2)-->not(1)", "1-->not(2)",
                                     "not(2)-->1", "not(1)-->2"}));
}

TEST_F(InterNodeApproximate, ConfidencesThatAreNotNumbersAreNotWrittenWithTheBaseInAllTransactions) {
    // s1 = s2 = N: the rules from the absence of the base are 0/0.
    make_lattice("", {.minsupp = 0, .minconf = 0.0})
        .get_rules_inter_supp_approx(rest, base, 100, 100, 10, 40, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(approx_rules(),
              (Lines{"2-->1", "1-->2", "not(2)-->not(1)", "1-->not(2)", "not(2)-->1", "2-->not(1)"}));
}

TEST_F(InterNodeApproximate, InfiniteConfidencesAreApproximative) {
    // s1 = N > s2 = 80: 20/0 and (2^32 - 20)/0.
    Lattice& lattice = make_lattice("", {.minsupp = 1, .minconf = 1e300});
    lattice.get_rules_inter_supp_approx(rest, base, 100, 80, 35, 64, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(),
              "not(1)-->not(2)\nsupport:20\n\nconfiance:inf\n---------------------------\n"
              "not(1)-->2\nsupport:4294967276\n\nconfiance:inf\n---------------------------\n");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R231, appro}, 1}, {{R431, appro}, 1}}));
}

TEST_F(InterNodeApproximate,
       BaseAndDifferenceThatCoverAllTransactionsGiveOneExactRuleCountedAsItsMirrorImage) {
    // N = s2 = 80: 30 transactions without the base, all with the difference.
    Lattice& lattice = make_lattice("", {.minsupp = 30, .transactions = 80});
    lattice.get_rules_inter_supp_approx(rest, base, 50, 80, 35, 64, true);
    EXPECT_EQ(inter_exact(), "not(1)-->2\nsupport:30\n\n");
    EXPECT_EQ(approx_rules(), (Lines{"2-->not(1)"}));
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R332, exact}, 1}, {{R332, apped}, 1}}));
    EXPECT_EQ(run_totals(lattice), (Totals{1, 0, 1}));
}

TEST_F(InterNodeApproximate, ExactRuleOfAnEssentialItemsetIsCountedAsItsMirrorImageToo) {
    Lattice& lattice = make_lattice("", {.minsupp = 30, .transactions = 80});
    lattice.get_rules_inter_supp_approx(rest, base, 50, 80, 35, 64, false);
    EXPECT_EQ(inter_exact(), "not(1)-->2\nsupport:30\n\n");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R322, exact}, 1}, {{R322, apped}, 1}}));
}

TEST_F(InterNodeApproximate, ExactRuleBelowAMinimumConfidenceAbove1IsNotWritten) {
    make_lattice("", {.minsupp = 30, .minconf = 1.5, .transactions = 80})
        .get_rules_inter_supp_approx(rest, base, 50, 80, 35, 64, true);
    EXPECT_EQ(inter_exact() + inter_approx(), "");
}

TEST_F(InterNodeApproximate, ExactnessIsDecidedInDoublePrecision) {
    // N = 2^32 - 1, s2 = N - 1, s1 = 0: 4294967294 of 4294967295, printed as 1.
    Lattice& lattice = make_lattice("", {.minsupp = 2, .minconf = 0.5, .transactions = 4294967295U});
    lattice.get_rules_inter_supp_approx(rest, base, 0, 4294967294U, 1, 4294967294U, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(record_of("not(1)-->2", inter_approx()),
              "not(1)-->2\nsupport:4294967294\n\nconfiance:1\n---------------------------\n");
    EXPECT_EQ(nonzero_counters(lattice).at({R431, appro}), 1U);
}

/// Supports of which one difference wraps, and the rules that only so pass a minimum support of 100.
struct WrapCase {
    std::string name;
    Count s1;
    Count s2;
    Count lo;
    Count hi;
    Count transactions;
    std::string approx;
};

void PrintTo(const WrapCase& wrap, std::ostream* out) {
    *out << wrap.name;
}

class InterNodeApproximateWrap : public InterNodeApproximate,
                                 public ::testing::WithParamInterface<WrapCase> {};

TEST_P(InterNodeApproximateWrap, TransactionsWrap) {
    const WrapCase& wrap = GetParam();
    make_lattice("", {.minsupp = 100, .transactions = wrap.transactions})
        .get_rules_inter_supp_approx(rest, base, wrap.s1, wrap.s2, wrap.lo, wrap.hi, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(), wrap.approx);
}

// Each difference is -10, which is 2^32 - 10.
INSTANTIATE_TEST_SUITE_P(
    All, InterNodeApproximateWrap,
    ::testing::Values(
        // over hi = 64 to 4/50, over s1 = 20 to 4/20
        WrapCase{"WithBoth", 20, 80, 50, 64, 100,
                 "2-->1\n4294967286< support <4\n6.71089e+07< confiance <0.08\n---------------------------\n"
                 "1-->2\n4294967286< support <4\n2.14748e+08< confiance <0.2\n---------------------------\n"},
        // over 20, and over 35 to 6
        WrapCase{"WithNeither", 50, 80, 35, 64, 70,
                 "not(1)-->not(2)\nsupport:4294967286\n\nconfiance:2.14748e+08\n---------------------------\n"
                 "not(2)-->not(1)\nsupport:4294967286\n\n"
                 "1.22713e+08< confiance <7.15828e+08\n---------------------------\n"},
        // capped to 45/50, over 65 to over 10 capped
        WrapCase{
            "WithTheBaseOnly", 50, 80, 35, 90, 100,
            "1-->not(2)\n4294967286< support <45\n1< confiance <0.9\n---------------------------\n"
            "not(2)-->1\n4294967286< support <45\n6.60764e+07< confiance <1\n---------------------------\n"},
        // over 10, and over 64 to over 35
        WrapCase{"WithTheDifferenceOnly", 90, 80, 35, 64, 100,
                 "not(1)-->2\nsupport:4294967286\n\nconfiance:4.29497e+08\n---------------------------\n"
                 "2-->not(1)\nsupport:4294967286\n\n"
                 "6.71089e+07< confiance <1.22713e+08\n---------------------------\n"}),
    [](const auto& instance) { return instance.param.name; });

TEST_F(InterNodeApproximate, DenominatorsWrap) {
    // N = 50, s1 = 60, s2 = 90, the difference from 40 to 70: 30/(2^32 - 10); 20/10 to 20/(2^32 - 20).
    make_lattice("", {.minsupp = 20, .transactions = 50})
        .get_rules_inter_supp_approx(rest, base, 60, 90, 40, 70, true);
    EXPECT_EQ(record_of("not(1)-->2", inter_approx()),
              "not(1)-->2\nsupport:30\n\nconfiance:6.98492e-09\n---------------------------\n");
    EXPECT_EQ(record_of("not(2)-->1", inter_approx()),
              "not(2)-->1\n20< support <50\n2< confiance <4.65661e-09\n---------------------------\n");
}

}  // namespace
}  // namespace korv
