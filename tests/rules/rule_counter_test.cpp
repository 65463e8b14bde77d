#include "rules/rule_counter.h"

#include <gtest/gtest.h>

#include "rules/contingency_printing.h"
#include "tools/random_database.h"

namespace korv::tools {

namespace {

/// Items 10 to 12.
const Transactions five = {0b001, 0b011, 0b110, 0b100, 0b000};

RuleRecord record(Itemset premise, bool is_premise_negated, Itemset conclusion, bool is_conclusion_negated) {
    RuleRecord rule;
    rule.premise = {std::move(premise), is_premise_negated};
    rule.conclusion = {std::move(conclusion), is_conclusion_negated};
    return rule;
}

TEST(RuleCounter, CountsPlainAndNegatedSides) {
    const Database database = database_of(five);
    RuleCounter counter(database);

    EXPECT_EQ(counter.count(record({10, 11}, false, {12}, false)), (Contingency{3, 2, 1}));
    EXPECT_EQ(counter.count(record({10, 11}, true, {12}, false)), (Contingency{2, 2, 1}));
    EXPECT_EQ(counter.count(record({10, 11}, false, {12}, true)), (Contingency{3, 3, 2}));
    EXPECT_EQ(counter.count(record({10, 11}, true, {12}, true)), (Contingency{2, 3, 1}));
}

TEST(RuleCounter, CountsASideWithoutItems) {
    const Database database = database_of(five);
    RuleCounter counter(database);

    EXPECT_EQ(counter.count(record({}, true, {12}, false)), (Contingency{5, 2, 2}));
    EXPECT_EQ(counter.count(record({}, false, {12}, false)), (Contingency{0, 2, 0}));
}

TEST(RuleCounter, LinesCountAsOftenAsTheirWeightSays) {
    const Database database = database_of(five, {10, 1, 100, 1000, 10000});
    RuleCounter counter(database);

    EXPECT_EQ(counter.count(record({10, 11}, false, {12}, false)), (Contingency{111, 1100, 100}));
}

}  // namespace

}  // namespace korv::tools
