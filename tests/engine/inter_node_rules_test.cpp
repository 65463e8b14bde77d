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

class InterNodeRules : public test::LatticeFixture {
protected:
    Lines exact_rules() { return rule_lines(inter_exact()); }
    Lines approx_rules() { return rule_lines(inter_approx()); }
};

// Rules where the support of the difference is known. Unless a test says otherwise, the base (f1 or e1) is
// {1}, the difference {2}, and there are 100 transactions. The eight rules, for f1 / e1:
//
//   R132/R122  2-->1             R131/R121  1-->2
//   R231/R221  not(1)-->not(2)   R232/R222  not(2)-->not(1)
//   R331/R321  1-->not(2)        R432/R421  not(2)-->1
//   R431/R422  not(1)-->2        R332/R322  2-->not(1)
const Itemset base = {1};
const Itemset rest = {2};

using InterNodeItemset = InterNodeRules;

// s1 = 50, s2 = 80, r = 40: 10 transactions with an item of both, 20 with none, 40 with one of the base only,
// 30 with one of the difference only.
const std::string all_eight_rules = R"(3-->1 v 2
support:10

confiance:0.25
---------------------------
1 v 2-->3
support:10

confiance:0.2
---------------------------
not(1)not(2)-->not(3)
support:20

confiance:0.4
---------------------------
not(3)-->not(1)not(2)
support:20

confiance:0.333333
---------------------------
1 v 2-->not(3)
support:40

confiance:0.8
---------------------------
not(3)-->1 v 2
support:40

confiance:0.666667
---------------------------
not(1)not(2)-->3
support:30

confiance:0.6
---------------------------
3-->not(1)not(2)
support:30

confiance:0.75
---------------------------
)";

TEST_F(InterNodeItemset, WritesAllEightRulesOfAClosedItemset) {
    Lattice& lattice = make_lattice("", {.minsupp = 0, .minconf = 0.0});
    lattice.get_rules_inter_itemset({3}, 40, {1, 2}, 50, 80, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(), all_eight_rules);
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R132, appro}, 1},
                                                       {{R131, appro}, 1},
                                                       {{R231, appro}, 1},
                                                       {{R232, appro}, 1},
                                                       {{R331, appro}, 1},
                                                       {{R432, appro}, 1},
                                                       {{R431, appro}, 1},
                                                       {{R332, appro}, 1}}));
    EXPECT_EQ(run_totals(lattice), (Totals{0, 8, 0}));
    EXPECT_EQ(intra_exact() + intra_approx(), "");
}

TEST_F(InterNodeItemset, WritesTheSameRulesOfAnEssentialItemset) {
    Lattice& lattice = make_lattice("", {.minsupp = 0, .minconf = 0.0});
    lattice.get_rules_inter_itemset({3}, 40, {1, 2}, 50, 80, false);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(), all_eight_rules);
    // From the fourth rule on counted as those of a closed itemset.
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R122, appro}, 1},
                                                       {{R121, appro}, 1},
                                                       {{R221, appro}, 1},
                                                       {{R232, appro}, 1},
                                                       {{R331, appro}, 1},
                                                       {{R432, appro}, 1},
                                                       {{R431, appro}, 1},
                                                       {{R332, appro}, 1}}));
    EXPECT_EQ(run_totals(lattice), (Totals{0, 8, 0}));
}

TEST_F(InterNodeItemset, EssentialItemsetKeepsItsFormsWhenTheFourthRuleIsTooWeak) {
    // 20/60 is below the minimum.
    Lattice& lattice = make_lattice("", {.minconf = 0.34});
    lattice.get_rules_inter_itemset(rest, 40, base, 50, 80, false);
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R221, appro}, 1},
                                                       {{R321, appro}, 1},
                                                       {{R421, appro}, 1},
                                                       {{R422, appro}, 1},
                                                       {{R322, appro}, 1}}));
}

TEST_F(InterNodeItemset, EssentialItemsetKeepsItsFormsWhenTheFourthRuleIsTooRare) {
    // 20 transactions are too few.
    Lattice& lattice = make_lattice("", {.minsupp = 21});
    lattice.get_rules_inter_itemset(rest, 40, base, 50, 80, false);
    EXPECT_EQ(nonzero_counters(lattice),
              (CounterCells{{{R321, appro}, 1}, {{R421, appro}, 1}, {{R422, appro}, 1}, {{R322, appro}, 1}}));
}

TEST_F(InterNodeItemset, FollowingEssentialItemsetStartsWithItsOwnFormsAgain) {
    Lattice& lattice = make_lattice("");
    lattice.get_rules_inter_itemset(rest, 40, base, 50, 80, false);
    const CounterCells after_first = nonzero_counters(lattice);
    EXPECT_EQ(after_first.count({R321, appro}), 0U);
    // s1 = 70, s2 = N, r = 50: no transaction without an item of f2; 20, 50, 30 in the other groups.
    lattice.get_rules_inter_itemset(rest, 50, base, 70, 100, false);
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R122, appro}, 2},
                                                       {{R121, appro}, 2},
                                                       {{R221, appro}, 1},
                                                       {{R232, appro}, 1},
                                                       {{R331, appro}, 1},
                                                       {{R432, appro}, 1},
                                                       {{R431, appro}, 1},
                                                       {{R332, appro}, 1},
                                                       // 50/70, 50/50, 30/30 and 30/50 of the second
                                                       {{R321, appro}, 1},
                                                       {{R421, exact}, 1},
                                                       {{R422, exact}, 1},
                                                       {{R322, appro}, 1}}));
}

TEST_F(InterNodeItemset, ExactFourthRuleChangesTheFormsTooAndIsCountedAsOfAClosedItemset) {
    // r = s2 = 80: 50 with an item of both, 20 with none, 30 with one of the difference only.
    Lattice& lattice = make_lattice("");
    lattice.get_rules_inter_itemset(rest, 80, base, 50, 80, false);
    // 50/50 and 20/20
    EXPECT_EQ(inter_exact(), "1-->2\nsupport:50\n\nnot(2)-->not(1)\nsupport:20\n\n");
    EXPECT_EQ(approx_rules(), (Lines{"2-->1", "not(1)-->not(2)", "not(1)-->2", "2-->not(1)"}));
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R122, appro}, 1},
                                                       {{R121, exact}, 1},
                                                       {{R221, appro}, 1},
                                                       {{R232, exact}, 1},
                                                       {{R431, appro}, 1},
                                                       {{R332, appro}, 1}}));
    EXPECT_EQ(run_totals(lattice), (Totals{2, 4, 0}));
}

TEST_F(InterNodeItemset, BaseThatImpliesTheDifferenceIsExact) {
    Lattice& lattice = make_lattice("");
    lattice.get_rules_inter_itemset(rest, 80, base, 50, 80, true);
    EXPECT_EQ(record_of("1-->2", inter_exact()), "1-->2\nsupport:50\n\n");
    EXPECT_EQ(nonzero_counters(lattice).at({R131, exact}), 1U);
    EXPECT_EQ(nonzero_counters(lattice).at({R232, exact}), 1U);
}

TEST_F(InterNodeItemset, BaseAndDifferenceThatExcludeEachOtherAreExact) {
    // s1 = 50, r = 30, s2 = 80: 50/50 and 30/30.
    Lattice& lattice = make_lattice("");
    lattice.get_rules_inter_itemset(rest, 30, base, 50, 80, true);
    EXPECT_EQ(inter_exact(), "1-->not(2)\nsupport:50\n\n2-->not(1)\nsupport:30\n\n");
    // 20/50, 20/70, 50/70, 30/50
    EXPECT_EQ(approx_rules(), (Lines{"not(1)-->not(2)", "not(2)-->not(1)", "not(2)-->1", "not(1)-->2"}));
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R231, appro}, 1},
                                                       {{R232, appro}, 1},
                                                       {{R331, exact}, 1},
                                                       {{R432, appro}, 1},
                                                       {{R431, appro}, 1},
                                                       {{R332, exact}, 1}}));
}

TEST_F(InterNodeItemset, EssentialItemsetAndDifferenceThatExcludeEachOtherAreExact) {
    Lattice& lattice = make_lattice("", {.minconf = 0.3});
    lattice.get_rules_inter_itemset(rest, 30, base, 50, 80, false);
    // The fourth rule, 20/70, is not written.
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R221, appro}, 1},
                                                       {{R321, exact}, 1},
                                                       {{R421, appro}, 1},
                                                       {{R422, appro}, 1},
                                                       {{R322, exact}, 1}}));
}

TEST_F(InterNodeItemset, BaseAndDifferenceThatCoverAllTransactionsAreExact) {
    // s1 = 50, r = 60, s2 = N: 40/40 and 50/50; 10 transactions with an item of both.
    Lattice& lattice = make_lattice("");
    lattice.get_rules_inter_itemset(rest, 60, base, 50, 100, true);
    EXPECT_EQ(inter_exact(), "not(2)-->1\nsupport:40\n\nnot(1)-->2\nsupport:50\n\n");
    EXPECT_EQ(approx_rules(), (Lines{"2-->1", "1-->2", "1-->not(2)", "2-->not(1)"}));
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R132, appro}, 1},
                                                       {{R131, appro}, 1},
                                                       {{R331, appro}, 1},
                                                       {{R432, exact}, 1},
                                                       {{R431, exact}, 1},
                                                       {{R332, appro}, 1}}));
    EXPECT_EQ(run_totals(lattice), (Totals{2, 4, 0}));
}

TEST_F(InterNodeItemset, EssentialItemsetAndDifferenceThatCoverAllTransactionsAreExact) {
    Lattice& lattice = make_lattice("");
    lattice.get_rules_inter_itemset(rest, 60, base, 50, 100, false);
    EXPECT_EQ(exact_rules(), (Lines{"not(2)-->1", "not(1)-->2"}));
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R122, appro}, 1},
                                                       {{R121, appro}, 1},
                                                       {{R321, appro}, 1},
                                                       {{R421, exact}, 1},
                                                       {{R422, exact}, 1},
                                                       {{R322, appro}, 1}}));
}

TEST_F(InterNodeItemset, FirstAndThirdRuleOfConfidence1StayApproximative) {
    // s1 = s2 = 80, r = 50: 50/50 and 20/20.
    Lattice& lattice = make_lattice("");
    lattice.get_rules_inter_itemset(rest, 50, base, 80, 80, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(record_of("2-->1", inter_approx()),
              "2-->1\nsupport:50\n\nconfiance:1\n---------------------------\n");
    EXPECT_EQ(record_of("not(1)-->not(2)", inter_approx()),
              "not(1)-->not(2)\nsupport:20\n\nconfiance:1\n---------------------------\n");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R132, appro}, 1},
                                                       {{R131, appro}, 1},
                                                       {{R231, appro}, 1},
                                                       {{R232, appro}, 1},
                                                       {{R331, appro}, 1},
                                                       {{R432, appro}, 1}}));
}

TEST_F(InterNodeItemset, DifferenceInAllTransactionsHasNoRulesFromItsAbsence) {
    // r = s2 = N, s1 = 50: neither the fourth, 0/0, nor the sixth rule.
    make_lattice("", {.minsupp = 0, .minconf = 0.0}).get_rules_inter_itemset(rest, 100, base, 50, 100, true);
    EXPECT_EQ(exact_rules(), (Lines{"1-->2", "not(1)-->2"}));
    EXPECT_EQ(approx_rules(), (Lines{"2-->1", "not(1)-->not(2)", "1-->not(2)", "2-->not(1)"}));
}

TEST_F(InterNodeItemset, NeverDividesByTheTransactionsWithoutTheDifferenceIfThereAreNone) {
    // r = N > s2: 20/0 and 4294967276/0 would be infinite and pass. Without the fourth rule the forms stay.
    Lattice& lattice = make_lattice("");
    lattice.get_rules_inter_itemset(rest, 100, base, 50, 80, false);
    EXPECT_EQ(exact_rules(), Lines{});
    EXPECT_EQ(approx_rules(),
              (Lines{"2-->1", "1-->2", "not(1)-->not(2)", "1-->not(2)", "not(1)-->2", "2-->not(1)"}));
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R122, appro}, 1},
                                                       {{R121, appro}, 1},
                                                       {{R221, appro}, 1},
                                                       {{R321, appro}, 1},
                                                       {{R422, appro}, 1},
                                                       {{R322, appro}, 1}}));
}

TEST_F(InterNodeItemset, ExactnessIsDecidedInDoublePrecision) {
    // s1 = s2 = N = 2^32 - 1, r = 2^32 - 2: 1-->2 holds in 4294967294 of 4294967295, printed as 1.
    Lattice& lattice = make_lattice("", {.minsupp = 2, .transactions = 4294967295U});
    lattice.get_rules_inter_itemset(rest, 4294967294U, base, 4294967295U, 4294967295U, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(record_of("1-->2", inter_approx()),
              "1-->2\nsupport:4294967294\n\nconfiance:1\n---------------------------\n");
}

TEST_F(InterNodeItemset, ConfidencesThatAreNotNumbersAreNotWrittenWithoutTheDifference) {
    // s1 = s2 = 80, r = 0: the first and the last rule are 0/0. 80/80 is exact.
    make_lattice("", {.minsupp = 0, .minconf = 0.0}).get_rules_inter_itemset(rest, 0, base, 80, 80, true);
    EXPECT_EQ(exact_rules(), (Lines{"1-->not(2)"}));
    EXPECT_EQ(approx_rules(),
              (Lines{"1-->2", "not(1)-->not(2)", "not(2)-->not(1)", "not(2)-->1", "not(1)-->2"}));
}

TEST_F(InterNodeItemset, ConfidencesThatAreNotNumbersAreNotWrittenWithoutTheBase) {
    // s1 = 0, r = s2 = 50: the rules from the base are 0/0. 50/50 is exact, twice.
    make_lattice("", {.minsupp = 0, .minconf = 0.0}).get_rules_inter_itemset(rest, 50, base, 0, 50, true);
    EXPECT_EQ(exact_rules(), (Lines{"not(2)-->not(1)", "2-->not(1)"}));
    EXPECT_EQ(approx_rules(), (Lines{"2-->1", "not(1)-->not(2)", "not(2)-->1", "not(1)-->2"}));
}

TEST_F(InterNodeItemset, ConfidencesThatAreNotNumbersAreNotWrittenWithTheBaseInAllTransactions) {
    // s1 = s2 = N, r = 60: the rules from the absence of the base are 0/0. 40/40 is exact.
    make_lattice("", {.minsupp = 0, .minconf = 0.0}).get_rules_inter_itemset(rest, 60, base, 100, 100, true);
    EXPECT_EQ(exact_rules(), (Lines{"not(2)-->1"}));
    EXPECT_EQ(approx_rules(), (Lines{"2-->1", "1-->2", "not(2)-->not(1)", "1-->not(2)", "2-->not(1)"}));
}

TEST_F(InterNodeItemset, InfiniteConfidencesAreApproximative) {
    // s1 = N > s2 = 80: 20/0 and (2^32 - 20)/0.
    Lattice& lattice = make_lattice("", {.minsupp = 1, .minconf = 1e300});
    lattice.get_rules_inter_itemset(rest, 50, base, 100, 80, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(),
              "not(1)-->not(2)\nsupport:20\n\nconfiance:inf\n---------------------------\n"
              "not(1)-->2\nsupport:4294967276\n\nconfiance:inf\n---------------------------\n");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R231, appro}, 1}, {{R431, appro}, 1}}));
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

class InterNodeThresholds : public InterNodeRules, public ::testing::WithParamInterface<ThresholdCase> {};

TEST_P(InterNodeThresholds, DecideOnEachRule) {
    // s1 = 50, s2 = 80, r = 40 as above: supports 10, 20, 40 and 30 in the four groups.
    make_lattice("", {.minsupp = GetParam().minsupp, .minconf = GetParam().minconf})
        .get_rules_inter_itemset(rest, 40, base, 50, 80, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(approx_rules(), GetParam().approx);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(
    MinimumSupport, InterNodeThresholds,
    ::testing::Values(
        ThresholdCase{"EqualToThatOfBoth", 10, 0.0,
                      {"2-->1", "1-->2", "not(1)-->not(2)", "not(2)-->not(1)",
                       "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfBoth", 11, 0.0,
                      {"not(1)-->not(2)", "not(2)-->not(1)",
                       "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"EqualToThatOfNeither", 20, 0.0,
                      {"not(1)-->not(2)", "not(2)-->not(1)",
                       "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfNeither", 21, 0.0,
                      {"1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"EqualToThatOfTheDifferenceOnly", 30, 0.0,
                      {"1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfTheDifferenceOnly", 31, 0.0, {"1-->not(2)", "not(2)-->1"}},
        ThresholdCase{"EqualToThatOfTheBaseOnly", 40, 0.0, {"1-->not(2)", "not(2)-->1"}},
        ThresholdCase{"AboveThatOfTheBaseOnly", 41, 0.0, {}}),
    name_of);

// Confidences in the order of the rules: 10/40, 10/50, 20/50, 20/60, 40/50, 40/60, 30/50, 30/40.
INSTANTIATE_TEST_SUITE_P(
    MinimumConfidence, InterNodeThresholds,
    ::testing::Values(
        ThresholdCase{"EqualToThatOfTheSecond", 1, 0.2,
                      {"2-->1", "1-->2", "not(1)-->not(2)", "not(2)-->not(1)",
                       "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfTheSecond", 1, 0.2000001,
                      {"2-->1", "not(1)-->not(2)", "not(2)-->not(1)",
                       "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"EqualToThatOfTheFirst", 1, 0.25,
                      {"2-->1", "not(1)-->not(2)", "not(2)-->not(1)",
                       "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfTheFirst", 1, 0.2500001,
                      {"not(1)-->not(2)", "not(2)-->not(1)",
                       "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"EqualToThatOfTheFourth", 1, 20.0 / 60.0,
                      {"not(1)-->not(2)", "not(2)-->not(1)",
                       "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfTheFourth", 1, 0.3333334,
                      {"not(1)-->not(2)",
                       "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"EqualToThatOfTheThird", 1, 0.4,
                      {"not(1)-->not(2)",
                       "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfTheThird", 1, 0.4000001,
                      {"1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"EqualToThatOfTheSeventh", 1, 0.6,
                      {"1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfTheSeventh", 1, 0.6000001, {"1-->not(2)", "not(2)-->1", "2-->not(1)"}},
        ThresholdCase{"EqualToThatOfTheSixth", 1, 40.0 / 60.0, {"1-->not(2)", "not(2)-->1", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfTheSixth", 1, 0.6666667, {"1-->not(2)", "2-->not(1)"}},
        ThresholdCase{"EqualToThatOfTheLast", 1, 0.75, {"1-->not(2)", "2-->not(1)"}},
        ThresholdCase{"AboveThatOfTheLast", 1, 0.7500001, {"1-->not(2)"}},
        ThresholdCase{"EqualToThatOfTheFifth", 1, 0.8, {"1-->not(2)"}},
        ThresholdCase{"AboveThatOfTheFifth", 1, 0.8000001, {}}),
    name_of);
// clang-format on

TEST_F(InterNodeItemset, SecondRuleOfAGroupDoesNotNeedTheFirst) {
    // s1 = 50, s2 = 80, r = 70: 40/70 and 40/50, 20/50 and 20/30, 10/50 and 10/30, 30/50 and 30/70.
    make_lattice("", {.minconf = 0.58}).get_rules_inter_itemset(rest, 70, base, 50, 80, true);
    EXPECT_EQ(approx_rules(), (Lines{"1-->2", "not(2)-->not(1)", "not(1)-->2"}));
}

TEST_F(InterNodeItemset, SixthRuleDoesNotNeedTheFifth) {
    // 10/50 and 10/30
    make_lattice("", {.minconf = 0.3}).get_rules_inter_itemset(rest, 70, base, 50, 80, true);
    EXPECT_EQ(record_of("1-->not(2)", inter_approx()), "");
    EXPECT_EQ(record_of("not(2)-->1", inter_approx()),
              "not(2)-->1\nsupport:10\n\nconfiance:0.333333\n---------------------------\n");
}

TEST_F(InterNodeItemset, ExactRulesBelowAMinimumConfidenceAbove1AreNotWritten) {
    make_lattice("", {.minconf = 1.5}).get_rules_inter_itemset(rest, 80, base, 50, 80, true);
    EXPECT_EQ(inter_exact() + inter_approx(), "");
}

/// Supports of which one difference wraps, and the rules that only so pass a minimum support of 100.
struct WrapCase {
    std::string name;
    Count s1;
    Count s2;
    Count r;
    Count transactions;
    std::string approx;
};

void PrintTo(const WrapCase& wrap, std::ostream* out) {
    *out << wrap.name;
}

class InterNodeWrap : public InterNodeRules, public ::testing::WithParamInterface<WrapCase> {};

TEST_P(InterNodeWrap, TransactionsWrap) {
    const WrapCase& wrap = GetParam();
    make_lattice("", {.minsupp = 100, .transactions = wrap.transactions})
        .get_rules_inter_itemset(rest, wrap.r, base, wrap.s1, wrap.s2, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(), wrap.approx);
}

// Each difference is -10, which is 2^32 - 10.
INSTANTIATE_TEST_SUITE_P(
    All, InterNodeWrap,
    ::testing::Values(
        // over 50 and 20
        WrapCase{"WithBoth", 20, 80, 50, 100,
                 "2-->1\nsupport:4294967286\n\nconfiance:8.58993e+07\n---------------------------\n"
                 "1-->2\nsupport:4294967286\n\nconfiance:2.14748e+08\n---------------------------\n"},
        // over 30 and 20
        WrapCase{
            "WithNeither", 40, 80, 50, 70,
            "not(1)-->not(2)\nsupport:4294967286\n\nconfiance:1.43166e+08\n---------------------------\n"
            "not(2)-->not(1)\nsupport:4294967286\n\nconfiance:2.14748e+08\n---------------------------\n"},
        // over 40 and 10
        WrapCase{"WithTheBaseOnly", 40, 80, 90, 100,
                 "1-->not(2)\nsupport:4294967286\n\nconfiance:1.07374e+08\n---------------------------\n"
                 "not(2)-->1\nsupport:4294967286\n\nconfiance:4.29497e+08\n---------------------------\n"},
        // over 10 and 50
        WrapCase{"WithTheDifferenceOnly", 90, 80, 50, 100,
                 "not(1)-->2\nsupport:4294967286\n\nconfiance:4.29497e+08\n---------------------------\n"
                 "2-->not(1)\nsupport:4294967286\n\nconfiance:8.58993e+07\n---------------------------\n"}),
    [](const auto& instance) { return instance.param.name; });

TEST_F(InterNodeItemset, DenominatorsWrap) {
    // N = 50, s1 = 60, r = 70, s2 = 90: 30/(2^32 - 10) and 20/(2^32 - 20); 40 with an item of both.
    make_lattice("", {.minsupp = 20, .transactions = 50})
        .get_rules_inter_itemset(rest, 70, base, 60, 90, true);
    EXPECT_EQ(record_of("not(2)-->1", inter_approx()),
              "not(2)-->1\nsupport:20\n\nconfiance:4.65661e-09\n---------------------------\n");
    EXPECT_EQ(record_of("not(1)-->2", inter_approx()),
              "not(1)-->2\nsupport:30\n\nconfiance:6.98492e-09\n---------------------------\n");
}

// From the lattice to the rules.

using InterNodeDriver = InterNodeRules;

TEST_F(InterNodeDriver, KnownSupportOfTheDifferenceGivesKnownConfidences) {
    // {2}, the difference to {1}, is closed.
    Lattice& lattice = load("1\t50\t 1,\n2\t40\t 2,\n1 2\t80\t 1 2,\n", {.minsupp = 30});
    lattice.generer_regles_inter_IFD(node({1, 2}), node({1}));
    EXPECT_EQ(inter_exact(), "");
    // 40/50, 40/60, 30/50, 30/40
    EXPECT_EQ(inter_approx(),
              "1-->not(2)\nsupport:40\n\nconfiance:0.8\n---------------------------\n"
              "not(2)-->1\nsupport:40\n\nconfiance:0.666667\n---------------------------\n"
              "not(1)-->2\nsupport:30\n\nconfiance:0.6\n---------------------------\n"
              "2-->not(1)\nsupport:30\n\nconfiance:0.75\n---------------------------\n");
    EXPECT_EQ(nonzero_counters(lattice),
              (CounterCells{{{R331, appro}, 1}, {{R432, appro}, 1}, {{R431, appro}, 1}, {{R332, appro}, 1}}));
}

TEST_F(InterNodeDriver, BoundsOfTheDifferenceStartAtTheRiseAndTheSupportOfTheLargerItemset) {
    // Of {3} nothing is known but that it has the 30 transactions that {1 2 3} has more than {1 2}.
    Lattice& lattice = load("1 2\t50\t 1 2,\n1 2 3\t80\t 1 2 3,\n");
    lattice.generer_regles_inter_IFD(node({1, 2, 3}), node({1, 2}));
    EXPECT_EQ(inter_exact(), "");
    // 20/50, 20/70 to 20/20, 30/50, 30/80 to 30/30
    EXPECT_EQ(inter_approx(),
              "not(1)not(2)-->not(3)\nsupport:20\n\nconfiance:0.4\n---------------------------\n"
              "not(3)-->not(1)not(2)\nsupport:20\n\n0.285714< confiance <1\n---------------------------\n"
              "not(1)not(2)-->3\nsupport:30\n\nconfiance:0.6\n---------------------------\n"
              "3-->not(1)not(2)\nsupport:30\n\n0.375< confiance <1\n---------------------------\n");
    EXPECT_EQ(nonzero_counters(lattice),
              (CounterCells{{{R231, appro}, 1}, {{R232, apped}, 1}, {{R431, appro}, 1}, {{R332, apped}, 1}}));
}

TEST_F(InterNodeDriver, NarrowedBoundsOfTheDifferenceGiveIntervals) {
    // {2 3}: at least the 35 of {2}, at most the 64 of {2 3 4}; the rise from {1} to {1 2 3} is 30.
    Lattice& lattice =
        load("1\t50\t 1,\n2\t35\t 2,\n1 2 3\t80\t 1 2 3,\n2 3 4\t64\t 2 3 4,\n", {.minsupp = 30});
    lattice.generer_regles_inter_IFD(node({1, 2, 3}), node({1}));
    // 30/50, 30/64 to 30/35
    EXPECT_EQ(inter_approx(),
              "not(1)-->2 v 3\nsupport:30\n\nconfiance:0.6\n---------------------------\n"
              "2 v 3-->not(1)\nsupport:30\n\n0.46875< confiance <0.857143\n---------------------------\n");
}

TEST_F(InterNodeDriver, DifferenceOfSupport0IsTakenAsUnknown) {
    // {2} is closed and in no transaction: the bounds stay those of the start, 30 and 80.
    Lattice& lattice = load("1\t50\t 1,\n2\t0\t 2,\n1 2\t80\t 1 2,\n", {.minsupp = 30});
    lattice.generer_regles_inter_IFD(node({1, 2}), node({1}));
    EXPECT_EQ(record_of("2-->not(1)", inter_approx()),
              "2-->not(1)\nsupport:30\n\n0.375< confiance <1\n---------------------------\n");
}

TEST_F(InterNodeDriver, SuccessorMoreFrequentThanItsItemsetWrapsTheLowerBound) {
    // 30 - 50 is 2^32 - 20, and the upper bound of {2} is 30: none with an item of both at least, 70 with
    // none, 0 to 50 with an item of the base only.
    Lattice& lattice = load("1\t50\t 1,\n1 2\t30\t 1 2,\n");
    lattice.generer_regles_inter_IFD(node({1, 2}), node({1}));
    EXPECT_EQ(inter_exact(), "");
    // 70/50, 70/120 to 70/70, (2^32 - 20)/50, (2^32 - 20)/30 to (2^32 - 20)/(2^32 - 20)
    EXPECT_EQ(inter_approx(),
              "not(1)-->not(2)\nsupport:70\n\nconfiance:1.4\n---------------------------\n"
              "not(2)-->not(1)\nsupport:70\n\n0.583333< confiance <1\n---------------------------\n"
              "not(1)-->2\nsupport:4294967276\n\nconfiance:8.58993e+07\n---------------------------\n"
              "2-->not(1)\nsupport:4294967276\n\n1.43166e+08< confiance <1\n---------------------------\n");
}

TEST_F(InterNodeDriver, EssentialsOfTheSuccessorGetRulesInListOrder) {
    // {2 3} and {1 3}, the differences to {1} and {2}: at least 50 by their essential itemset, at most 80.
    Lattice& lattice = load("1 2\t50\t 1, 2,\n1 2 3\t80\t 1 2 3,\n");
    lattice.generer_regles_itemset_ess(node({1, 2, 3}), node({1, 2}));
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(approx_rules(), (Lines{"2 v 3-->1", "1-->2 v 3", "not(1)-->not(2)not(3)",
                                     "not(2)not(3)-->not(1)", "not(1)-->2 v 3", "2 v 3-->not(1)",  //
                                     "1 v 3-->2", "2-->1 v 3", "not(2)-->not(1)not(3)",
                                     "not(1)not(3)-->not(2)", "not(2)-->1 v 3", "1 v 3-->not(2)"}));
    EXPECT_EQ(record_of("1-->2 v 3", inter_approx()),
              "1-->2 v 3\n20< support <50\n0.4< confiance <1\n---------------------------\n");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R122, apped}, 2},
                                                       {{R121, apped}, 2},
                                                       {{R221, appro}, 2},
                                                       {{R222, apped}, 2},
                                                       {{R422, appro}, 2},
                                                       {{R322, apped}, 2}}));
}

TEST_F(InterNodeDriver, EssentialWithAKnownDifferenceGetsKnownConfidences) {
    // {2 3}, the difference to {1}, is closed.
    Lattice& lattice =
        load("1 2\t50\t 1,\n2 3\t40\t 2 3,\n1 2 3\t80\t 1 2 3,\n", {.minsupp = 30, .minconf = 0.7});
    lattice.generer_regles_itemset_ess(node({1, 2, 3}), node({1, 2}));
    // 40/50, 30/40
    EXPECT_EQ(inter_approx(),
              "1-->not(2)not(3)\nsupport:40\n\nconfiance:0.8\n---------------------------\n"
              "2 v 3-->not(1)\nsupport:30\n\nconfiance:0.75\n---------------------------\n");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R321, appro}, 1}, {{R322, appro}, 1}}));
}

TEST_F(InterNodeDriver, EssentialsOfTheLargerItemsetGetNoInterNodeRules) {
    Lattice& lattice = load("1\t50\t 1,\n1 2\t80\t 2,\n", {.minsupp = 0, .minconf = 0.0});
    lattice.generer_regles_itemset_ess(node({1, 2}), node({1}));
    EXPECT_EQ(inter_exact() + inter_approx(), "");
}

TEST_F(InterNodeDriver, TwoSuccessorsThatPartitionAreOnePair) {
    // Neither has essential itemsets. 10 with an item of both, 40 with none, 20 with {1}, 30 with {2} only.
    Lattice& lattice = build("1\t30\t 1,\n2\t40\t 2,\n1 2\t60\t 1 2,\n");
    lattice.generer_regles_inter_IFD_deux_succ(*lattice.find_dci_node(node({1, 2})));
    EXPECT_EQ(inter_exact(), "");
    // 10/40, 10/30, 40/70, 40/60, 20/30, 20/60, 30/70, 30/40
    EXPECT_EQ(inter_approx(), R"(2-->1
support:10

confiance:0.25
---------------------------
1-->2
support:10

confiance:0.333333
---------------------------
not(1)-->not(2)
support:40

confiance:0.571429
---------------------------
not(2)-->not(1)
support:40

confiance:0.666667
---------------------------
1-->not(2)
support:20

confiance:0.666667
---------------------------
not(2)-->1
support:20

confiance:0.333333
---------------------------
not(1)-->2
support:30

confiance:0.428571
---------------------------
2-->not(1)
support:30

confiance:0.75
---------------------------
)");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R132, appro}, 1},
                                                       {{R131, appro}, 1},
                                                       {{R231, appro}, 1},
                                                       {{R232, appro}, 1},
                                                       {{R331, appro}, 1},
                                                       {{R432, appro}, 1},
                                                       {{R431, appro}, 1},
                                                       {{R332, appro}, 1}}));
}

TEST_F(InterNodeDriver, TwoSuccessorsThatPartitionStillGetTheRulesOfTheirEssentials) {
    // {2 3 4}: 40 to 60, {1 2 4}: 30 to 60; both leave no transaction for sure with the essential only.
    Lattice& lattice = build("1 2\t30\t 1,\n3 4\t40\t 3,\n1 2 3 4\t60\t 1 2 3 4,\n");
    lattice.generer_regles_inter_IFD_deux_succ(*lattice.find_dci_node(node({1, 2, 3, 4})));
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(approx_rules(), (Lines{"3 v 4-->1 v 2",
                                     "1 v 2-->3 v 4",
                                     "not(1)not(2)-->not(3)not(4)",
                                     "not(3)not(4)-->not(1)not(2)",
                                     "1 v 2-->not(3)not(4)",
                                     "not(3)not(4)-->1 v 2",
                                     "not(1)not(2)-->3 v 4",
                                     "3 v 4-->not(1)not(2)",  //
                                     "2 v 3 v 4-->1",
                                     "1-->2 v 3 v 4",
                                     "not(1)-->not(2)not(3)not(4)",
                                     "not(2)not(3)not(4)-->not(1)",
                                     "not(1)-->2 v 3 v 4",
                                     "2 v 3 v 4-->not(1)",  //
                                     "1 v 2 v 4-->3",
                                     "3-->1 v 2 v 4",
                                     "not(3)-->not(1)not(2)not(4)",
                                     "not(1)not(2)not(4)-->not(3)",
                                     "not(3)-->1 v 2 v 4",
                                     "1 v 2 v 4-->not(3)"}));
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R132, appro}, 1},
                                                       {{R131, appro}, 1},
                                                       {{R231, appro}, 1},
                                                       {{R232, appro}, 1},
                                                       {{R331, appro}, 1},
                                                       {{R432, appro}, 1},
                                                       {{R431, appro}, 1},
                                                       {{R332, appro}, 1},
                                                       {{R122, apped}, 2},
                                                       {{R121, apped}, 2},
                                                       {{R221, appro}, 2},
                                                       {{R222, apped}, 2},
                                                       {{R422, appro}, 2},
                                                       {{R322, apped}, 2}}));
}

TEST_F(InterNodeDriver, PartitioningSuccessorHasItsOwnSupportWhateverTheClassesSay) {
    // In this damaged file {3} alone is as frequent as {1 2 3 4}, 60: not looked at for {3 4}, which has 40.
    Lattice& lattice =
        build("1 2\t30\t 1 2,\n3\t60\t 3,\n3 4\t40\t 3 4,\n1 2 3 4\t60\t 1 2 3 4,\n", {.minsupp = 30});
    lattice.generer_regles_inter_IFD_deux_succ(*lattice.find_dci_node(node({1, 2, 3, 4})));
    EXPECT_EQ(record_of("3 v 4-->not(1)not(2)", inter_approx()),
              "3 v 4-->not(1)not(2)\nsupport:30\n\nconfiance:0.75\n---------------------------\n");
}

TEST_F(InterNodeDriver, PartitioningSuccessorOfSupport0IsKnownToHaveIt) {
    // Not looked up, so 0 is no unknown support: 30/30 exact; 70/70, 70/100 and 30/100.
    Lattice& lattice = build("1\t30\t 1,\n2\t0\t 2,\n1 2\t30\t 1 2,\n");
    lattice.generer_regles_inter_IFD_deux_succ(*lattice.find_dci_node(node({1, 2})));
    EXPECT_EQ(inter_exact(), "1-->not(2)\nsupport:30\n\n");
    EXPECT_EQ(inter_approx(),
              "not(1)-->not(2)\nsupport:70\n\nconfiance:1\n---------------------------\n"
              "not(2)-->not(1)\nsupport:70\n\nconfiance:0.7\n---------------------------\n"
              "not(2)-->1\nsupport:30\n\nconfiance:0.3\n---------------------------\n");
}

TEST_F(InterNodeDriver, TwoSuccessorsThatOverlapGetFullTreatmentOneAfterTheOther) {
    // The differences {3} and {2 3} have 60 transactions, {1} and {1 2} have 50. At 30/50 there are B-->D and
    // not(B)-->D for the bases {1 2} and {1}, D-->B and not(D)-->B for the bases {2 3} and {3}.
    Lattice& lattice =
        build("1 2\t50\t 1,\n2 3\t60\t 3,\n1 2 3\t80\t 1 2 3,\n", {.minsupp = 30, .minconf = 0.55});
    lattice.generer_regles_inter_IFD_deux_succ(*lattice.find_dci_node(node({1, 2, 3})));
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(approx_rules(), (Lines{"1 v 2-->3", "not(1)not(2)-->3",  //
                                     "1-->2 v 3", "not(1)-->2 v 3",    //
                                     "1-->2 v 3", "not(1)-->2 v 3",    //
                                     "1 v 2-->3", "not(1)not(2)-->3"}));
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R131, appro}, 1},
                                                       {{R431, appro}, 1},
                                                       {{R121, appro}, 1},
                                                       {{R422, appro}, 1},
                                                       {{R132, appro}, 1},
                                                       {{R432, appro}, 1},
                                                       {{R122, appro}, 1},
                                                       {{R421, appro}, 1}}));
}

TEST_F(InterNodeDriver, TwoDisjointSuccessorsThatLeaveAnItemGetFullTreatment) {
    // {3} belongs to neither: two pairs, of which only not(f1)-->f2-f1 is frequent enough.
    Lattice& lattice = build("1\t30\t 1,\n2\t30\t 2,\n1 2 3\t80\t 1 2 3,\n", {.minsupp = 50, .minconf = 0.7});
    lattice.generer_regles_inter_IFD_deux_succ(*lattice.find_dci_node(node({1, 2, 3})));
    EXPECT_EQ(approx_rules(), (Lines{"not(1)-->2 v 3", "not(2)-->1 v 3"}));
}

using InterNodeWalk = InterNodeRules;

TEST_F(InterNodeWalk, EntriesWithoutSuccessorsHaveNoRules) {
    Lattice& lattice = build("1 2\t30\t 1, 2,\n3\t40\t 3,\n", {.minsupp = 0, .minconf = 0.0});
    lattice.generate_inter_node_rules();
    EXPECT_EQ(inter_exact() + inter_approx(), "");
    EXPECT_EQ(nonzero_counters(lattice), CounterCells{});
}

TEST_F(InterNodeWalk, OneSuccessorIsPairedBeforeItsEssentials) {
    Lattice& lattice = build("1 2\t50\t 1, 2,\n1 2 3\t80\t 1 2 3,\n");
    lattice.generate_inter_node_rules();
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(approx_rules(), (Lines{"not(1)not(2)-->not(3)", "not(3)-->not(1)not(2)", "not(1)not(2)-->3",
                                     "3-->not(1)not(2)",  //
                                     "2 v 3-->1", "1-->2 v 3", "not(1)-->not(2)not(3)",
                                     "not(2)not(3)-->not(1)", "not(1)-->2 v 3", "2 v 3-->not(1)",  //
                                     "1 v 3-->2", "2-->1 v 3", "not(2)-->not(1)not(3)",
                                     "not(1)not(3)-->not(2)", "not(2)-->1 v 3", "1 v 3-->not(2)"}));
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R231, appro}, 1},
                                                       {{R232, apped}, 1},
                                                       {{R431, appro}, 1},
                                                       {{R332, apped}, 1},
                                                       {{R122, apped}, 2},
                                                       {{R121, apped}, 2},
                                                       {{R221, appro}, 2},
                                                       {{R222, apped}, 2},
                                                       {{R422, appro}, 2},
                                                       {{R322, apped}, 2}}));
}

TEST_F(InterNodeWalk, TwoSuccessorsAreTestedForAPartition) {
    build("1\t30\t 1,\n2\t40\t 2,\n1 2\t60\t 1 2,\n").generate_inter_node_rules();
    EXPECT_EQ(approx_rules(), (Lines{"2-->1", "1-->2", "not(1)-->not(2)", "not(2)-->not(1)", "1-->not(2)",
                                     "not(2)-->1", "not(1)-->2", "2-->not(1)"}));
}

TEST_F(InterNodeWalk, ThreeSuccessorsGetFullTreatmentInListOrder) {
    // With 50 transactions only the last group is frequent enough, and only not(f1)-->f2-f1, 50/70, reaches
    // 0.7.
    build("1 2\t30\t 1,\n3 4\t30\t 3,\n5 6\t30\t 5,\n1 2 3 4 5 6\t80\t 1 2 3 4 5 6,\n",
          {.minsupp = 50, .minconf = 0.7})
        .generate_inter_node_rules();
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(approx_rules(), (Lines{"not(1)not(2)-->3 v 4 v 5 v 6", "not(1)-->2 v 3 v 4 v 5 v 6",  //
                                     "not(3)not(4)-->1 v 2 v 5 v 6", "not(3)-->1 v 2 v 4 v 5 v 6",  //
                                     "not(5)not(6)-->1 v 2 v 3 v 4", "not(5)-->1 v 2 v 3 v 4 v 6"}));
}

TEST_F(InterNodeWalk, ThreeSuccessorsAreNotTestedForAPartition) {
    // {1 2} and {3 4} partition {1 2 3 4}, and both have their rules: 30 of 50 in the last two groups. {1 4},
    // the difference to {2 3}, has between 30 and 80.
    build("1 2\t50\t 1 2,\n2 3\t50\t 2 3,\n3 4\t50\t 3 4,\n1 2 3 4\t80\t 1 2 3 4,\n",
          {.minsupp = 30, .minconf = 0.6})
        .generate_inter_node_rules();
    EXPECT_EQ(approx_rules(), (Lines{"1 v 2-->not(3)not(4)", "not(3)not(4)-->1 v 2", "not(1)not(2)-->3 v 4",
                                     "3 v 4-->not(1)not(2)",  //
                                     "not(2)not(3)-->1 v 4",  //
                                     "3 v 4-->not(1)not(2)", "not(1)not(2)-->3 v 4", "not(3)not(4)-->1 v 2",
                                     "1 v 2-->not(3)not(4)"}));
}

TEST_F(InterNodeWalk, EntriesAreWalkedByCardinality) {
    // {1 2 3} comes first in the file and among the itemsets, but is larger than {4 5}.
    build("1 2 3\t80\t 1 2 3,\n1\t30\t 1,\n4\t30\t 4,\n4 5\t80\t 4 5,\n", {.minsupp = 50, .minconf = 0.7})
        .generate_inter_node_rules();
    EXPECT_EQ(approx_rules(), (Lines{"not(4)-->5", "not(1)-->2 v 3"}));
}

}  // namespace
}  // namespace korv
