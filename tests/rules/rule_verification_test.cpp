#include "rules/rule_verification.h"

#include <gtest/gtest.h>

#include "made_rules.h"
#include "tools/complaint.h"
#include "tools/random_database.h"

namespace korv::tools {

namespace {

/// Of five transactions, three hold 10, four 11 and two both.
class VerifyTest : public testing::Test {
protected:
    std::string complaint(const FoundRule& rule) const {
        return complaint_of([&] { verify({rule}, rules_.book(5), database_); });
    }

    Database database_ = database_of({0b01, 0b11, 0b11, 0b10, 0b10});
    MadeRules rules_{{{10, "bread"}, {11, "butter"}}};
    Side bread_ = rules_.any({10});
    Side no_butter_ = rules_.none({11});
};

TEST_F(VerifyTest, IsContentWithRulesThatAreRight) {
    EXPECT_EQ(complaint(known_rule(bread_, rules_.any({11}), {3, 4, 2})), "");
    EXPECT_EQ(complaint(known_rule(bread_, no_butter_, {3, 1, 1})), "");
}

TEST_F(VerifyTest, NamesARuleOfOtherCounts) {
    EXPECT_EQ(
        complaint(known_rule(bread_, no_butter_, {3, 1, 2})),
        "internal error: the rule bread => not butter holds for 2 of 3 transactions; counted again, for "
        "1 of 3");
}

TEST_F(VerifyTest, AllowsNoCountThatIsNotKnown) {
    FoundRule bounded = known_rule(bread_, no_butter_, {3, 1, 1});
    bounded.at_high.both = 2;
    EXPECT_NE(complaint(bounded), "");
}

}  // namespace

}  // namespace korv::tools
