#include "rules/rule_order.h"

#include <gtest/gtest.h>

#include <compare>
#include <limits>

namespace korv::tools {

namespace {

/// Rules between itemsets of a pool, of 100 transactions.
class RuleOrderTest : public testing::Test {
protected:
    FoundRule rule(const Itemset& premise, const Itemset& conclusion, const Contingency& at_low,
                   const Contingency& at_high) {
        return {
            {pool_.intern(premise), false}, {pool_.intern(conclusion), false}, at_low, at_high, Form::R111};
    }
    FoundRule rule(const Itemset& premise, const Itemset& conclusion, const Contingency& table) {
        return rule(premise, conclusion, table, table);
    }
    /// The premises of the first rules, in their order.
    std::vector<Itemset> first(const std::vector<FoundRule>& rules, Measure measure, bool is_ascending,
                               std::size_t most) {
        const RuleOrder order(measure, is_ascending, 100, pool_);
        FirstRules kept(order, most);
        for (const FoundRule& each : rules) {
            kept.add(each);
        }
        std::vector<Itemset> premises;
        for (const FoundRule& each : kept.take()) {
            const ItemSpan items = pool_[each.premise.itemset()];
            premises.emplace_back(items.begin(), items.end());
        }
        return premises;
    }

    ItemsetPool pool_;
};

using Premises = std::vector<Itemset>;

TEST_F(RuleOrderTest, PutsTheLargestMeasureFirst) {
    const std::vector rules = {rule({1}, {9}, {50, 40, 20}), rule({2}, {9}, {20, 40, 16}),
                               rule({3}, {9}, {30, 40, 18})};
    EXPECT_EQ(first(rules, Measure::confidence, false, 0), (Premises{{2}, {3}, {1}}));
    EXPECT_EQ(first(rules, Measure::confidence, true, 0), (Premises{{1}, {3}, {2}}));
}

TEST_F(RuleOrderTest, ComparesTheEndsOfBoundsThatAreCertain) {
    // Confidences from 0.3 to 0.9, and of 0.5.
    const std::vector rules = {rule({1}, {9}, {10, 40, 3}, {10, 40, 9}), rule({2}, {9}, {10, 40, 5})};
    EXPECT_EQ(first(rules, Measure::confidence, false, 0), (Premises{{2}, {1}}));
    EXPECT_EQ(first(rules, Measure::confidence, true, 0), (Premises{{2}, {1}}));
}

TEST_F(RuleOrderTest, PutsTheLargerSupportThenFewerItemsThenSmallerItemsFirst) {
    // All of confidence 0.5.
    const std::vector rules = {rule({3}, {9}, {20, 40, 10}), rule({2, 4}, {9}, {20, 40, 10}),
                               rule({2}, {9}, {20, 40, 10}), rule({7}, {9}, {40, 40, 20})};
    EXPECT_EQ(first(rules, Measure::confidence, false, 0), (Premises{{7}, {2}, {3}, {2, 4}}));
}

TEST_F(RuleOrderTest, PutsAPlainPremiseBeforeTheNegatedOneAndThenLooksAtConclusions) {
    const FoundRule plain = rule({1}, {9}, {20, 40, 10});
    FoundRule negated = plain;
    negated.premise = {plain.premise.itemset(), true};
    const FoundRule other = rule({1}, {8}, {20, 40, 10});

    EXPECT_TRUE(std::is_lt(compare_sides(plain, negated, pool_)));
    EXPECT_TRUE(std::is_gt(compare_sides(negated, other, pool_)));
    EXPECT_TRUE(std::is_gt(compare_sides(plain, other, pool_)));
    EXPECT_TRUE(std::is_eq(compare_sides(plain, plain, pool_)));
}

TEST_F(RuleOrderTest, TellsTheShorterRuleByItemsAndThenBySides) {
    const FoundRule three_items = rule({1, 2}, {3}, {20, 40, 10});
    const FoundRule two_items = rule({5}, {3}, {20, 40, 10});
    const FoundRule two_larger_items = rule({5}, {4}, {20, 40, 10});
    EXPECT_TRUE(is_shorter(two_items, three_items, pool_));
    EXPECT_FALSE(is_shorter(three_items, two_items, pool_));
    EXPECT_TRUE(is_shorter(two_items, two_larger_items, pool_));
    EXPECT_FALSE(is_shorter(two_items, two_items, pool_));
}

TEST_F(RuleOrderTest, CountsTheNegatedSides) {
    FoundRule each = rule({1}, {2}, {20, 40, 10});
    EXPECT_EQ(negated_sides(each), 0U);
    each.conclusion = {each.conclusion.itemset(), true};
    EXPECT_EQ(negated_sides(each), 1U);
    each.premise = {each.premise.itemset(), true};
    EXPECT_EQ(negated_sides(each), 2U);
}

TEST_F(RuleOrderTest, PutsRulesLastWhoseMeasureIsNotDefinedBehindInfiniteOnes) {
    // Conviction: 0/0 where the conclusion holds for all, infinite without an exception, 1.2 of the last.
    const std::vector rules = {rule({1}, {9}, {20, 100, 20}), rule({2}, {9}, {20, 40, 20}),
                               rule({3}, {9}, {20, 40, 10})};
    EXPECT_EQ(first(rules, Measure::conviction, false, 0), (Premises{{2}, {3}, {1}}));
    EXPECT_EQ(first(rules, Measure::conviction, true, 0), (Premises{{3}, {2}, {1}}));
}

TEST_F(RuleOrderTest, KeepsAsManyAsAreAskedFor) {
    std::vector<FoundRule> rules;
    for (const Item item : Itemset{5, 2, 8, 1, 9, 4, 7}) {
        rules.push_back(rule({item}, {10}, {100, 50, item}));
    }
    EXPECT_EQ(first(rules, Measure::confidence, false, 3), (Premises{{9}, {8}, {7}}));
    EXPECT_EQ(first(rules, Measure::confidence, false, 1), (Premises{{9}}));
    EXPECT_EQ(first(rules, Measure::confidence, false, 7).size(), 7U);
    EXPECT_EQ(first(rules, Measure::confidence, false, 8).size(), 7U);
}

TEST_F(RuleOrderTest, KeepsTheFirstOfEachConclusion) {
    FoundRule negated = rule({6}, {8}, {100, 50, 1});
    negated.conclusion = {negated.conclusion.itemset(), true};
    const RuleOrder order(Measure::confidence, false, 100, pool_);
    FirstOfEachConclusion kept(order, 2);
    for (const FoundRule& each : {rule({1}, {8}, {100, 50, 5}), rule({2}, {8}, {100, 50, 7}),
                                  rule({3}, {8}, {100, 50, 6}), rule({4}, {9}, {100, 50, 9}), negated}) {
        kept.add(each);
    }
    FirstRules first(order, 0);
    EXPECT_EQ(kept.move_to(first), 4U);
    std::vector<Itemset> premises;
    for (const FoundRule& each : first.take()) {
        const ItemSpan items = pool_[each.premise.itemset()];
        premises.emplace_back(items.begin(), items.end());
    }
    EXPECT_EQ(premises, (Premises{{4}, {2}, {3}, {6}}));
    EXPECT_EQ(kept.move_to(first), 0U);
}

TEST_F(RuleOrderTest, CountsTheItemsOfBothSides) {
    EXPECT_EQ(number_of_items(rule({1, 2, 3}, {4, 5}, {1, 1, 1}), pool_), 5U);
}

}  // namespace

}  // namespace korv::tools
