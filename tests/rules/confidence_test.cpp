#include "rules/confidence.h"

#include <gtest/gtest.h>

#include <cmath>

namespace korv::tools {

namespace {

Confidence confidence(Count both, Count premise) {
    return Confidence({premise, 1, both});
}

TEST(Confidence, IsTheShareOfThePremiseThatMeetsBothSides) {
    EXPECT_EQ(confidence(3, 4).value(), 0.75);
    EXPECT_TRUE(confidence(0, 4).is_defined());
}

TEST(Confidence, IsNotDefinedWhereNothingMeetsThePremise) {
    EXPECT_FALSE(confidence(0, 0).is_defined());
    EXPECT_TRUE(std::isnan(confidence(0, 0).value()));
}

TEST(Confidence, IsComparedAsAFraction) {
    EXPECT_EQ(confidence(1, 2), confidence(2, 4));
    EXPECT_LT(confidence(2, 3), confidence(3, 4));
    EXPECT_GT(confidence(5, 4), confidence(1, 1));
}

TEST(Confidence, TellsFractionsApartWhoseQuotientsAreEqual) {
    const Confidence smaller = confidence(4'294'967'293, 4'294'967'294);
    const Confidence larger = confidence(4'294'967'294, 4'294'967'295);
    EXPECT_LT(smaller, larger);
    EXPECT_NE(smaller, larger);
}

}  // namespace

}  // namespace korv::tools
