#include "engine/rule_gate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "support/collected_rules.h"

namespace korv {
namespace {

using enum Form;
using enum Kind;

using Rules = std::vector<Rule>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

/// The rules that come through a gate, in the order of the calls.
class RuleGateTest : public ::testing::Test {
protected:
    RuleGate gate(double minconf) { return {minconf, collected_}; }

    const Rules& passed() const { return collected_.rules; }

private:
    test::CollectedRules collected_;
};

TEST_F(RuleGateTest, ExactRuleHasNoConfidence) {
    gate(0.0).exact(R211, 20);
    EXPECT_EQ(passed(), (Rules{{R211, R211, exact, known(20U), {}}}));
}

TEST_F(RuleGateTest, ExactRulePassesWhateverTheMinimum) {
    gate(1.5).exact(R211, 20);
    gate(not_a_number).exact(R112, 10);
    EXPECT_EQ(passed(), (Rules{{R211, R211, exact, known(20U), {}}, {R112, R112, exact, known(10U), {}}}));
}

TEST_F(RuleGateTest, ApproximativeRuleHasItsConfidence) {
    gate(0.0).approximative(R311, 20, 0.25);
    EXPECT_EQ(passed(), (Rules{{R311, R311, appro, known(20U), known(0.25)}}));
}

TEST_F(RuleGateTest, ApproximativeRuleOfConfidence1StaysApproximative) {
    gate(1.0).approximative(R311, 20, 1.0);
    EXPECT_EQ(passed(), (Rules{{R311, R311, appro, known(20U), known(1.0)}}));
}

TEST_F(RuleGateTest, ApproximativeRuleIsCountedUnderTheFormForIt) {
    gate(0.0).approximative({R212, R332, R111}, 20, 0.25);
    EXPECT_EQ(passed(), (Rules{{R212, R111, appro, known(20U), known(0.25)}}));
}

TEST_F(RuleGateTest, RuleOfConfidence1IsExactByConfidence) {
    EXPECT_TRUE(gate(1.0).by_confidence(R111, 20, 1.0));
    EXPECT_EQ(passed(), (Rules{{R111, R111, exact, known(20U), {}}}));
}

TEST_F(RuleGateTest, RuleOfAnotherConfidenceIsApproximativeByConfidence) {
    EXPECT_TRUE(gate(0.0).by_confidence(R111, 20, 0.5));
    EXPECT_TRUE(gate(0.0).by_confidence(R111, 20, 1.25));
    EXPECT_EQ(passed(), (Rules{{R111, R111, appro, known(20U), known(0.5)},
                               {R111, R111, appro, known(20U), known(1.25)}}));
}

TEST_F(RuleGateTest, JustBelow1IsNot1) {
    const double just_below = std::nextafter(1.0, 0.0);
    EXPECT_TRUE(gate(0.0).by_confidence(R111, 20, just_below));
    EXPECT_EQ(passed(), (Rules{{R111, R111, appro, known(20U), known(just_below)}}));
}

TEST_F(RuleGateTest, RuleIsCountedUnderTheFormForWhatItTurnsOutToBe) {
    gate(0.0).by_confidence({R431, R332, R422}, 20, 1.0);
    gate(0.0).by_confidence({R431, R332, R422}, 20, 0.5);
    EXPECT_EQ(passed(),
              (Rules{{R431, R332, exact, known(20U), {}}, {R431, R422, appro, known(20U), known(0.5)}}));
}

TEST_F(RuleGateTest, RuleCountedUnderOneOtherFormIsSoEitherWay) {
    gate(0.0).by_confidence({R222, R232}, 20, 1.0);
    gate(0.0).by_confidence({R222, R232}, 20, 0.5);
    EXPECT_EQ(passed(),
              (Rules{{R222, R232, exact, known(20U), {}}, {R222, R232, appro, known(20U), known(0.5)}}));
}

TEST_F(RuleGateTest, ApproximatedRuleHasBoundsOnItsConfidence) {
    gate(0.0).approximated(R131, between(10U, 20U), {0.25, 0.5});
    gate(0.0).approximated(R232, known(20U), {0.25, 0.5});
    EXPECT_EQ(passed(), (Rules{{R131, R131, apped, between(10U, 20U), between(0.25, 0.5)},
                               {R232, R232, apped, known(20U), between(0.25, 0.5)}}));
}

TEST_F(RuleGateTest, ApproximatedRuleStaysSoWhenItsBoundsMeet) {
    gate(1.0).approximated(R131, between(10U, 10U), {1.0, 1.0});
    EXPECT_EQ(passed(), (Rules{{R131, R131, apped, between(10U, 10U), between(1.0, 1.0)}}));
}

TEST_F(RuleGateTest, ApproximatedRuleOfConfidence1HasNoneAndPassesWhateverTheMinimum) {
    gate(1.5).approximated_of_confidence_1(R112, between(10U, 20U));
    EXPECT_EQ(passed(), (Rules{{R112, R112, apped, between(10U, 20U), {}}}));
}

TEST_F(RuleGateTest, ConfidenceEqualToTheMinimumPasses) {
    gate(0.25).approximative(R311, 20, 0.25);
    EXPECT_TRUE(gate(0.25).by_confidence(R111, 20, 0.25));
    gate(0.25).approximated(R131, known(20U), {0.25, 0.1});
    EXPECT_EQ(passed().size(), 3U);
}

TEST_F(RuleGateTest, ConfidenceBelowTheMinimumIsDropped) {
    gate(0.25).approximative(R311, 20, 0.2499999);
    EXPECT_FALSE(gate(0.25).by_confidence(R111, 20, 0.2499999));
    EXPECT_EQ(passed(), Rules{});
}

TEST_F(RuleGateTest, Confidence1IsDroppedBelowALargerMinimum) {
    EXPECT_FALSE(gate(1.5).by_confidence(R111, 20, 1.0));
    EXPECT_EQ(passed(), Rules{});
}

TEST_F(RuleGateTest, OfBoundsTheLowerOneDecides) {
    gate(0.25).approximated(R131, known(20U), {0.2499999, 0.5});
    EXPECT_EQ(passed(), Rules{});
}

TEST_F(RuleGateTest, NaNIsBelowEveryMinimum) {
    gate(-1.0).approximative(R311, 20, not_a_number);
    EXPECT_FALSE(gate(-1.0).by_confidence(R111, 20, not_a_number));
    gate(-1.0).approximated(R111, known(20U), {not_a_number, 1.0});
    gate(-infinity).approximative(R311, 20, not_a_number);
    EXPECT_EQ(passed(), Rules{});
}

TEST_F(RuleGateTest, NothingReachesAMinimumThatIsNaN) {
    gate(not_a_number).approximative(R311, 20, 1.0);
    EXPECT_FALSE(gate(not_a_number).by_confidence(R111, 20, 1.0));
    gate(not_a_number).approximated(R111, known(20U), {infinity, infinity});
    EXPECT_EQ(passed(), Rules{});
}

TEST_F(RuleGateTest, InfinityPasses) {
    gate(2.0).approximative(R311, 20, infinity);
    EXPECT_EQ(passed(), (Rules{{R311, R311, appro, known(20U), known(infinity)}}));
}

TEST(Ratio, IsTheQuotient) {
    EXPECT_EQ(ratio(3, 4), 0.75);
    EXPECT_EQ(ratio(5, 4), 1.25);
    EXPECT_EQ(ratio(0, 4), 0.0);
}

TEST(Ratio, IsOneForEqualNumbersOnly) {
    EXPECT_EQ(ratio(4294967295U, 4294967295U), 1.0);
    EXPECT_LT(ratio(4294967294U, 4294967295U), 1.0);
    EXPECT_GT(ratio(4294967295U, 4294967294U), 1.0);
}

TEST(Ratio, TakesItsNumbersAsUnsigned) {
    EXPECT_EQ(ratio(4294967295U, 1), 4294967295.0);
}

TEST(Ratio, IsInfiniteOverZero) {
    EXPECT_EQ(ratio(1, 0), infinity);
}

TEST(Ratio, IsNotANumberForZeroOverZero) {
    EXPECT_TRUE(std::isnan(ratio(0, 0)));
}

}  // namespace
}  // namespace korv
