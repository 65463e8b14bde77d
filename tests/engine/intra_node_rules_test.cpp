#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "engine/rule_makers.h"
#include "support/collected_rules.h"
#include "support/rule_cases.h"

namespace korv {
namespace {

using test::infinity;
using test::name_of_case;
using test::rows_of;
using test::RuleCase;
using test::ThresholdCase;
using test::wrapped;
using enum Form;
using enum Kind;

using Rules = std::vector<Rule>;

// A row of a table of rules is: form as printed, form as counted, kind, support, confidence.

/// With N transactions, s of them with an item of f1, and r with one of f1-e1.
RuleCase known_case(std::string name, Count s, Count r, RuleSettings settings, Rules rules) {
    return {std::move(name), s, s, {r, r}, settings, std::move(rules)};
}

/// The same, r from lo to hi.
RuleCase bounded_case(std::string name, Count s, Count lo, Count hi, RuleSettings settings, Rules rules) {
    return {std::move(name), s, s, {lo, hi}, settings, std::move(rules)};
}

Rules rules_of_known(const RuleCase& each) {
    return test::rules_by(get_rules_intra_node, PairKind::essential_and_rest, each, true);
}

Rules rules_of_bounded(const RuleCase& each) {
    return test::rules_by(get_rules_intra_supp_approx, PairKind::essential_and_rest, each, false);
}

// The support of the difference is known.

// r = 60, s = 75: 25 transactions without an item of f1, 15 with one of e1 only.
const RuleCase all_known = known_case("AllEightRules", 75, 60, {0, 0.0, 100},
                                      {
                                          {R112, R112, exact, known(60U), {}},
                                          {R111, R111, appro, known(60U), known(60.0 / 75)},
                                          {R211, R211, exact, known(25U), {}},
                                          // An approximative R212 is counted as an R111.
                                          {R212, R111, appro, known(25U), known(25.0 / 40)},
                                          {R311, R311, appro, known(15U), known(15.0 / 75)},
                                          {R412, R412, appro, known(15U), known(15.0 / 40)},
                                          {R411, R411, appro, known(0U), known(0.0)},
                                          {R312, R312, appro, known(0U), known(0.0)},
                                      });

class IntraNodeKnownThresholds : public ::testing::TestWithParam<ThresholdCase> {};

TEST_P(IntraNodeKnownThresholds, DecideOnEachRule) {
    RuleCase each = all_known;
    each.settings = {GetParam().minsupp, GetParam().minconf, 100};
    EXPECT_EQ(rules_of_known(each), rows_of(GetParam().forms, all_known.rules));
}

INSTANTIATE_TEST_SUITE_P(MinimumSupport, IntraNodeKnownThresholds,
                         ::testing::ValuesIn(std::vector<ThresholdCase>{
                             {"EqualToThatOfR311AndR412", 15, 0.0, {R112, R111, R211, R212, R311, R412}},
                             {"AboveThatOfR311AndR412", 16, 0.0, {R112, R111, R211, R212}},
                             {"EqualToThatOfR211AndR212", 25, 0.0, {R112, R111, R211, R212}},
                             {"AboveThatOfR211AndR212", 26, 0.0, {R112, R111}},
                             {"EqualToThatOfR112AndR111", 60, 0.0, {R112, R111}},
                             {"AboveThatOfR112AndR111", 61, 0.0, {}},
                         }),
                         name_of_case);

// R112 and R211 have a confidence of 1 and are not tested.
INSTANTIATE_TEST_SUITE_P(MinimumConfidence, IntraNodeKnownThresholds,
                         ::testing::ValuesIn(std::vector<ThresholdCase>{
                             {"EqualToThatOfR311", 1, 0.2, {R112, R111, R211, R212, R311, R412}},
                             {"AboveThatOfR311", 1, 0.2000001, {R112, R111, R211, R212, R412}},
                             {"EqualToThatOfR412", 1, 0.375, {R112, R111, R211, R212, R412}},
                             {"AboveThatOfR412", 1, 0.3750001, {R112, R111, R211, R212}},
                             {"EqualToThatOfR212", 1, 0.625, {R112, R111, R211, R212}},
                             {"AboveThatOfR212", 1, 0.6250001, {R112, R111, R211}},
                             {"EqualToThatOfR111", 1, 0.8, {R112, R111, R211}},
                             {"AboveThatOfR111", 1, 0.8000001, {R112, R211}},
                             {"AboveOne", 1, 1.5, {R112, R211}},
                         }),
                         name_of_case);

// R411 and R312, of support and confidence 0.
const std::vector<ThresholdCase> thresholds_of_zero_support_pair = {
    {"Are0And0", 0, 0.0, {R112, R111, R211, R212, R311, R412, R411, R312}},
    {"HaveAMinimumSupportAbove0", 1, 0.0, {R112, R111, R211, R212, R311, R412}},
    {"HaveAMinimumConfidenceAbove0", 0, 0.0001, {R112, R111, R211, R212, R311, R412}},
    {"HaveAMinimumConfidenceBelow0", 0, -0.5, {R112, R111, R211, R212, R311, R412}},
};
INSTANTIATE_TEST_SUITE_P(ZeroSupportPair, IntraNodeKnownThresholds,
                         ::testing::ValuesIn(thresholds_of_zero_support_pair), name_of_case);

class IntraNodeKnownSupport : public ::testing::TestWithParam<RuleCase> {};

TEST_P(IntraNodeKnownSupport, YieldsTheRules) {
    EXPECT_EQ(rules_of_known(GetParam()), GetParam().rules);
}

INSTANTIATE_TEST_SUITE_P(
    All, IntraNodeKnownSupport,
    ::testing::Values(
        all_known,
        known_case("RestTooRareLeavesOutR112AndR111Only", 30, 10, {20, 0.0, 100},
                   {
                       {R211, R211, exact, known(70U), {}},
                       {R212, R111, appro, known(70U), known(70.0 / 90)},
                       {R311, R311, appro, known(20U), known(20.0 / 30)},
                       {R412, R412, appro, known(20U), known(20.0 / 90)},
                   }),
        known_case("RestAsFrequentAsTheItemsetIsExactFourTimes", 60, 60, {1, 0.0, 100},
                   {
                       {R112, R112, exact, known(60U), {}},
                       {R111, R111, exact, known(60U), {}},
                       {R211, R211, exact, known(40U), {}},
                       // An exact R212 is counted as what it is.
                       {R212, R212, exact, known(40U), {}},
                   }),
        known_case("RestAsFrequentAsTheItemsetHasRulesOfSupport0AtMinimaOf0", 60, 60, {0, 0.0, 100},
                   {
                       {R112, R112, exact, known(60U), {}},
                       {R111, R111, exact, known(60U), {}},
                       {R211, R211, exact, known(40U), {}},
                       {R212, R212, exact, known(40U), {}},
                       {R311, R311, appro, known(0U), known(0.0)},
                       {R412, R412, appro, known(0U), known(0.0)},
                       {R411, R411, appro, known(0U), known(0.0)},
                       {R312, R312, appro, known(0U), known(0.0)},
                   }),
        known_case("RulesOfConfidence0NeedAMinimumConfidenceOf0", 60, 60, {0, 0.0001, 100},
                   {
                       {R112, R112, exact, known(60U), {}},
                       {R111, R111, exact, known(60U), {}},
                       {R211, R211, exact, known(40U), {}},
                       {R212, R212, exact, known(40U), {}},
                   }),
        known_case("RestInAllTransactionsHasNoRulesFromItsAbsence", 100, 100, {0, 0.0, 100},
                   {
                       {R112, R112, exact, known(100U), {}},
                       {R111, R111, exact, known(100U), {}},
                       {R211, R211, exact, known(0U), {}},
                       {R311, R311, appro, known(0U), known(0.0)},
                       {R411, R411, appro, known(0U), known(0.0)},
                       {R312, R312, appro, known(0U), known(0.0)},
                   }),
        // 20/0 and (2^32 - 20)/0 would be infinite and pass.
        known_case("NeverDividesByTheTransactionsWithoutTheRestIfThereAreNone", 80, 100, {1, 0.0, 100},
                   {
                       {R112, R112, exact, known(100U), {}},
                       {R111, R111, appro, known(100U), known(100.0 / 80)},
                       {R211, R211, exact, known(20U), {}},
                       {R311, R311, appro, known(wrapped(20)), known(4294967276.0 / 80)},
                   }),
        known_case("R412OfConfidence1IsExact", 100, 60, {1, 0.0, 100},
                   {
                       {R112, R112, exact, known(60U), {}},
                       {R111, R111, appro, known(60U), known(0.6)},
                       {R311, R311, appro, known(40U), known(0.4)},
                       {R412, R412, exact, known(40U), {}},
                   }),
        known_case("R311OfConfidence1StaysApproximative", 80, 0, {1, 0.0, 100},
                   {
                       {R211, R211, exact, known(20U), {}},
                       {R212, R111, appro, known(20U), known(0.2)},
                       {R311, R311, appro, known(80U), known(1.0)},
                       {R412, R412, appro, known(80U), known(0.8)},
                   }),
        known_case("ExactnessIsDecidedInDoublePrecision", 4294967295U, 4294967294U, {2, 0.0, 4294967295U},
                   {
                       {R112, R112, exact, known(4294967294U), {}},
                       {R111, R111, appro, known(4294967294U), known(4294967294.0 / 4294967295.0)},
                   }),
        // R111 and R311 are 0/0.
        known_case("ConfidencesThatAreNotNumbersAreDropped", 0, 0, {0, 0.0, 100},
                   {
                       {R112, R112, exact, known(0U), {}},
                       {R211, R211, exact, known(100U), {}},
                       {R212, R212, exact, known(100U), {}},
                       {R412, R412, appro, known(0U), known(0.0)},
                       {R411, R411, appro, known(0U), known(0.0)},
                       {R312, R312, appro, known(0U), known(0.0)},
                   }),
        known_case("ConfidencesOverASupportOf0AreInfinite", 0, 5, {1, 0.0, 100},
                   {
                       {R112, R112, exact, known(5U), {}},
                       {R111, R111, appro, known(5U), known(infinity)},
                       {R211, R211, exact, known(100U), {}},
                       {R212, R111, appro, known(100U), known(100.0 / 95)},
                       {R311, R311, appro, known(wrapped(5)), known(infinity)},
                       {R412, R412, appro, known(wrapped(5)), known(4294967291.0 / 95)},
                   }),
        known_case("TransactionsWithoutTheItemsetWrap", 12, 5, {100, 0.0, 10},
                   {
                       {R211, R211, exact, known(wrapped(2)), {}},
                       {R212, R111, appro, known(wrapped(2)), known(4294967294.0 / 5)},
                   }),
        known_case("TransactionsWithoutTheRestWrap", 8, 12, {2, 0.0, 10},
                   {
                       {R112, R112, exact, known(12U), {}},
                       {R111, R111, appro, known(12U), known(1.5)},
                       {R211, R211, exact, known(2U), {}},
                       {R212, R111, appro, known(2U), known(2 / 4294967294.0)},
                       {R311, R311, appro, known(wrapped(4)), known(4294967292.0 / 8)},
                       {R412, R412, appro, known(wrapped(4)), known(4294967292.0 / 4294967294.0)},
                   }),
        known_case("TransactionsWithTheEssentialOnlyWrap", 80, 90, {100, 0.0, 100},
                   {
                       {R311, R311, appro, known(wrapped(10)), known(4294967286.0 / 80)},
                       {R412, R412, appro, known(wrapped(10)), known(4294967286.0 / 10)},
                   })),
    name_of_case);

// The support of the difference is only known within bounds.

// s = 75, r from 40 to 60: 25 transactions without an item of f1, 15 to 35 with one of e1 only.
const RuleCase all_bounded =
    bounded_case("AllEightRules", 75, 40, 60, {0, 0.0, 100},
                 {
                     {R112, R112, apped, between(40U, 60U), {}},
                     {R111, R111, apped, between(40U, 60U), between(40.0 / 75, 60.0 / 75)},
                     {R211, R211, exact, known(25U), {}},
                     {R212, R212, apped, known(25U), between(25.0 / 60, 25.0 / 40)},
                     {R311, R311, apped, between(15U, 35U), between(15.0 / 75, 35.0 / 75)},
                     {R412, R412, apped, between(15U, 35U), between(15.0 / 60, 35.0 / 40)},
                     {R411, R411, appro, known(0U), known(0.0)},
                     {R312, R312, appro, known(0U), known(0.0)},
                 });

class IntraNodeBoundedThresholds : public ::testing::TestWithParam<ThresholdCase> {};

TEST_P(IntraNodeBoundedThresholds, DecideOnEachRule) {
    RuleCase each = all_bounded;
    each.settings = {GetParam().minsupp, GetParam().minconf, 100};
    EXPECT_EQ(rules_of_bounded(each), rows_of(GetParam().forms, all_bounded.rules));
}

// The lower ends decide.
INSTANTIATE_TEST_SUITE_P(MinimumSupport, IntraNodeBoundedThresholds,
                         ::testing::ValuesIn(std::vector<ThresholdCase>{
                             {"EqualToThatOfR311AndR412", 15, 0.0, {R112, R111, R211, R212, R311, R412}},
                             {"AboveThatOfR311AndR412", 16, 0.0, {R112, R111, R211, R212}},
                             {"EqualToThatOfR211AndR212", 25, 0.0, {R112, R111, R211, R212}},
                             {"AboveThatOfR211AndR212", 26, 0.0, {R112, R111}},
                             {"EqualToThatOfR112AndR111", 40, 0.0, {R112, R111}},
                             {"AboveThatOfR112AndR111", 41, 0.0, {}},
                         }),
                         name_of_case);

INSTANTIATE_TEST_SUITE_P(MinimumConfidence, IntraNodeBoundedThresholds,
                         ::testing::ValuesIn(std::vector<ThresholdCase>{
                             {"EqualToThatOfR311", 1, 0.2, {R112, R111, R211, R212, R311, R412}},
                             {"AboveThatOfR311", 1, 0.2000001, {R112, R111, R211, R212, R412}},
                             {"EqualToThatOfR412", 1, 0.25, {R112, R111, R211, R212, R412}},
                             {"AboveThatOfR412", 1, 0.2500001, {R112, R111, R211, R212}},
                             {"EqualToThatOfR212", 1, 25.0 / 60, {R112, R111, R211, R212}},
                             {"AboveThatOfR212", 1, 0.4166667, {R112, R111, R211}},
                             {"EqualToThatOfR111", 1, 40.0 / 75, {R112, R111, R211}},
                             {"AboveThatOfR111", 1, 0.5333334, {R112, R211}},
                             {"AboveOne", 1, 1.5, {R112, R211}},
                         }),
                         name_of_case);

INSTANTIATE_TEST_SUITE_P(ZeroSupportPair, IntraNodeBoundedThresholds,
                         ::testing::ValuesIn(thresholds_of_zero_support_pair), name_of_case);

class IntraNodeBoundedSupport : public ::testing::TestWithParam<RuleCase> {};

TEST_P(IntraNodeBoundedSupport, YieldsTheRules) {
    EXPECT_EQ(rules_of_bounded(GetParam()), GetParam().rules);
}

INSTANTIATE_TEST_SUITE_P(
    All, IntraNodeBoundedSupport,
    ::testing::Values(
        all_bounded,
        bounded_case("LowerBoundOf0LeavesOutR112AndR111Only", 75, 0, 60, {1, 0.0, 100},
                     {
                         {R211, R211, exact, known(25U), {}},
                         {R212, R212, apped, known(25U), between(0.25, 25.0 / 40)},
                         {R311, R311, apped, between(15U, 75U), between(0.2, 1.0)},
                         {R412, R412, apped, between(15U, 75U), between(0.15, 1.0)},  // 75/40 capped
                     }),
        bounded_case("UpperBoundOfAllTransactionsLeavesOutTheRulesFromTheAbsenceOfTheRest", 100, 40, 100,
                     {0, 0.0, 100},
                     {
                         {R112, R112, apped, between(40U, 100U), {}},
                         {R111, R111, apped, between(40U, 100U), between(0.4, 1.0)},
                         {R211, R211, exact, known(0U), {}},
                         {R311, R311, apped, between(0U, 60U), between(0.0, 0.6)},
                         {R411, R411, appro, known(0U), known(0.0)},
                         {R312, R312, appro, known(0U), known(0.0)},
                     }),
        bounded_case("EqualBoundsAreStillIntervals", 75, 60, 60, {1, 0.0, 100},
                     {
                         {R112, R112, apped, between(60U, 60U), {}},
                         {R111, R111, apped, between(60U, 60U), between(0.8, 0.8)},
                         {R211, R211, exact, known(25U), {}},
                         {R212, R212, apped, known(25U), between(0.625, 0.625)},
                         {R311, R311, apped, between(15U, 15U), between(0.2, 0.2)},
                         {R412, R412, apped, between(15U, 15U), between(0.375, 0.375)},
                     }),
        bounded_case("ConfidencesOf1StayApproximated", 75, 75, 75, {1, 0.0, 100},
                     {
                         {R112, R112, apped, between(75U, 75U), {}},
                         {R111, R111, apped, between(75U, 75U), between(1.0, 1.0)},
                         {R211, R211, exact, known(25U), {}},
                         {R212, R212, apped, known(25U), between(1.0, 1.0)},
                     }),
        bounded_case("UpperConfidenceOfR412IsCappedAt1", 90, 10, 60, {11, 0.0, 100},
                     {
                         {R311, R311, apped, between(30U, 80U), between(30.0 / 90, 80.0 / 90)},
                         {R412, R412, apped, between(30U, 80U), between(30.0 / 90, 1.0)},  // 80/40
                     }),
        // Of all the confidences only the upper one of R412 is capped: 35/10.
        bounded_case("BoundsAboveTheItemsetAreTakenAsTheyAre", 75, 40, 90, {1, 0.0, 100},
                     {
                         {R112, R112, apped, between(40U, 90U), {}},
                         {R111, R111, apped, between(40U, 90U), between(40.0 / 75, 90.0 / 75)},
                         {R211, R211, exact, known(25U), {}},
                         {R212, R212, apped, known(25U), between(25.0 / 60, 25.0 / 10)},
                         {R311, R311, apped, between(wrapped(15), 35U),
                          between(4294967281.0 / 75, 35.0 / 75)},
                         {R412, R412, apped, between(wrapped(15), 35U), between(4294967281.0 / 60, 1.0)},
                     }),
        bounded_case("TransactionsWithoutTheItemsetWrap", 75, 40, 60, {100, 0.0, 50},
                     {
                         {R211, R211, exact, known(wrapped(25)), {}},
                         {R212, R212, apped, known(wrapped(25)),
                          between(4294967271.0 / 10, 4294967271.0 / 4294967286.0)},
                     }),
        // R111 and R311 are 0/0.
        bounded_case("ConfidencesThatAreNotNumbersAreDropped", 0, 0, 0, {0, 0.0, 100},
                     {
                         {R112, R112, apped, between(0U, 0U), {}},
                         {R211, R211, exact, known(100U), {}},
                         {R212, R212, apped, known(100U), between(1.0, 1.0)},
                         {R412, R412, apped, between(0U, 0U), between(0.0, 0.0)},
                         {R411, R411, appro, known(0U), known(0.0)},
                         {R312, R312, appro, known(0U), known(0.0)},
                     }),
        bounded_case("InfiniteConfidencesPass", 0, 5, 10, {5, 1.0, 100},
                     {
                         {R112, R112, apped, between(5U, 10U), {}},
                         {R111, R111, apped, between(5U, 10U), between(infinity, infinity)},
                         {R211, R211, exact, known(100U), {}},
                         {R212, R212, apped, known(100U), between(100.0 / 95, 100.0 / 90)},
                         {R311, R311, apped, between(wrapped(10), wrapped(5)), between(infinity, infinity)},
                         {R412, R412, apped, between(wrapped(10), wrapped(5)),
                          between(4294967286.0 / 95, 1.0)},
                     }),
        // lo = N and hi = s: the R412 is 0/0 to (2^32 - 50)/50.
        bounded_case("LowerConfidenceOfR412ThatIsNotANumberIs0", 50, 100, 50, {0, 0.0, 100},
                     {
                         {R112, R112, apped, between(100U, 50U), {}},
                         {R111, R111, apped, between(100U, 50U), between(2.0, 1.0)},
                         {R211, R211, exact, known(50U), {}},
                         {R212, R212, apped, known(50U), between(infinity, 1.0)},
                         {R311, R311, apped, between(0U, wrapped(50)), between(0.0, 4294967246.0 / 50)},
                         {R412, R412, apped, between(0U, wrapped(50)), between(0.0, 1.0)},
                         {R411, R411, appro, known(0U), known(0.0)},
                         {R312, R312, appro, known(0U), known(0.0)},
                     }),
        bounded_case("LowerConfidenceOfR412ThatIsNotANumberIsBelowAPositiveMinimum", 50, 100, 50,
                     {0, 0.0001, 100},
                     {
                         {R112, R112, apped, between(100U, 50U), {}},
                         {R111, R111, apped, between(100U, 50U), between(2.0, 1.0)},
                         {R211, R211, exact, known(50U), {}},
                         {R212, R212, apped, known(50U), between(infinity, 1.0)},
                     })),
    name_of_case);

}  // namespace
}  // namespace korv
