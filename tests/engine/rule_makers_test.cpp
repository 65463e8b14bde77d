#include "engine/rule_makers.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/collected_rules.h"

namespace korv {
namespace {

using enum Form;
using enum Kind;

using Rules = std::vector<Rule>;

/// What RuleMaker makes of a pair of the itemsets {1} and {2}, with 100 transactions.
Rules rules_of(PairKind kind, bool is_known, SupportBounds difference_support, Count minsupp,
               double minconf) {
    const Itemset base = {1};
    const Itemset difference = {2};
    test::CollectedRules collected;
    RuleMaker({minsupp, minconf, 100}, collected)
        .add({kind, {}, base, difference, 80, 50, difference_support, is_known});
    EXPECT_EQ(collected.pairs, 1);
    return collected.rules;
}

// Of a pair within a node, the support of the base is not looked at: 40/80.
TEST(RuleMaker, MakesIntraNodeRulesOfAKnownSupport) {
    EXPECT_EQ(rules_of(PairKind::essential_and_rest, true, {40, 40}, 40, 0.5),
              (Rules{
                  {R112, R112, exact, known(40U), {}},
                  {R111, R111, appro, known(40U), known(0.5)},
                  {R311, R311, appro, known(40U), known(0.5)},
                  {R412, R412, appro, known(40U), known(40.0 / 60)},
              }));
}

TEST(RuleMaker, MakesIntraNodeRulesOfBounds) {
    EXPECT_EQ(rules_of(PairKind::essential_and_rest, false, {40, 60}, 40, 0.5),
              (Rules{
                  {R112, R112, apped, between(40U, 60U), {}},
                  {R111, R111, apped, between(40U, 60U), between(0.5, 0.75)},
              }));
}

TEST(RuleMaker, MakesRulesOfASuccessorOfAKnownSupport) {
    EXPECT_EQ(rules_of(PairKind::successor, true, {40, 40}, 30, 0.7),
              (Rules{
                  {R331, R331, appro, known(40U), known(0.8)},
                  {R332, R332, appro, known(30U), known(0.75)},
              }));
}

TEST(RuleMaker, MakesRulesOfAnEssentialOfASuccessorOfAKnownSupport) {
    EXPECT_EQ(rules_of(PairKind::essential_of_successor, true, {40, 40}, 30, 0.7),
              (Rules{
                  {R321, R321, appro, known(40U), known(0.8)},
                  {R322, R322, appro, known(30U), known(0.75)},
              }));
}

TEST(RuleMaker, MakesRulesOfASuccessorOfBounds) {
    EXPECT_EQ(rules_of(PairKind::successor, false, {40, 60}, 30, 0.5),
              (Rules{
                  {R431, R431, appro, known(30U), known(0.6)},
                  {R332, R332, apped, known(30U), between(0.5, 0.75)},
              }));
}

TEST(RuleMaker, MakesRulesOfAnEssentialOfASuccessorOfBounds) {
    EXPECT_EQ(rules_of(PairKind::essential_of_successor, false, {40, 60}, 30, 0.5),
              (Rules{
                  {R422, R422, appro, known(30U), known(0.6)},
                  {R322, R322, apped, known(30U), between(0.5, 0.75)},
              }));
}

TEST(RuleMaker, BeginsAPairThatYieldsNoRule) {
    EXPECT_EQ(rules_of(PairKind::successor, true, {40, 40}, 81, 0.0), Rules{});
}

TEST(RuleMaker, TakesBoundsThatMeetForBoundsUnlessTheSupportIsKnown) {
    EXPECT_EQ(rules_of(PairKind::essential_and_rest, false, {80, 80}, 80, 0.5),
              (Rules{
                  {R112, R112, apped, between(80U, 80U), {}},
                  {R111, R111, apped, between(80U, 80U), between(1.0, 1.0)},
              }));
}

TEST(RuleMaker, TakesASupportOf0ThatIsKnown) {
    // 80 of 80, and not 0 to 0 as for bounds.
    EXPECT_EQ(rules_of(PairKind::essential_and_rest, true, {0, 0}, 80, 1.0),
              (Rules{{R311, R311, appro, known(80U), known(1.0)}}));
}

}  // namespace
}  // namespace korv
