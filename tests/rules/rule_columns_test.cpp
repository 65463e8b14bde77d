#include "rules/rule_columns.h"

#include <gtest/gtest.h>

#include "made_rules.h"

namespace korv::tools {

namespace {

TEST(RangeOf, HasItsEndsInOrderWhereACountFallsWithTheUnknownSupport) {
    MadeRules rules({});
    FoundRule rule = known_rule(rules.any({1}), rules.any({2}), {10, 20, 8});
    rule.at_high = {12, 20, 5};
    EXPECT_EQ(range_of(rule, &Contingency::premise), (CountRange{10, 12}));
    EXPECT_EQ(range_of(rule, &Contingency::conclusion), (CountRange{20, 20}));
    EXPECT_EQ(range_of(rule, &Contingency::both), (CountRange{5, 8}));
}

TEST(CertaintyName, OfEachKind) {
    EXPECT_EQ(name_of(Certainty::exact), "exact");
    EXPECT_EQ(name_of(Certainty::approximative), "approximative");
    EXPECT_EQ(name_of(Certainty::bounded), "bounded");
}

TEST(FurtherMeasures, LeaveOutRepeatedOnesAndThoseThatHaveColumnsAnyway) {
    const MadeRules rules({});
    const auto further = further_measures(
        rules.book(10, {Measure::lift, Measure::jaccard, Measure::confidence, Measure::jaccard,
                        Measure::support, Measure::cosine, Measure::leverage}));
    ASSERT_EQ(further.size(), 2U);
    EXPECT_EQ(further[0].name, "jaccard");
    EXPECT_EQ(further[0].name_of_most, "jaccard_max");
    EXPECT_EQ(further[1].measure, Measure::cosine);
}

TEST(NumberOfItems, IsThatOfBothSides) {
    MadeRules rules({});
    EXPECT_EQ(number_of_items(known_rule(rules.any({1, 2}), rules.none({3}), {1, 1, 1}), rules.pool()), 3U);
}

}  // namespace

}  // namespace korv::tools
