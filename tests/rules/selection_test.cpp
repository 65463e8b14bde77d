#include "rules/selection.h"

#include <gtest/gtest.h>

#include "rules/made_rules.h"

namespace korv::tools {

namespace {

/// Rules of 100 transactions: two of "9", one of "8", by confidence 0.8, 0.6 and 0.4.
class SelectionTest : public testing::Test {
protected:
    /// The confidences, in per cent, of the rules that are told.
    std::vector<Count> told(std::size_t per_conclusion, std::size_t top) {
        RuleRequest request;
        request.per_conclusion = per_conclusion;
        request.top = top;
        Selection selection(order_, request);
        selection.add(rule_of_confidence(40, made_.any({8})));
        selection.add(rule_of_confidence(60, made_.any({9})));
        selection.add(rule_of_confidence(80, made_.any({9})));
        std::vector<Count> confidences;
        for (const FoundRule& rule : selection.take(accounting_)) {
            confidences.push_back(rule.at_low.both * 5);
        }
        return confidences;
    }

    FoundRule rule_of_confidence(Count per_cent, Side conclusion) {
        return known_rule(made_.any({1}), conclusion, {20, 50, per_cent / 5});
    }

    MadeRules made_{{}};
    RuleOrder order_{Measure::confidence, false, 100, made_.pool()};
    Accounting accounting_;
};

using Confidences = std::vector<Count>;

TEST_F(SelectionTest, TellsAllInTheirOrder) {
    EXPECT_EQ(told(0, 0), (Confidences{80, 60, 40}));
    EXPECT_EQ(accounting_[Step::per_conclusion], 0U);
    EXPECT_EQ(accounting_[Step::top], 0U);
}

TEST_F(SelectionTest, CountsWhatIsBeyondTheFirstOfAConclusion) {
    EXPECT_EQ(told(1, 0), (Confidences{80, 40}));
    EXPECT_EQ(accounting_[Step::per_conclusion], 1U);
    EXPECT_EQ(accounting_[Step::top], 0U);
}

TEST_F(SelectionTest, CountsWhatIsBeyondTheFirstOfAll) {
    EXPECT_EQ(told(1, 1), (Confidences{80}));
    EXPECT_EQ(accounting_[Step::per_conclusion], 1U);
    EXPECT_EQ(accounting_[Step::top], 1U);
}

}  // namespace

}  // namespace korv::tools
