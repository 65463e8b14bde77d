#include <gtest/gtest.h>

#include <cmath>
#include <map>
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
using enum PairKind;

using Rules = std::vector<Rule>;

// A row of a table of rules is: form as printed, form as counted, kind, support, confidence. Where nothing
// else is said, it is of a rule between closed itemsets, f1 and f2-f1.

/// With N transactions, s1 of them with an item of the base, s2 with one of f2, and r with one of the
/// difference.
RuleCase known_case(std::string name, Count s1, Count s2, Count r, RuleSettings settings, Rules rules) {
    return {std::move(name), s1, s2, {r, r}, settings, std::move(rules)};
}

/// The same, r from lo to hi.
RuleCase bounded_case(std::string name, Count s1, Count s2, Count lo, Count hi, RuleSettings settings,
                      Rules rules) {
    return {std::move(name), s1, s2, {lo, hi}, settings, std::move(rules)};
}

Rules rules_of_known(PairKind kind, const RuleCase& each) {
    return test::rules_by(get_rules_inter_itemset, kind, each, true);
}

Rules rules_of_bounded(PairKind kind, const RuleCase& each) {
    return test::rules_by(get_rules_inter_supp_approx, kind, each, false);
}

/// The form of the same rule of an essential itemset. The last digits of two differ.
Form of_essential(Form of_closed) {
    static const std::map<Form, Form> forms = {{R132, R122}, {R131, R121}, {R231, R221}, {R232, R222},
                                               {R331, R321}, {R432, R421}, {R431, R422}, {R332, R322}};
    return forms.at(of_closed);
}

/// Rows of a closed itemset as those of an essential itemset that is counted under its own forms throughout.
Rules of_essential(Rules rules) {
    for (Rule& rule : rules) {
        rule.form = of_essential(rule.form);
        rule.counted_as = of_essential(rule.counted_as);
    }
    return rules;
}

/// Rows without what they are counted as.
Rules without_counters(Rules rules) {
    for (Rule& rule : rules) {
        rule.counted_as = rule.form;
    }
    return rules;
}

// The support of the difference is known.

// s1 = 50, s2 = 80, r = 40: 10 transactions with an item of both, 20 with none, 40 with one of the base only,
// 30 with one of the difference only.
const RuleCase all_known = known_case("AllEightRules", 50, 80, 40, {0, 0.0, 100},
                                      {
                                          {R132, R132, appro, known(10U), known(10.0 / 40)},
                                          {R131, R131, appro, known(10U), known(10.0 / 50)},
                                          {R231, R231, appro, known(20U), known(20.0 / 50)},
                                          {R232, R232, appro, known(20U), known(20.0 / 60)},
                                          {R331, R331, appro, known(40U), known(40.0 / 50)},
                                          {R432, R432, appro, known(40U), known(40.0 / 60)},
                                          {R431, R431, appro, known(30U), known(30.0 / 50)},
                                          {R332, R332, appro, known(30U), known(30.0 / 40)},
                                      });

class InterNodeKnownThresholds : public ::testing::TestWithParam<ThresholdCase> {};

TEST_P(InterNodeKnownThresholds, DecideOnEachRule) {
    RuleCase each = all_known;
    each.settings = {GetParam().minsupp, GetParam().minconf, 100};
    const Rules expected = rows_of(GetParam().forms, all_known.rules);
    EXPECT_EQ(rules_of_known(successor, each), expected);
    EXPECT_EQ(without_counters(rules_of_known(essential_of_successor, each)), of_essential(expected));
}

INSTANTIATE_TEST_SUITE_P(MinimumSupport, InterNodeKnownThresholds,
                         ::testing::ValuesIn(std::vector<ThresholdCase>{
                             {"EqualToThatOfBoth", 10, 0.0, {R132, R131, R231, R232, R331, R432, R431, R332}},
                             {"AboveThatOfBoth", 11, 0.0, {R231, R232, R331, R432, R431, R332}},
                             {"EqualToThatOfNeither", 20, 0.0, {R231, R232, R331, R432, R431, R332}},
                             {"AboveThatOfNeither", 21, 0.0, {R331, R432, R431, R332}},
                             {"EqualToThatOfTheDifferenceOnly", 30, 0.0, {R331, R432, R431, R332}},
                             {"AboveThatOfTheDifferenceOnly", 31, 0.0, {R331, R432}},
                             {"EqualToThatOfTheBaseOnly", 40, 0.0, {R331, R432}},
                             {"AboveThatOfTheBaseOnly", 41, 0.0, {}},
                         }),
                         name_of_case);

INSTANTIATE_TEST_SUITE_P(MinimumConfidence, InterNodeKnownThresholds,
                         ::testing::ValuesIn(std::vector<ThresholdCase>{
                             {"EqualToThatOfR131", 1, 0.2, {R132, R131, R231, R232, R331, R432, R431, R332}},
                             {"AboveThatOfR131", 1, 0.2000001, {R132, R231, R232, R331, R432, R431, R332}},
                             {"EqualToThatOfR132", 1, 0.25, {R132, R231, R232, R331, R432, R431, R332}},
                             {"AboveThatOfR132", 1, 0.2500001, {R231, R232, R331, R432, R431, R332}},
                             {"EqualToThatOfR232", 1, 20.0 / 60, {R231, R232, R331, R432, R431, R332}},
                             {"AboveThatOfR232", 1, 0.3333334, {R231, R331, R432, R431, R332}},
                             {"EqualToThatOfR231", 1, 0.4, {R231, R331, R432, R431, R332}},
                             {"AboveThatOfR231", 1, 0.4000001, {R331, R432, R431, R332}},
                             {"EqualToThatOfR431", 1, 0.6, {R331, R432, R431, R332}},
                             {"AboveThatOfR431", 1, 0.6000001, {R331, R432, R332}},
                             {"EqualToThatOfR432", 1, 40.0 / 60, {R331, R432, R332}},
                             {"AboveThatOfR432", 1, 0.6666667, {R331, R332}},
                             {"EqualToThatOfR332", 1, 0.75, {R331, R332}},
                             {"AboveThatOfR332", 1, 0.7500001, {R331}},
                             {"EqualToThatOfR331", 1, 0.8, {R331}},
                             {"AboveThatOfR331", 1, 0.8000001, {}},
                         }),
                         name_of_case);

class InterNodeKnownSupport : public ::testing::TestWithParam<RuleCase> {};

TEST_P(InterNodeKnownSupport, YieldsTheRulesOfAClosedItemset) {
    EXPECT_EQ(rules_of_known(successor, GetParam()), GetParam().rules);
}

TEST_P(InterNodeKnownSupport, YieldsTheSameRulesOfAnEssentialItemset) {
    EXPECT_EQ(without_counters(rules_of_known(essential_of_successor, GetParam())),
              of_essential(GetParam().rules));
}

INSTANTIATE_TEST_SUITE_P(
    All, InterNodeKnownSupport,
    ::testing::Values(
        all_known,
        known_case("BaseThatImpliesTheDifferenceIsExact", 50, 80, 80, {1, 0.0, 100},
                   {
                       {R132, R132, appro, known(50U), known(50.0 / 80)},
                       {R131, R131, exact, known(50U), {}},
                       {R231, R231, appro, known(20U), known(0.4)},
                       {R232, R232, exact, known(20U), {}},
                       {R431, R431, appro, known(30U), known(0.6)},
                       {R332, R332, appro, known(30U), known(30.0 / 80)},
                   }),
        known_case("BaseAndDifferenceThatExcludeEachOtherAreExact", 50, 80, 30, {1, 0.0, 100},
                   {
                       {R231, R231, appro, known(20U), known(0.4)},
                       {R232, R232, appro, known(20U), known(20.0 / 70)},
                       {R331, R331, exact, known(50U), {}},
                       {R432, R432, appro, known(50U), known(50.0 / 70)},
                       {R431, R431, appro, known(30U), known(0.6)},
                       {R332, R332, exact, known(30U), {}},
                   }),
        known_case("BaseAndDifferenceThatCoverAllTransactionsAreExact", 50, 100, 60, {1, 0.0, 100},
                   {
                       {R132, R132, appro, known(10U), known(10.0 / 60)},
                       {R131, R131, appro, known(10U), known(0.2)},
                       {R331, R331, appro, known(40U), known(0.8)},
                       {R432, R432, exact, known(40U), {}},
                       {R431, R431, exact, known(50U), {}},
                       {R332, R332, appro, known(50U), known(50.0 / 60)},
                   }),
        known_case("R132AndR231OfConfidence1StayApproximative", 80, 80, 50, {1, 0.0, 100},
                   {
                       {R132, R132, appro, known(50U), known(1.0)},
                       {R131, R131, appro, known(50U), known(50.0 / 80)},
                       {R231, R231, appro, known(20U), known(1.0)},
                       {R232, R232, appro, known(20U), known(0.4)},
                       {R331, R331, appro, known(30U), known(30.0 / 80)},
                       {R432, R432, appro, known(30U), known(0.6)},
                   }),
        known_case("DifferenceInAllTransactionsHasNoRulesFromItsAbsence", 50, 100, 100, {0, 0.0, 100},
                   {
                       {R132, R132, appro, known(50U), known(0.5)},
                       {R131, R131, exact, known(50U), {}},
                       {R231, R231, appro, known(0U), known(0.0)},
                       {R331, R331, appro, known(0U), known(0.0)},
                       {R431, R431, exact, known(50U), {}},
                       {R332, R332, appro, known(50U), known(0.5)},
                   }),
        // 20/0 and (2^32 - 20)/0 would be infinite and pass.
        known_case("NeverDividesByTheTransactionsWithoutTheDifferenceIfThereAreNone", 50, 80, 100,
                   {1, 0.0, 100},
                   {
                       {R132, R132, appro, known(70U), known(0.7)},
                       {R131, R131, appro, known(70U), known(1.4)},
                       {R231, R231, appro, known(20U), known(0.4)},
                       {R331, R331, appro, known(wrapped(20)), known(4294967276.0 / 50)},
                       {R431, R431, appro, known(30U), known(0.6)},
                       {R332, R332, appro, known(30U), known(0.3)},
                   }),
        known_case("ExactnessIsDecidedInDoublePrecision", 4294967295U, 4294967295U, 4294967294U,
                   {2, 0.0, 4294967295U},
                   {
                       {R132, R132, appro, known(4294967294U), known(1.0)},
                       {R131, R131, appro, known(4294967294U), known(4294967294.0 / 4294967295.0)},
                   }),
        // R132 and R332 are 0/0.
        known_case("ConfidencesThatAreNotNumbersAreDroppedWithoutTheDifference", 80, 80, 0, {0, 0.0, 100},
                   {
                       {R131, R131, appro, known(0U), known(0.0)},
                       {R231, R231, appro, known(20U), known(1.0)},
                       {R232, R232, appro, known(20U), known(0.2)},
                       {R331, R331, exact, known(80U), {}},
                       {R432, R432, appro, known(80U), known(0.8)},
                       {R431, R431, appro, known(0U), known(0.0)},
                   }),
        // R131 and R331 are 0/0.
        known_case("ConfidencesThatAreNotNumbersAreDroppedWithoutTheBase", 0, 50, 50, {0, 0.0, 100},
                   {
                       {R132, R132, appro, known(0U), known(0.0)},
                       {R231, R231, appro, known(50U), known(0.5)},
                       {R232, R232, exact, known(50U), {}},
                       {R432, R432, appro, known(0U), known(0.0)},
                       {R431, R431, appro, known(50U), known(0.5)},
                       {R332, R332, exact, known(50U), {}},
                   }),
        // R231 and R431 are 0/0.
        known_case("ConfidencesThatAreNotNumbersAreDroppedWithTheBaseInAllTransactions", 100, 100, 60,
                   {0, 0.0, 100},
                   {
                       {R132, R132, appro, known(60U), known(1.0)},
                       {R131, R131, appro, known(60U), known(0.6)},
                       {R232, R232, appro, known(0U), known(0.0)},
                       {R331, R331, appro, known(40U), known(0.4)},
                       {R432, R432, exact, known(40U), {}},
                       {R332, R332, appro, known(0U), known(0.0)},
                   }),
        known_case("InfiniteConfidencesAreApproximative", 100, 80, 50, {1, 1e300, 100},
                   {
                       {R231, R231, appro, known(20U), known(infinity)},
                       {R431, R431, appro, known(wrapped(20)), known(infinity)},
                   }),
        known_case("SecondRuleOfAGroupDoesNotNeedTheFirst", 50, 80, 70, {1, 0.58, 100},
                   {
                       // not R132, 40/70, nor R231, 20/50, nor R332, 30/70
                       {R131, R131, appro, known(40U), known(0.8)},
                       {R232, R232, appro, known(20U), known(20.0 / 30)},
                       {R431, R431, appro, known(30U), known(0.6)},
                   }),
        known_case("R432DoesNotNeedR331", 50, 80, 70, {1, 0.3, 100},
                   {
                       {R132, R132, appro, known(40U), known(40.0 / 70)},
                       {R131, R131, appro, known(40U), known(0.8)},
                       {R231, R231, appro, known(20U), known(0.4)},
                       {R232, R232, appro, known(20U), known(20.0 / 30)},
                       {R432, R432, appro, known(10U), known(10.0 / 30)},  // R331: 10/50
                       {R431, R431, appro, known(30U), known(0.6)},
                       {R332, R332, appro, known(30U), known(30.0 / 70)},
                   }),
        known_case("ExactRulesBelowAMinimumConfidenceAbove1AreDropped", 50, 80, 80, {1, 1.5, 100}, {}),
        known_case("TransactionsWithBothWrap", 20, 80, 50, {100, 0.0, 100},
                   {
                       {R132, R132, appro, known(wrapped(10)), known(4294967286.0 / 50)},
                       {R131, R131, appro, known(wrapped(10)), known(4294967286.0 / 20)},
                   }),
        known_case("TransactionsWithNeitherWrap", 40, 80, 50, {100, 0.0, 70},
                   {
                       {R231, R231, appro, known(wrapped(10)), known(4294967286.0 / 30)},
                       {R232, R232, appro, known(wrapped(10)), known(4294967286.0 / 20)},
                   }),
        known_case("TransactionsWithTheBaseOnlyWrap", 40, 80, 90, {100, 0.0, 100},
                   {
                       {R331, R331, appro, known(wrapped(10)), known(4294967286.0 / 40)},
                       {R432, R432, appro, known(wrapped(10)), known(4294967286.0 / 10)},
                   }),
        known_case("TransactionsWithTheDifferenceOnlyWrap", 90, 80, 50, {100, 0.0, 100},
                   {
                       {R431, R431, appro, known(wrapped(10)), known(4294967286.0 / 10)},
                       {R332, R332, appro, known(wrapped(10)), known(4294967286.0 / 50)},
                   }),
        known_case("DenominatorsWrap", 60, 90, 70, {20, 0.0, 50},
                   {
                       {R132, R132, appro, known(40U), known(40.0 / 70)},
                       {R131, R131, appro, known(40U), known(40.0 / 60)},
                       {R231, R231, appro, known(wrapped(40)), known(4294967256.0 / 4294967286.0)},
                       {R232, R232, appro, known(wrapped(40)), known(4294967256.0 / 4294967276.0)},
                       {R331, R331, appro, known(20U), known(20.0 / 60)},
                       {R432, R432, appro, known(20U), known(20 / 4294967276.0)},
                       {R431, R431, appro, known(30U), known(30 / 4294967286.0)},
                       {R332, R332, appro, known(30U), known(30.0 / 70)},
                   })),
    name_of_case);

// Under which forms the rules of an essential itemset are counted.

class InterNodeEssentialOfKnownSupport : public ::testing::TestWithParam<RuleCase> {};

TEST_P(InterNodeEssentialOfKnownSupport, YieldsTheRules) {
    EXPECT_EQ(rules_of_known(essential_of_successor, GetParam()), GetParam().rules);
}

INSTANTIATE_TEST_SUITE_P(
    All, InterNodeEssentialOfKnownSupport,
    ::testing::Values(known_case("FromR222OnTheyAreCountedAsThoseOfAClosedItemset", 50, 80, 40, {0, 0.0, 100},
                                 {
                                     {R122, R122, appro, known(10U), known(0.25)},
                                     {R121, R121, appro, known(10U), known(0.2)},
                                     {R221, R221, appro, known(20U), known(0.4)},
                                     {R222, R232, appro, known(20U), known(20.0 / 60)},
                                     {R321, R331, appro, known(40U), known(0.8)},
                                     {R421, R432, appro, known(40U), known(40.0 / 60)},
                                     {R422, R431, appro, known(30U), known(0.6)},
                                     {R322, R332, appro, known(30U), known(0.75)},
                                 }),
                      known_case("AnExactR222ChangesTheFormsToo", 50, 80, 80, {1, 0.0, 100},
                                 {
                                     {R122, R122, appro, known(50U), known(50.0 / 80)},
                                     {R121, R121, exact, known(50U), {}},
                                     {R221, R221, appro, known(20U), known(0.4)},
                                     {R222, R232, exact, known(20U), {}},
                                     {R422, R431, appro, known(30U), known(0.6)},
                                     {R322, R332, appro, known(30U), known(30.0 / 80)},
                                 }),
                      known_case("TheyKeepTheirFormsWhenR222IsTooWeak", 50, 80, 40, {1, 0.34, 100},
                                 {
                                     {R221, R221, appro, known(20U), known(0.4)},
                                     {R321, R321, appro, known(40U), known(0.8)},
                                     {R421, R421, appro, known(40U), known(40.0 / 60)},
                                     {R422, R422, appro, known(30U), known(0.6)},
                                     {R322, R322, appro, known(30U), known(0.75)},
                                 }),
                      known_case("TheyKeepTheirFormsWhenR222IsTooRare", 50, 80, 40, {21, 0.0, 100},
                                 {
                                     {R321, R321, appro, known(40U), known(0.8)},
                                     {R421, R421, appro, known(40U), known(40.0 / 60)},
                                     {R422, R422, appro, known(30U), known(0.6)},
                                     {R322, R322, appro, known(30U), known(0.75)},
                                 }),
                      known_case("TheyKeepTheirFormsWhenTheDifferenceIsInAllTransactions", 50, 80, 100,
                                 {1, 0.0, 100},
                                 {
                                     {R122, R122, appro, known(70U), known(0.7)},
                                     {R121, R121, appro, known(70U), known(1.4)},
                                     {R221, R221, appro, known(20U), known(0.4)},
                                     {R321, R321, appro, known(wrapped(20)), known(4294967276.0 / 50)},
                                     {R422, R422, appro, known(30U), known(0.6)},
                                     {R322, R322, appro, known(30U), known(0.3)},
                                 }),
                      known_case("ExactExclusionsKeepTheirForms", 50, 80, 30, {1, 0.3, 100},
                                 {
                                     // not R222, 20/70
                                     {R221, R221, appro, known(20U), known(0.4)},
                                     {R321, R321, exact, known(50U), {}},
                                     {R421, R421, appro, known(50U), known(50.0 / 70)},
                                     {R422, R422, appro, known(30U), known(0.6)},
                                     {R322, R322, exact, known(30U), {}},
                                 }),
                      known_case("ExactRulesOfACoverKeepTheirForms", 50, 100, 60, {1, 0.0, 100},
                                 {
                                     {R122, R122, appro, known(10U), known(10.0 / 60)},
                                     {R121, R121, appro, known(10U), known(0.2)},
                                     {R321, R321, appro, known(40U), known(0.8)},
                                     {R421, R421, exact, known(40U), {}},
                                     {R422, R422, exact, known(50U), {}},
                                     {R322, R322, appro, known(50U), known(50.0 / 60)},
                                 })),
    name_of_case);

TEST(InterNodeEssentialsOfKnownSupport, StartWithTheirOwnFormsEach) {
    // The R222 of the first changes its forms; the second, whose R222 is too rare, keeps its own.
    const Itemset base = {1};
    const Itemset difference = {2};
    test::CollectedRules collected;
    RuleMaker rules({31, 0.0, 150}, collected);
    rules.add({essential_of_successor, {}, base, difference, 80, 50, {40, 40}, true});
    rules.add({essential_of_successor, {}, base, difference, 120, 50, {110, 110}, true});
    EXPECT_EQ(collected.rules, (Rules{
                                   {R221, R221, appro, known(70U), known(0.7)},
                                   {R222, R232, appro, known(70U), known(70.0 / 110)},
                                   {R321, R331, appro, known(40U), known(0.8)},
                                   {R421, R432, appro, known(40U), known(40.0 / 110)},
                                   {R122, R122, appro, known(40U), known(40.0 / 110)},
                                   {R121, R121, appro, known(40U), known(0.8)},
                                   {R422, R422, appro, known(70U), known(0.7)},
                                   {R322, R322, appro, known(70U), known(70.0 / 110)},
                               }));
}

// The support of the difference is only known within bounds.

// s1 = 50, s2 = 80, r from 35 to 64: 5 to 34 transactions with an item of both, 20 with none, 16 to 45 with
// one of the base only, 30 with one of the difference only.
const RuleCase all_bounded =
    bounded_case("AllEightRules", 50, 80, 35, 64, {0, 0.0, 100},
                 {
                     {R132, R132, apped, between(5U, 34U), between(5.0 / 64, 34.0 / 35)},
                     {R131, R131, apped, between(5U, 34U), between(5.0 / 50, 34.0 / 50)},
                     {R231, R231, appro, known(20U), known(20.0 / 50)},
                     {R232, R232, apped, known(20U), between(20.0 / 65, 20.0 / 36)},
                     {R331, R331, apped, between(16U, 45U), between(16.0 / 50, 45.0 / 50)},
                     // Both of the lower support.
                     {R432, R432, apped, between(16U, 45U), between(16.0 / 65, 16.0 / 36)},
                     {R431, R431, appro, known(30U), known(30.0 / 50)},
                     {R332, R332, apped, known(30U), between(30.0 / 64, 30.0 / 35)},
                 });

class InterNodeBoundedThresholds : public ::testing::TestWithParam<ThresholdCase> {};

TEST_P(InterNodeBoundedThresholds, DecideOnEachRule) {
    RuleCase each = all_bounded;
    each.settings = {GetParam().minsupp, GetParam().minconf, 100};
    const Rules expected = rows_of(GetParam().forms, all_bounded.rules);
    EXPECT_EQ(rules_of_bounded(successor, each), expected);
    EXPECT_EQ(rules_of_bounded(essential_of_successor, each), of_essential(expected));
}

// The lower ends decide.
INSTANTIATE_TEST_SUITE_P(
    MinimumSupport, InterNodeBoundedThresholds,
    ::testing::ValuesIn(std::vector<ThresholdCase>{
        {"EqualToTheLowestWithBoth", 5, 0.0, {R132, R131, R231, R232, R331, R432, R431, R332}},
        {"AboveTheLowestWithBoth", 6, 0.0, {R231, R232, R331, R432, R431, R332}},
        {"EqualToTheLowestWithTheBaseOnly", 16, 0.0, {R231, R232, R331, R432, R431, R332}},
        {"AboveTheLowestWithTheBaseOnly", 17, 0.0, {R231, R232, R431, R332}},
        {"EqualToThatOfNeither", 20, 0.0, {R231, R232, R431, R332}},
        {"AboveThatOfNeither", 21, 0.0, {R431, R332}},
        {"EqualToThatOfTheDifferenceOnly", 30, 0.0, {R431, R332}},
        {"AboveThatOfTheDifferenceOnly", 31, 0.0, {}},
    }),
    name_of_case);

INSTANTIATE_TEST_SUITE_P(
    MinimumConfidence, InterNodeBoundedThresholds,
    ::testing::ValuesIn(std::vector<ThresholdCase>{
        {"EqualToThatOfR132", 1, 0.078125, {R132, R131, R231, R232, R331, R432, R431, R332}},
        {"AboveThatOfR132", 1, 0.0781251, {R131, R231, R232, R331, R432, R431, R332}},
        {"EqualToThatOfR131", 1, 0.1, {R131, R231, R232, R331, R432, R431, R332}},
        {"AboveThatOfR131", 1, 0.1000001, {R231, R232, R331, R432, R431, R332}},
        {"EqualToThatOfR432", 1, 16.0 / 65, {R231, R232, R331, R432, R431, R332}},
        {"AboveThatOfR432", 1, 0.2461539, {R231, R232, R331, R431, R332}},
        {"EqualToThatOfR232", 1, 20.0 / 65, {R231, R232, R331, R431, R332}},
        {"AboveThatOfR232", 1, 0.3076924, {R231, R331, R431, R332}},
        {"EqualToThatOfR331", 1, 0.32, {R231, R331, R431, R332}},
        {"AboveThatOfR331", 1, 0.3200001, {R231, R431, R332}},
        {"EqualToThatOfR231", 1, 0.4, {R231, R431, R332}},
        {"AboveThatOfR231", 1, 0.4000001, {R431, R332}},
        {"EqualToThatOfR332", 1, 0.46875, {R431, R332}},
        {"AboveThatOfR332", 1, 0.4687501, {R431}},
        {"EqualToThatOfR431", 1, 0.6, {R431}},
        {"AboveThatOfR431", 1, 0.6000001, {}},
    }),
    name_of_case);

class InterNodeBoundedSupport : public ::testing::TestWithParam<RuleCase> {};

TEST_P(InterNodeBoundedSupport, YieldsTheRulesOfAClosedItemset) {
    EXPECT_EQ(rules_of_bounded(successor, GetParam()), GetParam().rules);
}

// Throughout, other than where the support is known.
TEST_P(InterNodeBoundedSupport, YieldsTheSameRulesOfAnEssentialItemsetCountedUnderItsOwnForms) {
    EXPECT_EQ(rules_of_bounded(essential_of_successor, GetParam()), of_essential(GetParam().rules));
}

INSTANTIATE_TEST_SUITE_P(
    All, InterNodeBoundedSupport,
    ::testing::Values(
        all_bounded,
        bounded_case("SecondRuleOfAGroupDoesNotNeedTheFirst", 20, 80, 60, 75, {1, 0.3, 100},
                     {
                         // not R231, 20/80, nor R331, 5/20, nor R432, 5/40
                         {R232, R232, apped, known(20U), between(20.0 / 40, 20.0 / 25)},
                         {R431, R431, appro, known(60U), known(60.0 / 80)},
                         {R332, R332, apped, known(60U), between(60.0 / 75, 1.0)},
                     }),
        bounded_case("R332DoesNotNeedR431", 20, 80, 60, 75, {1, 0.78, 100},
                     {
                         {R332, R332, apped, known(60U), between(60.0 / 75, 1.0)},  // R431: 60/80
                     }),
        bounded_case("R432DoesNotNeedR331", 80, 90, 50, 60, {21, 0.55, 100},
                     {
                         {R132, R132, apped, between(40U, 50U), between(40.0 / 60, 1.0)},
                         {R432, R432, apped, between(30U, 40U), between(0.6, 0.75)},  // R331: 30/80
                     }),
        bounded_case("UpperBoundOfAllTransactionsLeavesOutTheRulesFromTheAbsenceOfTheDifference", 50, 90, 60,
                     100, {0, 0.0, 100},
                     {
                         {R132, R132, apped, between(20U, 60U), between(0.2, 1.0)},
                         {R131, R131, apped, between(20U, 60U), between(0.4, 1.2)},
                         {R231, R231, appro, known(10U), known(0.2)},
                         {R331, R331, apped, between(wrapped(10), 30U), between(1.0, 0.6)},
                         {R431, R431, appro, known(40U), known(0.8)},
                         {R332, R332, apped, known(40U), between(0.4, 40.0 / 60)},
                     }),
        bounded_case("LargerItemsetInAllTransactionsHasAnExactR431", 50, 100, 60, 100, {0, 0.0, 100},
                     {
                         {R132, R132, apped, between(10U, 50U), between(0.1, 50.0 / 60)},
                         {R131, R131, apped, between(10U, 50U), between(0.2, 1.0)},
                         {R231, R231, appro, known(0U), known(0.0)},
                         {R331, R331, apped, between(0U, 40U), between(0.0, 0.8)},
                         {R431, R332, exact, known(50U), {}},
                         {R332, R332, apped, known(50U), between(0.5, 50.0 / 60)},
                     }),
        bounded_case("EqualBoundsAreStillIntervals", 50, 80, 40, 40, {1, 0.0, 100},
                     {
                         {R132, R132, apped, between(10U, 10U), between(0.25, 0.25)},
                         {R131, R131, apped, between(10U, 10U), between(0.2, 0.2)},
                         {R231, R231, appro, known(20U), known(0.4)},
                         {R232, R232, apped, known(20U), between(20.0 / 60, 20.0 / 60)},
                         {R331, R331, apped, between(40U, 40U), between(0.8, 0.8)},
                         {R432, R432, apped, between(40U, 40U), between(40.0 / 60, 40.0 / 60)},
                         {R431, R431, appro, known(30U), known(0.6)},
                         {R332, R332, apped, known(30U), between(0.75, 0.75)},
                     }),
        bounded_case("ConfidencesOf1StayApproximated", 50, 80, 80, 80, {1, 1.0, 100},
                     {
                         {R131, R131, apped, between(50U, 50U), between(1.0, 1.0)},
                         {R232, R232, apped, known(20U), between(1.0, 1.0)},
                     }),
        bounded_case("ExclusionsOfConfidence1StayApproximated", 50, 80, 30, 30, {1, 1.0, 100},
                     {
                         {R331, R331, apped, between(50U, 50U), between(1.0, 1.0)},
                         {R332, R332, apped, known(30U), between(1.0, 1.0)},
                     }),
        bounded_case("R231OfConfidence1StaysApproximative", 80, 80, 10, 40, {1, 1.0, 100},
                     {
                         {R231, R231, appro, known(20U), known(1.0)},
                     }),
        // Over a base of support 0 the R331 is 0/0, capped to 1 before it is compared, while the 0/0 of R131
        // is
        // dropped.
        bounded_case("R331OverABaseOfSupport0HasConfidence1", 0, 80, 80, 80, {0, 1.0, 100},
                     {
                         {R232, R232, apped, known(20U), between(1.0, 1.0)},
                         {R331, R331, apped, between(0U, 0U), between(1.0, 1.0)},
                         {R332, R332, apped, known(80U), between(1.0, 1.0)},
                     }),
        // Capped are the upper ends of R132, 60/40, and of R432, (2^32 - 10)/10, and both ends of R331, of
        // which
        // the lower is (2^32 - 10)/50.
        bounded_case("BoundsAboveTheLargerItemsetAreTakenAsTheyAre", 50, 80, 40, 90, {1, 0.0, 100},
                     {
                         {R132, R132, apped, between(10U, 60U), between(10.0 / 90, 1.0)},
                         {R131, R131, apped, between(10U, 60U), between(0.2, 1.2)},
                         {R231, R231, appro, known(20U), known(0.4)},
                         {R232, R232, apped, known(20U), between(20.0 / 60, 2.0)},
                         {R331, R331, apped, between(wrapped(10), 40U), between(1.0, 0.8)},
                         {R432, R432, apped, between(wrapped(10), 40U), between(4294967286.0 / 60, 1.0)},
                         {R431, R431, appro, known(30U), known(0.6)},
                         {R332, R332, apped, known(30U), between(30.0 / 90, 0.75)},
                     }),
        // R132 and R332 are 0/0.
        bounded_case("ConfidencesThatAreNotNumbersAreDroppedWithoutTheDifference", 80, 80, 0, 0,
                     {0, 0.0, 100},
                     {
                         {R131, R131, apped, between(0U, 0U), between(0.0, 0.0)},
                         {R231, R231, appro, known(20U), known(1.0)},
                         {R232, R232, apped, known(20U), between(0.2, 0.2)},
                         {R331, R331, apped, between(80U, 80U), between(1.0, 1.0)},
                         {R432, R432, apped, between(80U, 80U), between(0.8, 0.8)},
                         {R431, R431, appro, known(0U), known(0.0)},
                     }),
        // R231 and R431 are 0/0.
        bounded_case("ConfidencesThatAreNotNumbersAreDroppedWithTheBaseInAllTransactions", 100, 100, 10, 40,
                     {0, 0.0, 100},
                     {
                         {R132, R132, apped, between(10U, 40U), between(0.25, 1.0)},
                         {R131, R131, apped, between(10U, 40U), between(0.1, 0.4)},
                         {R232, R232, apped, known(0U), between(0.0, 0.0)},
                         {R331, R331, apped, between(60U, 90U), between(0.6, 0.9)},
                         {R432, R432, apped, between(60U, 90U), between(60.0 / 90, 1.0)},
                         {R332, R332, apped, known(0U), between(0.0, 0.0)},
                     }),
        bounded_case("InfiniteConfidencesAreApproximative", 100, 80, 35, 64, {1, 1e300, 100},
                     {
                         {R231, R231, appro, known(20U), known(infinity)},
                         {R431, R431, appro, known(wrapped(20)), known(infinity)},
                     }),
        // 30 transactions without the base, all with the difference.
        bounded_case("ExactR431IsCountedAsItsMirrorImage", 50, 80, 35, 64, {30, 0.0, 80},
                     {
                         {R431, R332, exact, known(30U), {}},
                         {R332, R332, apped, known(30U), between(30.0 / 64, 30.0 / 35)},
                     }),
        bounded_case("ExactRuleBelowAMinimumConfidenceAbove1IsDropped", 50, 80, 35, 64, {30, 1.5, 80}, {}),
        bounded_case("TransactionsWithBothWrap", 20, 80, 50, 64, {100, 0.0, 100},
                     {
                         {R132, R132, apped, between(wrapped(10), 4U), between(4294967286.0 / 64, 4.0 / 50)},
                         {R131, R131, apped, between(wrapped(10), 4U), between(4294967286.0 / 20, 4.0 / 20)},
                     }),
        bounded_case("TransactionsWithNeitherWrap", 50, 80, 35, 64, {100, 0.0, 70},
                     {
                         {R231, R231, appro, known(wrapped(10)), known(4294967286.0 / 20)},
                         {R232, R232, apped, known(wrapped(10)),
                          between(4294967286.0 / 35, 4294967286.0 / 6)},
                     }),
        bounded_case("TransactionsWithTheBaseOnlyWrap", 50, 80, 35, 90, {100, 0.0, 100},
                     {
                         {R331, R331, apped, between(wrapped(10), 45U), between(1.0, 0.9)},
                         {R432, R432, apped, between(wrapped(10), 45U), between(4294967286.0 / 65, 1.0)},
                     }),
        bounded_case("TransactionsWithTheDifferenceOnlyWrap", 90, 80, 35, 64, {100, 0.0, 100},
                     {
                         {R431, R431, appro, known(wrapped(10)), known(4294967286.0 / 10)},
                         {R332, R332, apped, known(wrapped(10)),
                          between(4294967286.0 / 64, 4294967286.0 / 35)},
                     })),
    name_of_case);

/// One of the rules that the supports yield, or none.
class InterNodeRuleOfBoundedSupport : public ::testing::TestWithParam<RuleCase> {};

TEST_P(InterNodeRuleOfBoundedSupport, IsAmongThem) {
    const Rule& expected = GetParam().rules.front();
    EXPECT_EQ(rows_of({expected.form}, rules_of_bounded(successor, GetParam())), GetParam().rules);
    const Rules of_essential_itemset = rules_of_bounded(essential_of_successor, GetParam());
    EXPECT_EQ(rows_of({of_essential(expected.form)}, of_essential_itemset), of_essential(GetParam().rules));
}

INSTANTIATE_TEST_SUITE_P(
    All, InterNodeRuleOfBoundedSupport,
    ::testing::Values(
        bounded_case("UpperConfidenceOfR132IsCappedAt1", 50, 80, 35, 70, {1, 0.0, 100},
                     {{R132, R132, apped, between(5U, 40U), between(5.0 / 70, 1.0)}}),  // 40/35
        bounded_case("LowerConfidenceOfR132IsNotCapped", 80, 80, 60, 30, {1, 0.0, 100},
                     {{R132, R132, apped, between(60U, 30U), between(2.0, 0.5)}}),
        bounded_case("UpperConfidenceOfR132ThatIsNotANumberIs1", 50, 80, 0, 30, {1, 0.0, 100},
                     {{R132, R132, apped, between(wrapped(30), 0U), between(4294967266.0 / 30, 1.0)}}),
        bounded_case("UpperConfidenceOfR132ThatIsInfiniteIs1", 80, 110, 0, 94, {1, 0.0, 200},
                     {{R132, R132, apped, between(wrapped(30), 64U), between(4294967266.0 / 94, 1.0)}}),
        bounded_case("UpperConfidenceOfR331IsCappedAt1", 50, 80, 25, 64, {1, 0.0, 100},
                     {{R331, R331, apped, between(16U, 55U), between(0.32, 1.0)}}),  // 55/50
        bounded_case("LowerConfidenceOfR331IsCappedAt1", 50, 80, 20, 20, {1, 0.0, 100},
                     {{R331, R331, apped, between(60U, 60U), between(1.0, 1.0)}}),  // 60/50
        bounded_case("UpperConfidenceOfR432IsCappedAt1", 50, 80, 35, 64, {1, 0.0, 70},
                     {{R432, R432, apped, between(16U, 45U), between(16.0 / 35, 1.0)}}),  // 16/6
        bounded_case("LowerConfidenceOfR432IsNotCapped", 50, 80, 35, 64, {1, 0.0, 40},
                     {{R432, R432, apped, between(16U, 45U), between(3.2, 16 / 4294967272.0)}}),
        bounded_case("UpperConfidenceOfR332IsNotCapped", 50, 80, 20, 64, {1, 0.0, 100},
                     {{R332, R332, apped, known(30U), between(0.46875, 1.5)}}),
        bounded_case("UpperConfidenceOfR332MayBeInfinite", 80, 110, 0, 94, {1, 0.0, 200},
                     {{R332, R332, apped, known(30U), between(30.0 / 94, infinity)}}),
        bounded_case("DenominatorOfR431Wraps", 60, 90, 40, 70, {20, 0.0, 50},
                     {{R431, R431, appro, known(30U), known(30 / 4294967286.0)}}),
        bounded_case("DenominatorOfR432Wraps", 60, 90, 40, 70, {20, 0.0, 50},
                     {{R432, R432, apped, between(20U, 50U), between(2.0, 20 / 4294967276.0)}}),
        bounded_case("ExactnessIsDecidedInDoublePrecision", 0, 4294967294U, 1, 4294967294U,
                     {2, 0.5, 4294967295U},
                     {{R431, R431, appro, known(4294967294U), known(4294967294.0 / 4294967295.0)}})),
    name_of_case);

TEST(InterNodeBoundedSupportAlone, LowerConfidenceOfR331IsCappedBeforeItIsCompared) {
    // 60/50 would reach 1.1.
    const RuleCase each = bounded_case("", 50, 80, 20, 20, {1, 1.1, 100}, {});
    EXPECT_EQ(rows_of({R331}, rules_of_bounded(successor, each)), Rules{});
}

TEST(InterNodeBoundedSupportAlone, UpperConfidenceOfR332ThatIsNotANumberPasses) {
    // The difference from 0 to 40: 0/40 to 0/0.
    const RuleCase each = bounded_case("", 80, 80, 0, 40, {0, 0.0, 100}, {});
    const Rules rules = rows_of({R332}, rules_of_bounded(successor, each));
    ASSERT_EQ(rules.size(), 1U);
    EXPECT_EQ(rules.front().support, known(0U));
    ASSERT_TRUE(rules.front().confidence);
    EXPECT_EQ(rules.front().confidence->low, 0.0);
    EXPECT_TRUE(std::isnan(rules.front().confidence->high));
    EXPECT_FALSE(rules.front().confidence->is_known);
}

}  // namespace
}  // namespace korv
