#include "rules/distinct_rules.h"

#include <gtest/gtest.h>

#include "rules/made_rules.h"

namespace korv::tools {

namespace {

/// Rules "item --> 99" of 1,000 transactions, by confidence.
class DistinctRulesTest : public testing::Test {
protected:
    void add(DistinctRules& rules, Item item, const Contingency& counts) {
        rules.add(known_rule(Side(0, false), Side(0, false), counts), 2, [&](FoundRule& rule) {
            rule.premise = Side(pool_.intern(Itemset{item}), false);
            rule.conclusion = Side(pool_.intern(Itemset{99}), false);
            ++made_sides_;
        });
    }

    Itemset premise(const FoundRule& rule) {
        const ItemSpan items = pool_[rule.premise.itemset()];
        return {items.begin(), items.end()};
    }

    ItemsetPool pool_;
    RuleOrder order_{Measure::confidence, false, 1000, pool_};
    Accounting accounting_;
    std::size_t made_sides_ = 0;
};

TEST_F(DistinctRulesTest, KeepsRulesOfTheSameSidesAndCountsOnce) {
    DistinctRules rules(order_, pool_, 0, accounting_);
    add(rules, 1, {100, 500, 80});
    add(rules, 2, {100, 500, 90});
    add(rules, 1, {100, 500, 80});

    const std::vector<FoundRule> kept = rules.take();
    ASSERT_EQ(kept.size(), 2U);
    EXPECT_EQ(premise(kept[0]), (Itemset{2}));
    EXPECT_EQ(kept[0].wordings, 1U);
    EXPECT_EQ(premise(kept[1]), (Itemset{1}));
    EXPECT_EQ(kept[1].wordings, 2U);
    EXPECT_EQ(accounting_[Step::same_fact], 1U);
}

TEST_F(DistinctRulesTest, KeepsRulesOfTheSameSidesButOtherCounts) {
    DistinctRules rules(order_, pool_, 0, accounting_);
    add(rules, 1, {100, 500, 80});
    add(rules, 1, {200, 500, 160});

    const std::vector<FoundRule> kept = rules.take();
    ASSERT_EQ(kept.size(), 2U);
    EXPECT_EQ(kept[0].at_low.both, 160U);  // as much confidence, more support
    EXPECT_EQ(kept[1].at_low.both, 80U);
    EXPECT_EQ(accounting_[Step::same_fact], 0U);
}

TEST_F(DistinctRulesTest, ForgetsWhatIsBeyondTheFirstOnes) {
    DistinctRules rules(order_, pool_, 2, accounting_);
    constexpr std::size_t many = 30000;
    for (std::size_t i = 0; i < many; ++i) {
        add(rules, static_cast<Item>(1000 + i), {100, 500, i < many / 2 ? Count{20} : Count{10}});
    }
    add(rules, 1, {100, 500, 80});
    add(rules, 2, {100, 500, 90});

    EXPECT_LT(made_sides_, many);  // those that come late are refused by their counts and items alone
    const std::vector<FoundRule> kept = rules.take();
    ASSERT_EQ(kept.size(), 2U);
    EXPECT_EQ(premise(kept[0]), (Itemset{2}));
    EXPECT_EQ(premise(kept[1]), (Itemset{1}));
    EXPECT_EQ(accounting_[Step::top], many);
    EXPECT_EQ(pool_.size(), 3U);
}

}  // namespace

}  // namespace korv::tools
