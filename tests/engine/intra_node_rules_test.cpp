#include <gtest/gtest.h>

#include <array>
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

class IntraNodeRules : public test::LatticeFixture {
protected:
    Lines exact_rules() { return rule_lines(intra_exact()); }
    Lines approx_rules() { return rule_lines(intra_approx()); }
};

// Unless a test says otherwise, e1 is {1}, f1-e1 is {2} and there are 100 transactions. The eight rules:
//
//   R112  2-->1             R111  1-->2
//   R211  not(1)-->not(2)   R212  not(2)-->not(1)
//   R311  1-->not(2)        R412  not(2)-->1
//   R411  not(1)-->2        R312  2-->not(1)
const Itemset e1 = {1};
const Itemset rest = {2};

/// Thresholds, and the rules of the exact and the approximate file that pass them.
struct ThresholdCase {
    std::string name;
    Count minsupp;
    double minconf;
    Lines exact;
    Lines approx;
};

void PrintTo(const ThresholdCase& threshold, std::ostream* out) {
    *out << "minsupp " << threshold.minsupp << ", minconf " << threshold.minconf;
}

std::string name_of(const ::testing::TestParamInfo<ThresholdCase>& instance) {
    return instance.param.name;
}

class IntraNodeThresholds : public IntraNodeRules, public ::testing::WithParamInterface<ThresholdCase> {
protected:
    Lattice& lattice_with_thresholds() {
        return make_lattice("", {.minsupp = GetParam().minsupp, .minconf = GetParam().minconf});
    }

    void expect_rules_of_the_case() {
        EXPECT_EQ(exact_rules(), GetParam().exact);
        EXPECT_EQ(approx_rules(), GetParam().approx);
    }
};

// The support of the difference is known.

using KnownSupport = IntraNodeRules;

TEST_F(KnownSupport, WritesAllEightRules) {
    // r = 60, s = 75: 25 transactions without an item of f1, 15 with one of e1 only.
    Lattice& lattice = make_lattice("", {.minsupp = 0, .minconf = 0.0});
    lattice.get_rules_intra_node({2, 3}, 60, {1, 4}, 75);

    EXPECT_EQ(intra_exact(), R"(2 v 3-->1 v 4
support:60

not(1)not(4)-->not(2)not(3)
support:25

)");
    // 60/75, 25/40, 15/75, 15/40, and the pair of support 0.
    EXPECT_EQ(intra_approx(), R"(1 v 4-->2 v 3
support:60

confiance:0.8
---------------------------
not(2)not(3)-->not(1)not(4)
support:25

confiance:0.625
---------------------------
1 v 4-->not(2)not(3)
support:15

confiance:0.2
---------------------------
not(2)not(3)-->1 v 4
support:15

confiance:0.375
---------------------------
not(1)not(4)-->2 v 3
support:0

confiance:0
---------------------------
2 v 3-->not(1)not(4)
support:0

confiance:0
---------------------------
)");
    // The approximative R212 is counted as an R111.
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R112, exact}, 1},
                                                       {{R111, appro}, 2},
                                                       {{R211, exact}, 1},
                                                       {{R311, appro}, 1},
                                                       {{R412, appro}, 1},
                                                       {{R411, appro}, 1},
                                                       {{R312, appro}, 1}}));
    EXPECT_EQ(run_totals(lattice), (Totals{2, 6, 0}));
    EXPECT_EQ(inter_exact() + inter_approx(), "");
}

using KnownSupportThresholds = IntraNodeThresholds;

TEST_P(KnownSupportThresholds, DecideOnEachRule) {
    // r = 60, 25 without an item of f1, 15 with one of e1 only.
    lattice_with_thresholds().get_rules_intra_node(rest, 60, e1, 75);
    expect_rules_of_the_case();
}

INSTANTIATE_TEST_SUITE_P(
    MinimumSupport, KnownSupportThresholds,
    ::testing::Values(
        ThresholdCase{"EqualToThatOfR311AndR412",
                      15,
                      0.0,
                      {"2-->1", "not(1)-->not(2)"},
                      {"1-->2", "not(2)-->not(1)", "1-->not(2)", "not(2)-->1"}},
        ThresholdCase{
            "AboveThatOfR311AndR412", 16, 0.0, {"2-->1", "not(1)-->not(2)"}, {"1-->2", "not(2)-->not(1)"}},
        ThresholdCase{
            "EqualToThatOfR211AndR212", 25, 0.0, {"2-->1", "not(1)-->not(2)"}, {"1-->2", "not(2)-->not(1)"}},
        ThresholdCase{"AboveThatOfR211AndR212", 26, 0.0, {"2-->1"}, {"1-->2"}},
        ThresholdCase{"EqualToThatOfR112AndR111", 60, 0.0, {"2-->1"}, {"1-->2"}},
        ThresholdCase{"AboveThatOfR112AndR111", 61, 0.0, {}, {}}),
    name_of);

// Confidences: R111 60/75, R212 25/40, R311 15/75, R412 15/40. R112 and R211 have 1 and are not tested.
INSTANTIATE_TEST_SUITE_P(
    MinimumConfidence, KnownSupportThresholds,
    ::testing::Values(
        ThresholdCase{"EqualToThatOfR311",
                      1,
                      0.2,
                      {"2-->1", "not(1)-->not(2)"},
                      {"1-->2", "not(2)-->not(1)", "1-->not(2)", "not(2)-->1"}},
        ThresholdCase{"AboveThatOfR311",
                      1,
                      0.2000001,
                      {"2-->1", "not(1)-->not(2)"},
                      {"1-->2", "not(2)-->not(1)", "not(2)-->1"}},
        ThresholdCase{"EqualToThatOfR412",
                      1,
                      0.375,
                      {"2-->1", "not(1)-->not(2)"},
                      {"1-->2", "not(2)-->not(1)", "not(2)-->1"}},
        ThresholdCase{
            "AboveThatOfR412", 1, 0.3750001, {"2-->1", "not(1)-->not(2)"}, {"1-->2", "not(2)-->not(1)"}},
        ThresholdCase{
            "EqualToThatOfR212", 1, 0.625, {"2-->1", "not(1)-->not(2)"}, {"1-->2", "not(2)-->not(1)"}},
        ThresholdCase{"AboveThatOfR212", 1, 0.6250001, {"2-->1", "not(1)-->not(2)"}, {"1-->2"}},
        ThresholdCase{"EqualToThatOfR111", 1, 0.8, {"2-->1", "not(1)-->not(2)"}, {"1-->2"}},
        ThresholdCase{"AboveThatOfR111", 1, 0.8000001, {"2-->1", "not(1)-->not(2)"}, {}},
        ThresholdCase{"AboveOne", 1, 1.5, {"2-->1", "not(1)-->not(2)"}, {}}),
    name_of);

TEST_F(KnownSupport, WithoutR112ThereIsNoR111ButTheOtherRules) {
    // r = 10 below the minimum of 20, s = 30: 70 without an item of f1, 20 with one of e1 only.
    make_lattice("", {.minsupp = 20}).get_rules_intra_node(rest, 10, e1, 30);
    EXPECT_EQ(exact_rules(), (Lines{"not(1)-->not(2)"}));
    EXPECT_EQ(approx_rules(), (Lines{"not(2)-->not(1)", "1-->not(2)", "not(2)-->1"}));
}

TEST_F(KnownSupport, ApproximativeR212IsCountedAsR111) {
    // 70/90, the only other rule besides R211.
    Lattice& lattice = make_lattice("", {.minsupp = 21});
    lattice.get_rules_intra_node(rest, 10, e1, 30);
    EXPECT_EQ(approx_rules(), (Lines{"not(2)-->not(1)"}));
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R211, exact}, 1}, {{R111, appro}, 1}}));
    EXPECT_EQ(run_totals(lattice), (Totals{1, 1, 0}));
}

TEST_F(KnownSupport, DifferenceAsFrequentAsTheItemsetGivesFourExactRules) {
    // r = s = 60: 60/60 and 40/40.
    Lattice& lattice = make_lattice("");
    lattice.get_rules_intra_node(rest, 60, e1, 60);
    EXPECT_EQ(intra_exact(),
              "2-->1\nsupport:60\n\n"
              "1-->2\nsupport:60\n\n"
              "not(1)-->not(2)\nsupport:40\n\n"
              "not(2)-->not(1)\nsupport:40\n\n");
    EXPECT_EQ(intra_approx(), "");
    EXPECT_EQ(nonzero_counters(lattice),
              (CounterCells{{{R112, exact}, 1}, {{R111, exact}, 1}, {{R211, exact}, 1}, {{R212, exact}, 1}}));
    EXPECT_EQ(run_totals(lattice), (Totals{4, 0, 0}));
}

TEST_F(KnownSupport, DifferenceAsFrequentAsTheItemsetHasRulesOfSupport0AtMinimaOf0) {
    Lattice& lattice = make_lattice("", {.minsupp = 0, .minconf = 0.0});
    lattice.get_rules_intra_node(rest, 60, e1, 60);
    EXPECT_EQ(approx_rules(), (Lines{"1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}));
    EXPECT_EQ(record_of("1-->not(2)", intra_approx()),
              "1-->not(2)\nsupport:0\n\nconfiance:0\n---------------------------\n");
    EXPECT_EQ(record_of("not(2)-->1", intra_approx()),
              "not(2)-->1\nsupport:0\n\nconfiance:0\n---------------------------\n");
}

TEST_F(KnownSupport, RulesOfConfidence0NeedAMinimumConfidenceOf0) {
    make_lattice("", {.minsupp = 0, .minconf = 0.0001}).get_rules_intra_node(rest, 60, e1, 60);
    EXPECT_EQ(approx_rules(), Lines{});
}

TEST_F(KnownSupport, DifferenceInAllTransactionsHasNoRulesFromItsAbsence) {
    // r = s = N: neither R212 nor R412.
    make_lattice("", {.minsupp = 0, .minconf = 0.0}).get_rules_intra_node(rest, 100, e1, 100);
    EXPECT_EQ(exact_rules(), (Lines{"2-->1", "1-->2", "not(1)-->not(2)"}));
    EXPECT_EQ(approx_rules(), (Lines{"1-->not(2)", "not(1)-->2", "2-->not(1)"}));
}

TEST_F(KnownSupport, NeverDividesByTheTransactionsWithoutTheDifferenceIfThereAreNone) {
    // r = N > s: 20/0 and 4294967276/0 would be infinite and pass.
    make_lattice("").get_rules_intra_node(rest, 100, e1, 80);
    EXPECT_EQ(exact_rules(), (Lines{"2-->1", "not(1)-->not(2)"}));
    EXPECT_EQ(approx_rules(), (Lines{"1-->2", "1-->not(2)"}));
}

TEST_F(KnownSupport, R412OfConfidence1IsExact) {
    // r = 60, s = N: 40 with an item of e1 only, and 40 without one of the difference.
    Lattice& lattice = make_lattice("");
    lattice.get_rules_intra_node(rest, 60, e1, 100);
    EXPECT_EQ(intra_exact(), "2-->1\nsupport:60\n\nnot(2)-->1\nsupport:40\n\n");
    EXPECT_EQ(approx_rules(), (Lines{"1-->2", "1-->not(2)"}));
    EXPECT_EQ(nonzero_counters(lattice),
              (CounterCells{{{R112, exact}, 1}, {{R111, appro}, 1}, {{R311, appro}, 1}, {{R412, exact}, 1}}));
    EXPECT_EQ(run_totals(lattice), (Totals{2, 2, 0}));
}

TEST_F(KnownSupport, R311OfConfidence1StaysApproximative) {
    // r = 0: 80 of 80.
    Lattice& lattice = make_lattice("");
    lattice.get_rules_intra_node(rest, 0, e1, 80);
    EXPECT_EQ(exact_rules(), (Lines{"not(1)-->not(2)"}));
    EXPECT_EQ(record_of("1-->not(2)", intra_approx()),
              "1-->not(2)\nsupport:80\n\nconfiance:1\n---------------------------\n");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R211, exact}, 1},
                                                       {{R111, appro}, 1},  // R212
                                                       {{R311, appro}, 1},
                                                       {{R412, appro}, 1}}));
}

TEST_F(KnownSupport, ZeroSupportPairNeedsAMinimumSupportOf0) {
    make_lattice("", {.minsupp = 1, .minconf = 0.0}).get_rules_intra_node(rest, 60, e1, 75);
    EXPECT_EQ(approx_rules(), (Lines{"1-->2", "not(2)-->not(1)", "1-->not(2)", "not(2)-->1"}));
}

TEST_F(KnownSupport, ZeroSupportPairNeedsAMinimumConfidenceOf0) {
    make_lattice("", {.minsupp = 0, .minconf = 0.0001}).get_rules_intra_node(rest, 60, e1, 75);
    EXPECT_EQ(approx_rules(), (Lines{"1-->2", "not(2)-->not(1)", "1-->not(2)", "not(2)-->1"}));
}

TEST_F(KnownSupport, ZeroSupportPairIsNotWrittenBelowAMinimumConfidenceOf0) {
    make_lattice("", {.minsupp = 0, .minconf = -0.5}).get_rules_intra_node(rest, 60, e1, 75);
    EXPECT_EQ(approx_rules(), (Lines{"1-->2", "not(2)-->not(1)", "1-->not(2)", "not(2)-->1"}));
}

TEST_F(KnownSupport, ExactnessIsDecidedInDoublePrecision) {
    // 4294967294 of 4294967295 prints as 1 but is none.
    Lattice& lattice = make_lattice("", {.minsupp = 2, .transactions = 4294967295U});
    lattice.get_rules_intra_node(rest, 4294967294U, e1, 4294967295U);
    EXPECT_EQ(intra_exact(), "2-->1\nsupport:4294967294\n\n");
    EXPECT_EQ(intra_approx(), "1-->2\nsupport:4294967294\n\nconfiance:1\n---------------------------\n");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R112, exact}, 1}, {{R111, appro}, 1}}));
}

TEST_F(KnownSupport, TransactionsWithoutTheItemsetWrap) {
    // 10 transactions, 12 with an item of f1: 4294967294 without; (2^32 - 2) / (10 - 5).
    make_lattice("", {.minsupp = 100, .transactions = 10}).get_rules_intra_node(rest, 5, e1, 12);
    EXPECT_EQ(intra_exact(), "not(1)-->not(2)\nsupport:4294967294\n\n");
    EXPECT_EQ(intra_approx(),
              "not(2)-->not(1)\nsupport:4294967294\n\nconfiance:8.58993e+08\n---------------------------\n");
}

TEST_F(KnownSupport, TransactionsWithoutTheDifferenceWrap) {
    // 10 transactions, 12 with an item of f1-e1, 8 with one of f1: 2 / (2^32 - 2).
    make_lattice("", {.minsupp = 2, .transactions = 10}).get_rules_intra_node(rest, 12, e1, 8);
    EXPECT_EQ(record_of("not(2)-->not(1)", intra_approx()),
              "not(2)-->not(1)\nsupport:2\n\nconfiance:4.65661e-10\n---------------------------\n");
}

TEST_F(KnownSupport, TransactionsWithTheEssentialOnlyWrap) {
    // r = 90, s = 80: (2^32 - 10) / 80 and / 10.
    make_lattice("", {.minsupp = 100}).get_rules_intra_node(rest, 90, e1, 80);
    EXPECT_EQ(intra_exact(), "");
    EXPECT_EQ(intra_approx(),
              "1-->not(2)\nsupport:4294967286\n\nconfiance:5.36871e+07\n---------------------------\n"
              "not(2)-->1\nsupport:4294967286\n\nconfiance:4.29497e+08\n---------------------------\n");
}

TEST_F(KnownSupport, ConfidenceOverASupportOf0IsInfinite) {
    make_lattice("").get_rules_intra_node(rest, 5, e1, 0);
    EXPECT_EQ(record_of("1-->2", intra_approx()),
              "1-->2\nsupport:5\n\nconfiance:inf\n---------------------------\n");
}

// The support of the difference is bounded only.

using BoundedSupport = IntraNodeRules;

TEST_F(BoundedSupport, WritesAllEightRules) {
    // s = 75, the difference between 40 and 60: 25 without an item of f1, 15 to 35 with one of e1 only.
    Lattice& lattice = make_lattice("", {.minsupp = 0, .minconf = 0.0});
    lattice.get_rules_intra_supp_approx({2, 3}, {1, 4}, 75, 40, 60);

    EXPECT_EQ(intra_exact(), R"(2 v 3-->1 v 4
40< support <60
not(1)not(4)-->not(2)not(3)
support:25

)");
    // 40/75 to 60/75, 25/60 to 25/40, 15/75 to 35/75, 15/60 to 35/40, and the pair of support 0.
    EXPECT_EQ(intra_approx(), R"(1 v 4-->2 v 3
40< support <60
0.533333< confiance <0.8
---------------------------
not(2)not(3)-->not(1)not(4)
support:25

0.416667< confiance <0.625
---------------------------
1 v 4-->not(2)not(3)
15< support <35
0.2< confiance <0.466667
---------------------------
not(2)not(3)-->1 v 4
15< support <35
0.25< confiance <0.875
---------------------------
not(1)not(4)-->2 v 3
support:0

confiance:0
---------------------------
2 v 3-->not(1)not(4)
support:0

confiance:0
---------------------------
)");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R112, apped}, 1},
                                                       {{R111, apped}, 1},
                                                       {{R211, exact}, 1},
                                                       {{R212, apped}, 1},
                                                       {{R311, apped}, 1},
                                                       {{R412, apped}, 1},
                                                       {{R411, appro}, 1},
                                                       {{R312, appro}, 1}}));
    EXPECT_EQ(run_totals(lattice), (Totals{1, 2, 5}));
    EXPECT_EQ(inter_exact() + inter_approx(), "");
}

using BoundedSupportThresholds = IntraNodeThresholds;

TEST_P(BoundedSupportThresholds, DecideOnEachRule) {
    // The difference from 40 on, 25 without an item of f1, from 15 on with one of e1 only.
    lattice_with_thresholds().get_rules_intra_supp_approx(rest, e1, 75, 40, 60);
    expect_rules_of_the_case();
}

INSTANTIATE_TEST_SUITE_P(
    MinimumSupport, BoundedSupportThresholds,
    ::testing::Values(
        ThresholdCase{"EqualToThatOfR311AndR412",
                      15,
                      0.0,
                      {"2-->1", "not(1)-->not(2)"},
                      {"1-->2", "not(2)-->not(1)", "1-->not(2)", "not(2)-->1"}},
        ThresholdCase{
            "AboveThatOfR311AndR412", 16, 0.0, {"2-->1", "not(1)-->not(2)"}, {"1-->2", "not(2)-->not(1)"}},
        ThresholdCase{
            "EqualToThatOfR211AndR212", 25, 0.0, {"2-->1", "not(1)-->not(2)"}, {"1-->2", "not(2)-->not(1)"}},
        ThresholdCase{"AboveThatOfR211AndR212", 26, 0.0, {"2-->1"}, {"1-->2"}},
        ThresholdCase{"EqualToThatOfR112AndR111", 40, 0.0, {"2-->1"}, {"1-->2"}},
        ThresholdCase{"AboveThatOfR112AndR111", 41, 0.0, {}, {}}),
    name_of);

// Lower confidences: R111 40/75, R212 25/60, R311 15/75, R412 15/60. R112 and R211 have 1 and are not tested.
INSTANTIATE_TEST_SUITE_P(
    MinimumConfidence, BoundedSupportThresholds,
    ::testing::Values(
        ThresholdCase{"EqualToThatOfR311",
                      1,
                      0.2,
                      {"2-->1", "not(1)-->not(2)"},
                      {"1-->2", "not(2)-->not(1)", "1-->not(2)", "not(2)-->1"}},
        ThresholdCase{"AboveThatOfR311",
                      1,
                      0.2000001,
                      {"2-->1", "not(1)-->not(2)"},
                      {"1-->2", "not(2)-->not(1)", "not(2)-->1"}},
        ThresholdCase{"EqualToThatOfR412",
                      1,
                      0.25,
                      {"2-->1", "not(1)-->not(2)"},
                      {"1-->2", "not(2)-->not(1)", "not(2)-->1"}},
        ThresholdCase{
            "AboveThatOfR412", 1, 0.2500001, {"2-->1", "not(1)-->not(2)"}, {"1-->2", "not(2)-->not(1)"}},
        ThresholdCase{
            "EqualToThatOfR212", 1, 25.0 / 60.0, {"2-->1", "not(1)-->not(2)"}, {"1-->2", "not(2)-->not(1)"}},
        ThresholdCase{"AboveThatOfR212", 1, 0.4166667, {"2-->1", "not(1)-->not(2)"}, {"1-->2"}},
        ThresholdCase{"EqualToThatOfR111", 1, 40.0 / 75.0, {"2-->1", "not(1)-->not(2)"}, {"1-->2"}},
        ThresholdCase{"AboveThatOfR111", 1, 0.5333334, {"2-->1", "not(1)-->not(2)"}, {}},
        ThresholdCase{"AboveOne", 1, 1.5, {"2-->1", "not(1)-->not(2)"}, {}}),
    name_of);

TEST_F(BoundedSupport, LowerBoundOf0LeavesOutR112AndR111Only) {
    make_lattice("", {.minsupp = 1}).get_rules_intra_supp_approx(rest, e1, 75, 0, 60);
    EXPECT_EQ(exact_rules(), (Lines{"not(1)-->not(2)"}));
    EXPECT_EQ(approx_rules(), (Lines{"not(2)-->not(1)", "1-->not(2)", "not(2)-->1"}));
}

TEST_F(BoundedSupport, R112GoesToTheExactFileAndIsCountedApproximated) {
    // Between 40 and 60; nothing else reaches 40 at confidence 1.
    Lattice& lattice = make_lattice("", {.minsupp = 40, .minconf = 1.0});
    lattice.get_rules_intra_supp_approx(rest, e1, 75, 40, 60);
    EXPECT_EQ(intra_exact(), "2-->1\n40< support <60\n");
    EXPECT_EQ(intra_approx(), "");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R112, apped}, 1}}));
    EXPECT_EQ(run_totals(lattice), (Totals{0, 0, 1}));
}

TEST_F(BoundedSupport, UpperBoundOfAllTransactionsLeavesOutTheRulesFromTheAbsenceOfTheDifference) {
    // hi = s = N: neither R212, 0/60 to 0/0, nor R412, 0/60 to 60/0.
    make_lattice("", {.minsupp = 0, .minconf = 0.0}).get_rules_intra_supp_approx(rest, e1, 100, 40, 100);
    EXPECT_EQ(exact_rules(), (Lines{"2-->1", "not(1)-->not(2)"}));
    EXPECT_EQ(approx_rules(), (Lines{"1-->2", "1-->not(2)", "not(1)-->2", "2-->not(1)"}));
}

TEST_F(BoundedSupport, ZeroSupportPairNeedsAMinimumSupportOf0) {
    make_lattice("", {.minsupp = 1, .minconf = 0.0}).get_rules_intra_supp_approx(rest, e1, 75, 40, 60);
    EXPECT_EQ(approx_rules(), (Lines{"1-->2", "not(2)-->not(1)", "1-->not(2)", "not(2)-->1"}));
}

TEST_F(BoundedSupport, ZeroSupportPairNeedsAMinimumConfidenceOf0) {
    make_lattice("", {.minsupp = 0, .minconf = 0.0001}).get_rules_intra_supp_approx(rest, e1, 75, 40, 60);
    EXPECT_EQ(approx_rules(), (Lines{"1-->2", "not(2)-->not(1)", "1-->not(2)", "not(2)-->1"}));
}

TEST_F(BoundedSupport, ZeroSupportPairIsNotWrittenBelowAMinimumConfidenceOf0) {
    make_lattice("", {.minsupp = 0, .minconf = -0.5}).get_rules_intra_supp_approx(rest, e1, 75, 40, 60);
    EXPECT_EQ(approx_rules(), (Lines{"1-->2", "not(2)-->not(1)", "1-->not(2)", "not(2)-->1"}));
}

TEST_F(BoundedSupport, EqualBoundsAreStillIntervals) {
    // The difference 60, s = 75: 60/75, 25/40, 15/75, 15/40.
    Lattice& lattice = make_lattice("");
    lattice.get_rules_intra_supp_approx(rest, e1, 75, 60, 60);
    EXPECT_EQ(intra_exact(),
              "2-->1\n60< support <60\n"
              "not(1)-->not(2)\nsupport:25\n\n");
    EXPECT_EQ(intra_approx(),
              "1-->2\n60< support <60\n0.8< confiance <0.8\n---------------------------\n"
              "not(2)-->not(1)\nsupport:25\n\n0.625< confiance <0.625\n---------------------------\n"
              "1-->not(2)\n15< support <15\n0.2< confiance <0.2\n---------------------------\n"
              "not(2)-->1\n15< support <15\n0.375< confiance <0.375\n---------------------------\n");
    EXPECT_EQ(run_totals(lattice), (Totals{1, 0, 5}));
}

TEST_F(BoundedSupport, ConfidencesOf1StayApproximated) {
    // The difference as frequent as f1: 75/75 and 25/25.
    Lattice& lattice = make_lattice("");
    lattice.get_rules_intra_supp_approx(rest, e1, 75, 75, 75);
    EXPECT_EQ(exact_rules(), (Lines{"2-->1", "not(1)-->not(2)"}));
    EXPECT_EQ(intra_approx(),
              "1-->2\n75< support <75\n1< confiance <1\n---------------------------\n"
              "not(2)-->not(1)\nsupport:25\n\n1< confiance <1\n---------------------------\n");
    EXPECT_EQ(nonzero_counters(lattice),
              (CounterCells{{{R112, apped}, 1}, {{R111, apped}, 1}, {{R211, exact}, 1}, {{R212, apped}, 1}}));
}

TEST_F(BoundedSupport, UpperConfidenceOfR412IsCappedAt1) {
    // s = 90, the difference between 10 and 60: 30/90 to 80/40.
    make_lattice("").get_rules_intra_supp_approx(rest, e1, 90, 10, 60);
    EXPECT_EQ(record_of("not(2)-->1", intra_approx()),
              "not(2)-->1\n30< support <80\n0.333333< confiance <1\n---------------------------\n");
}

TEST_F(BoundedSupport, BoundsAboveTheItemsetAreTakenAsTheyAre) {
    // hi = 90 above s = 75: 40/75 to 90/75, 25/60 to 25/10, (2^32 - 15)/75 to 35/75, (2^32 - 15)/60 to 35/10.
    // Of all the confidences only the upper one of R412 is capped.
    make_lattice("").get_rules_intra_supp_approx(rest, e1, 75, 40, 90);
    EXPECT_EQ(
        intra_approx(),
        "1-->2\n40< support <90\n0.533333< confiance <1.2\n---------------------------\n"
        "not(2)-->not(1)\nsupport:25\n\n0.416667< confiance <2.5\n---------------------------\n"
        "1-->not(2)\n4294967281< support <35\n5.72662e+07< confiance <0.466667\n---------------------------\n"
        "not(2)-->1\n4294967281< support <35\n7.15828e+07< confiance <1\n---------------------------\n");
}

TEST_F(BoundedSupport, TransactionsWithoutTheItemsetWrap) {
    // 50 transactions, 75 with an item of f1: (2^32 - 25) / 10 to (2^32 - 25) / (2^32 - 10).
    make_lattice("", {.minsupp = 100, .transactions = 50}).get_rules_intra_supp_approx(rest, e1, 75, 40, 60);
    EXPECT_EQ(intra_exact(), "not(1)-->not(2)\nsupport:4294967271\n\n");
    EXPECT_EQ(intra_approx(),
              "not(2)-->not(1)\nsupport:4294967271\n\n"
              "4.29497e+08< confiance <1\n---------------------------\n");
}

TEST_F(BoundedSupport, ConfidencesThatAreNotNumbersAreNotWritten) {
    // s = 0: R111 and R311 are 0/0.
    make_lattice("", {.minsupp = 0, .minconf = 0.0}).get_rules_intra_supp_approx(rest, e1, 0, 0, 0);
    EXPECT_EQ(exact_rules(), (Lines{"2-->1", "not(1)-->not(2)"}));
    EXPECT_EQ(approx_rules(), (Lines{"not(2)-->not(1)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}));
}

TEST_F(BoundedSupport, InfiniteConfidencesAreWritten) {
    // s = 0: 5/0 to 10/0.
    make_lattice("", {.minsupp = 5, .minconf = 1.0}).get_rules_intra_supp_approx(rest, e1, 0, 5, 10);
    EXPECT_EQ(record_of("1-->2", intra_approx()),
              "1-->2\n5< support <10\ninf< confiance <inf\n---------------------------\n");
}

TEST_F(BoundedSupport, LowerConfidenceOfR412ThatIsNotANumberIs0) {
    // lo = N = 100, hi = s = 50: 0/0 to (2^32 - 50)/50.
    make_lattice("", {.minsupp = 0, .minconf = 0.0}).get_rules_intra_supp_approx(rest, e1, 50, 100, 50);
    EXPECT_EQ(record_of("not(2)-->1", intra_approx()),
              "not(2)-->1\n0< support <4294967246\n0< confiance <1\n---------------------------\n");
}

TEST_F(BoundedSupport, LowerConfidenceOfR412ThatIsNotANumberIsBelowAPositiveMinimum) {
    // 0/0 again, taken as 0.
    make_lattice("", {.minsupp = 0, .minconf = 0.0001}).get_rules_intra_supp_approx(rest, e1, 50, 100, 50);
    EXPECT_EQ(record_of("not(2)-->1", intra_approx()), "");
}

// From the classes to the rules.

using IntraNodeDriver = IntraNodeRules;

TEST_F(IntraNodeDriver, KnownSupportOfTheRestGivesKnownConfidences) {
    // {2 3}, the rest without {1}, is closed: 45 of 60, with 40 transactions outside.
    Lattice& lattice = load("2 3\t45\t 2 3,\n1 2 3\t60\t 1,\n");
    lattice.generer_regles_intra_noeud(node({1, 2, 3}), {1});
    EXPECT_EQ(intra_exact(),
              "2 v 3-->1\nsupport:45\n\n"
              "not(1)-->not(2)not(3)\nsupport:40\n\n");
    // 45/60, 40/55, 15/60, 15/55
    EXPECT_EQ(intra_approx(),
              "1-->2 v 3\nsupport:45\n\nconfiance:0.75\n---------------------------\n"
              "not(2)not(3)-->not(1)\nsupport:40\n\nconfiance:0.727273\n---------------------------\n"
              "1-->not(2)not(3)\nsupport:15\n\nconfiance:0.25\n---------------------------\n"
              "not(2)not(3)-->1\nsupport:15\n\nconfiance:0.272727\n---------------------------\n");
}

TEST_F(IntraNodeDriver, NarrowedBoundsOfTheRestGiveIntervals) {
    // {2 3}, the rest without {1}: at least the 30 of {2}, at most the 55 of {2 3 4}.
    Lattice& lattice = load("2\t30\t 2,\n1 2 3\t60\t 1,\n2 3 4\t55\t 2 3 4,\n");
    lattice.generer_regles_intra_noeud(node({1, 2, 3}), {1});
    EXPECT_EQ(intra_exact(),
              "2 v 3-->1\n30< support <55\n"
              "not(1)-->not(2)not(3)\nsupport:40\n\n");
    // 30/60 to 55/60, 40/70 to 40/45, 5/60 to 30/60, 5/70 to 30/45
    EXPECT_EQ(
        intra_approx(),
        "1-->2 v 3\n30< support <55\n0.5< confiance <0.916667\n---------------------------\n"
        "not(2)not(3)-->not(1)\nsupport:40\n\n0.571429< confiance <0.888889\n---------------------------\n"
        "1-->not(2)not(3)\n5< support <30\n0.0833333< confiance <0.5\n---------------------------\n"
        "not(2)not(3)-->1\n5< support <30\n0.0714286< confiance <0.666667\n---------------------------\n");
}

TEST_F(IntraNodeDriver, BoundsStartAt0AndTheSupportOfTheItemset) {
    // Nothing is known of {2}, the rest, but that {1 2} contains it.
    Lattice& lattice = load("1 2\t60\t 1,\n", {.minsupp = 0, .minconf = 0.0});
    lattice.generer_regles_intra_noeud(node({1, 2}), {1});
    EXPECT_EQ(record_of("2-->1", intra_exact()), "2-->1\n0< support <60\n");
}

TEST_F(IntraNodeDriver, RestOfSupport0IsTakenAsUnknown) {
    // {2} is closed and in no transaction, which looks like an unknown support: 0 to 60.
    Lattice& lattice = load("2\t0\t 2,\n1 2\t60\t 1,\n", {.minsupp = 0, .minconf = 0.0});
    lattice.generer_regles_intra_noeud(node({1, 2}), {1});
    EXPECT_EQ(record_of("2-->1", intra_exact()), "2-->1\n0< support <60\n");
}

TEST_F(IntraNodeDriver, EssentialEqualToItsItemsetLeavesAnEmptyRest) {
    // Between 0 and the 20 of {3}, the least frequent class.
    Lattice& lattice = load("3\t20\t 3,\n1 2\t60\t 1 2,\n");
    lattice.generer_regles_intra_noeud(node({1, 2}), {1, 2});
    EXPECT_EQ(intra_exact(), "not(1)not(2)-->empty_set\nsupport:40\n\n");
    // 40/100 to 40/80, 40/60 to 60/60, 40/100 to 60/80
    EXPECT_EQ(intra_approx(),
              "empty_set-->not(1)not(2)\nsupport:40\n\n0.4< confiance <0.5\n---------------------------\n"
              "1 v 2-->empty_set\n40< support <60\n0.666667< confiance <1\n---------------------------\n"
              "empty_set-->1 v 2\n40< support <60\n0.4< confiance <0.75\n---------------------------\n");
}

TEST_F(IntraNodeDriver, EmptyRestCanHaveAKnownSupport) {
    // The empty essential itemset of {3} says that the empty itemset is as frequent as {3}: 20.
    Lattice& lattice = load("3\t20\t ,\n1 2\t60\t 1 2,\n", {.minsupp = 1, .minconf = 0.5});
    lattice.generer_regles_intra_noeud(node({1, 2}), {1, 2});
    EXPECT_EQ(intra_exact(),
              "empty_set-->1 v 2\nsupport:20\n\n"
              "not(1)not(2)-->empty_set\nsupport:40\n\n");
    // 40/80, 40/60, 40/80; 20/60 is too small.
    EXPECT_EQ(intra_approx(),
              "empty_set-->not(1)not(2)\nsupport:40\n\nconfiance:0.5\n---------------------------\n"
              "1 v 2-->empty_set\nsupport:40\n\nconfiance:0.666667\n---------------------------\n"
              "empty_set-->1 v 2\nsupport:40\n\nconfiance:0.5\n---------------------------\n");
}

TEST_F(IntraNodeDriver, TwoEssentialsThatPartitionTheirItemsetGetTheRulesOfTheFirstOnly) {
    Lattice& lattice = load("1 2 3\t60\t 1, 2 3,\n");
    lattice.generer_regles_intra_noeud_deux_ess(node({1, 2, 3}));
    EXPECT_EQ(intra_exact(),
              "2 v 3-->1\nsupport:60\n\n"
              "1-->2 v 3\nsupport:60\n\n"
              "not(1)-->not(2)not(3)\nsupport:40\n\n"
              "not(2)not(3)-->not(1)\nsupport:40\n\n");
    EXPECT_EQ(intra_approx(), "");
    EXPECT_EQ(run_totals(lattice), (Totals{4, 0, 0}));
}

TEST_F(IntraNodeDriver, PartitioningEssentialHasTheSupportOfItsItemsetWhateverTheClassesSay) {
    // In this damaged file {2 3} has a class of its own, of another support: not looked up.
    Lattice& lattice = load("2 3\t45\t 2 3,\n1 2 3\t60\t 1, 2 3,\n");
    lattice.generer_regles_intra_noeud_deux_ess(node({1, 2, 3}));
    EXPECT_EQ(record_of("2 v 3-->1", intra_exact()), "2 v 3-->1\nsupport:60\n\n");
}

TEST_F(IntraNodeDriver, TwoEssentialsThatDoNotPartitionTheirItemsetGetRulesEach) {
    // {3}, the rest without {1 2}, has 30; {1}, the rest without {2 3}, has 20.
    Lattice& lattice = load("1\t20\t 1,\n3\t30\t 3,\n1 2 3\t60\t 1 2, 2 3,\n");
    lattice.generer_regles_intra_noeud_deux_ess(node({1, 2, 3}));
    EXPECT_EQ(intra_exact(),
              "3-->1 v 2\nsupport:30\n\n"
              "not(1)not(2)-->not(3)\nsupport:40\n\n"
              "1-->2 v 3\nsupport:20\n\n"
              "not(2)not(3)-->not(1)\nsupport:40\n\n");
    // 30/60, 40/70, 30/60, 30/70; then 20/60, 40/80, 40/60, 40/80
    EXPECT_EQ(intra_approx(),
              "1 v 2-->3\nsupport:30\n\nconfiance:0.5\n---------------------------\n"
              "not(3)-->not(1)not(2)\nsupport:40\n\nconfiance:0.571429\n---------------------------\n"
              "1 v 2-->not(3)\nsupport:30\n\nconfiance:0.5\n---------------------------\n"
              "not(3)-->1 v 2\nsupport:30\n\nconfiance:0.428571\n---------------------------\n"
              "2 v 3-->1\nsupport:20\n\nconfiance:0.333333\n---------------------------\n"
              "not(1)-->not(2)not(3)\nsupport:40\n\nconfiance:0.5\n---------------------------\n"
              "2 v 3-->not(1)\nsupport:40\n\nconfiance:0.666667\n---------------------------\n"
              "not(1)-->2 v 3\nsupport:40\n\nconfiance:0.5\n---------------------------\n");
}

TEST_F(IntraNodeDriver, SecondEssentialOfTheSizeOfTheRestNeedNotPartition) {
    // The rests are {3}, which is not {1}, and {2 3}, both of unknown support.
    Lattice& lattice = load("1 2 3\t60\t 1 2, 1,\n");
    lattice.generer_regles_intra_noeud_deux_ess(node({1, 2, 3}));
    EXPECT_EQ(exact_rules(), (Lines{"not(1)not(2)-->not(3)", "not(1)-->not(2)not(3)"}));
}

TEST_F(IntraNodeDriver, EmptyRestAndEmptySecondEssentialPartition) {
    Lattice& lattice = make_lattice("");
    lattice.dci_map[{1}] = {.support = 60, .essentials = {{1}, {}}};
    lattice.Load_Hash_table();
    lattice.generer_regles_intra_noeud_deux_ess(node({1}));
    EXPECT_EQ(intra_exact(),
              "empty_set-->1\nsupport:60\n\n"
              "1-->empty_set\nsupport:60\n\n"
              "not(1)-->empty_set\nsupport:40\n\n"
              "empty_set-->not(1)\nsupport:40\n\n");
    EXPECT_EQ(intra_approx(), "");
}

using IntraNodeWalk = IntraNodeRules;

TEST_F(IntraNodeWalk, NodeWithoutEssentialsHasNoRules) {
    Lattice& lattice = load("1 2\t60\t 1 2,\n", {.minsupp = 0, .minconf = 0.0});
    lattice.generate_intra_node_rules();
    EXPECT_EQ(intra_exact() + intra_approx(), "");
    EXPECT_EQ(nonzero_counters(lattice), CounterCells{});
}

TEST_F(IntraNodeWalk, NodeWithOneEssentialIsPassedOnce) {
    load("1 2\t60\t 1,\n").generate_intra_node_rules();
    EXPECT_EQ(exact_rules(), (Lines{"not(1)-->not(2)"}));
    EXPECT_EQ(approx_rules(), (Lines{"not(2)-->not(1)"}));
}

TEST_F(IntraNodeWalk, NodeWithTwoEssentialsIsTestedForAPartition) {
    load("1 2\t60\t 1, 2,\n").generate_intra_node_rules();
    EXPECT_EQ(exact_rules(), (Lines{"2-->1", "1-->2", "not(1)-->not(2)", "not(2)-->not(1)"}));
}

TEST_F(IntraNodeWalk, NodeWithThreeEssentialsIsPassedOnceForEachInListOrder) {
    // The first two partition {1 2 3}, and are as frequent as it: both have all their rules nevertheless. Of
    // {1}, the rest without {2 3}, nothing is known.
    load("1 2 3\t60\t 1 2, 3, 2 3,\n").generate_intra_node_rules();
    EXPECT_EQ(exact_rules(),
              (Lines{"3-->1 v 2", "1 v 2-->3", "not(1)not(2)-->not(3)", "not(3)-->not(1)not(2)",  //
                     "1 v 2-->3", "3-->1 v 2", "not(3)-->not(1)not(2)", "not(1)not(2)-->not(3)",  //
                     "not(2)not(3)-->not(1)"}));
    EXPECT_EQ(approx_rules(), (Lines{"not(1)-->not(2)not(3)"}));
}

TEST_F(IntraNodeWalk, NodesAreWalkedInTheOrderOfTheirItemsets) {
    // Neither the order of the file nor that of the sizes. The supports of the rests are unknown.
    load("2 4\t60\t 4,\n1 3\t60\t 3,\n1 2 5\t60\t 5,\n").generate_intra_node_rules();
    EXPECT_EQ(exact_rules(), (Lines{"not(5)-->not(1)not(2)", "not(3)-->not(1)", "not(4)-->not(2)"}));
}

}  // namespace
}  // namespace korv
