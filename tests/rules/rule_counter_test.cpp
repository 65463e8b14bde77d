#include "rules/rule_counter.h"

#include <gtest/gtest.h>

#include "rules/contingency_printing.h"
#include "tools/random_database.h"

namespace korv::tools {

namespace {

/// Items 10 to 12.
const Transactions five = {0b001, 0b011, 0b110, 0b100, 0b000};
const Itemset none = {};
const Itemset one = {10, 11};
const Itemset other = {12};

TEST(RuleCounter, CountsPlainAndNegatedSides) {
    const Database database = database_of(five);
    RuleCounter counter(database);

    EXPECT_EQ(counter.count({one, false}, {other, false}), (Contingency{3, 2, 1}));
    EXPECT_EQ(counter.count({one, true}, {other, false}), (Contingency{2, 2, 1}));
    EXPECT_EQ(counter.count({one, false}, {other, true}), (Contingency{3, 3, 2}));
    EXPECT_EQ(counter.count({one, true}, {other, true}), (Contingency{2, 3, 1}));
}

TEST(RuleCounter, CountsASideWithoutItems) {
    const Database database = database_of(five);
    RuleCounter counter(database);

    EXPECT_EQ(counter.count({none, true}, {other, false}), (Contingency{5, 2, 2}));
    EXPECT_EQ(counter.count({none, false}, {other, false}), (Contingency{0, 2, 0}));
}

TEST(RuleCounter, LinesCountAsOftenAsTheirWeightSays) {
    const Database database = database_of(five, {10, 1, 100, 1000, 10000});
    RuleCounter counter(database);

    EXPECT_EQ(counter.count({one, false}, {other, false}), (Contingency{111, 1100, 100}));
}

}  // namespace

}  // namespace korv::tools
