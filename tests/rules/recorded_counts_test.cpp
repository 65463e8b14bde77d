#include "rules/recorded_counts.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "rules/contingency_printing.h"

namespace korv::tools {
namespace {

const RecordedSide one = {{1}, false};
const RecordedSide not_one = {{1}, true};
const RecordedSide two = {{2}, false};
const RecordedSide not_two = {{2}, true};
constexpr bool within_nodes = false;
constexpr bool between_nodes = true;

RecordedCounts counts(const RuleRecord& record) {
    const auto found = recorded_counts(record, std::nullopt);
    EXPECT_TRUE(found);
    return found.value_or(RecordedCounts{});
}

TEST(RecordedCounts, AnExactRuleIsMetWheneverItsPremiseIs) {
    const RecordedCounts found = counts({one, two, known(Count{7}), std::nullopt, within_nodes});
    EXPECT_EQ(found.at_low, (Contingency{7, 0, 7}));
    EXPECT_TRUE(found.is_known());
}

TEST(RecordedCounts, SixDigitsTellASmallPremise) {
    // 2/3 = 0.666667; 15/22 = 0.681818.
    EXPECT_EQ(counts({one, two, known(Count{2}), known(0.666667), within_nodes}).at_low,
              (Contingency{3, 0, 2}));
    EXPECT_EQ(counts({one, two, known(Count{15}), known(0.681818), within_nodes}).at_low,
              (Contingency{22, 0, 15}));
    // Below 0.1 the digits are finer: 10,000 of 100,001 is printed as 0.099999.
    EXPECT_EQ(counts({one, two, known(Count{10'000}), known(0.1), within_nodes}).at_low,
              (Contingency{100'000, 0, 10'000}));
}

TEST(RecordedCounts, ALargePremiseIsBounded) {
    // 800,000 of 999,999 would be printed as 0.800001.
    const RecordedCounts tight = counts({one, two, known(Count{800'000}), known(0.8), within_nodes});
    EXPECT_EQ(tight.at_low, (Contingency{1'000'000, 0, 800'000}));
    // 8,000,000 of 9,999,994 to 10,000,006 are between 0.7999995 and 0.8000005.
    const RecordedCounts wide = counts({one, two, known(Count{8'000'000}), known(0.8), within_nodes});
    EXPECT_EQ(wide.at_low, (Contingency{10'000'006, 0, 8'000'000}));
    EXPECT_EQ(wide.at_high, (Contingency{9'999'994, 0, 8'000'000}));
}

TEST(RecordedCounts, EveryQuotientOfSmallCountsTellsThem) {
    std::mt19937 random(1);
    for (int i = 0; i < 100'000; ++i) {
        const Count premise = 1 + static_cast<Count>(random() % 99'999);
        const Count both = 1 + static_cast<Count>(random() % premise);
        std::array<char, 16> digits;
        std::snprintf(digits.data(), digits.size(), "%g", static_cast<double>(both) / premise);
        const RecordedCounts found =
            counts({one, two, known(both), known(std::strtod(digits.data(), nullptr)), within_nodes});
        ASSERT_EQ(found.at_low, (Contingency{premise, 0, both})) << digits.data();
        ASSERT_TRUE(found.is_known());
    }
}

TEST(RecordedCounts, NoPremiseHasAConfidenceThatIsNoQuotient) {
    EXPECT_FALSE(recorded_counts({one, two, known(Count{2}), known(0.777), within_nodes}, std::nullopt));
    // 2 of 3 are 0.666667, but there are only 2 transactions.
    EXPECT_FALSE(recorded_counts({one, two, known(Count{2}), known(0.666667), within_nodes}, Count{2}));
}

TEST(RecordedCounts, WithoutSupportThePremiseIsNotKnown) {
    const RecordedCounts found = counts({one, not_two, known(Count{0}), known(0.0), within_nodes});
    EXPECT_EQ(found.at_low, (Contingency{4'294'967'295, 0, 0}));
    EXPECT_EQ(found.at_high.premise, 0U);
    EXPECT_EQ(recorded_counts({one, not_two, known(Count{0}), known(0.0), within_nodes}, Count{9})->at_low,
              (Contingency{9, 0, 0}));
}

TEST(RecordedCounts, OfBoundsThePremiseMayBeTheSame) {
    // e1-->(f1-e1) of 3 to 4 of 5.
    const RecordedCounts found =
        counts({one, two, between(Count{3}, Count{4}), between(0.6, 0.8), within_nodes});
    EXPECT_EQ(found.at_low, (Contingency{5, 0, 3}));
    EXPECT_EQ(found.at_high, (Contingency{5, 0, 4}));
}

TEST(RecordedCounts, OfBoundsThePremiseMayGrowWithTheSupport) {
    // not(f1-e1)-->e1 of N = 10, N - s = 4: 2 of 6 to 3 of 7. Printed are 2/7 and 3/6.
    const RecordedCounts within =
        counts({not_one, two, between(Count{2}, Count{3}), between(0.285714, 0.5), within_nodes});
    EXPECT_EQ(within.at_low, (Contingency{6, 0, 2}));
    EXPECT_EQ(within.at_high, (Contingency{7, 0, 3}));
    // not(D)-->B: the same, of which 2/7 and 2/6 are printed.
    const RecordedCounts between_them =
        counts({not_one, two, between(Count{2}, Count{3}), between(0.285714, 0.333333), between_nodes});
    EXPECT_EQ(between_them.at_low, (Contingency{6, 0, 2}));
    EXPECT_EQ(between_them.at_high, (Contingency{7, 0, 3}));
    // D-->B: the same, of which 2/7 and 3/6 are printed.
    const RecordedCounts plain =
        counts({one, two, between(Count{2}, Count{3}), between(0.285714, 0.5), between_nodes});
    EXPECT_EQ(plain.at_low, (Contingency{6, 0, 2}));
    EXPECT_EQ(plain.at_high, (Contingency{7, 0, 3}));
}

TEST(RecordedCounts, BetweenNodesTheNumbersTellWhichPremiseItIs) {
    // B-->D of 2 to 3 of 6.
    const RecordedCounts found =
        counts({one, two, between(Count{2}, Count{3}), between(0.333333, 0.5), between_nodes});
    EXPECT_EQ(found.at_low, (Contingency{6, 0, 2}));
    EXPECT_EQ(found.at_high, (Contingency{6, 0, 3}));
}

TEST(RecordedCounts, OfAKnownSupportThePremiseHasBounds) {
    // not(D)-->not(B) of 3: 3 of 4 to 3 of 3.
    const RecordedCounts found =
        counts({not_one, not_two, known(Count{3}), between(0.75, 1.0), between_nodes});
    EXPECT_EQ(found.at_low, (Contingency{4, 0, 3}));
    EXPECT_EQ(found.at_high, (Contingency{3, 0, 3}));
}

TEST(RecordedCounts, AnUpperNumberThatIsNoBoundIsNotTakenForOne) {
    // not(D)-->B, of which 0 and 0 are printed, and 1 of 4 is possible.
    const RecordedCounts found =
        counts({not_one, two, between(Count{0}, Count{1}), between(0.0, 0.0), between_nodes});
    EXPECT_EQ(found.at_low.both, 0U);
    EXPECT_EQ(found.at_high.both, 1U);
    EXPECT_EQ(found.at_high.premise, 1U);  // the confidence may be 1, as far as that tells
}

}  // namespace
}  // namespace korv::tools
