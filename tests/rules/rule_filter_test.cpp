#include "rules/rule_filter.h"

#include <gtest/gtest.h>

#include "rules/found_rule.h"
#include "rules/itemset_pool.h"

namespace korv::tools {
namespace {

/// A filter in a database of 100 transactions.
RuleFilter filter(const RuleRequest& request, Count min_support = 1) {
    ItemNames names(std::map<Item, std::string>{{1, "a"}, {2, "b"}, {3, "c"}, {4, "d"}});
    const Itemset items = {1, 2, 3, 4};
    return {request, min_support, 100, ItemChoice(request.patterns, items, names),
            request.where.empty() ? Where() : parse_where(request.where)};
}

bool reaches(const RuleRequest& request, Count min_support, const Contingency& at_low,
             const Contingency& at_high) {
    return filter(request, min_support).reaches_thresholds(at_low, at_high);
}

std::optional<Step> refused(const RuleRequest& request, Form form, const Contingency& at_low,
                            const Contingency& at_high) {
    return filter(request).refused_by_counts(form, at_low, at_high);
}

std::optional<Step> refused(const RuleRequest& request, const Contingency& table) {
    return refused(request, Form::R111, table, table);
}

std::optional<Step> refused(const RuleRequest& request, const Itemset& premise, const Itemset& conclusion) {
    return filter(request).refused_by_sides({premise, false}, {conclusion, false}, ColumnFacts());
}

TEST(RuleFilter, TakesThresholdsInclusively) {
    RuleRequest request;
    request.min_confidence = 0.75;
    const Contingency table = {40, 50, 30};  // a confidence of 0.75
    EXPECT_TRUE(reaches(request, 30, table, table));
    EXPECT_FALSE(reaches(request, 31, table, table));
    request.min_confidence = 0.7501;
    EXPECT_FALSE(reaches(request, 30, table, table));
}

TEST(RuleFilter, WantsBothEndsOfBoundsToReachTheThresholds) {
    RuleRequest request;
    request.min_confidence = 0.5;
    const Contingency weak = {40, 50, 10};
    const Contingency strong = {40, 50, 30};
    EXPECT_FALSE(reaches(request, 1, weak, strong));
    EXPECT_FALSE(reaches(request, 1, strong, weak));
    EXPECT_TRUE(reaches(request, 1, strong, strong));
}

TEST(RuleFilter, LeavesOutWhatHasNoConfidence) {
    RuleRequest request;
    request.min_confidence = 0;
    const Contingency none = {0, 50, 0};
    EXPECT_FALSE(reaches(request, 0, none, none));
}

TEST(RuleFilter, WantsALiftOfMoreThanOneUnlessItIsSaid) {
    // Expected by chance: 40 * 50 / 100 = 20 transactions.
    EXPECT_EQ(refused({}, {40, 50, 20}), Step::chance);
    EXPECT_EQ(refused({}, {40, 50, 21}), std::nullopt);
}

TEST(RuleFilter, TakesTheMinimumLiftInclusively) {
    RuleRequest request;
    request.min_lift = 1.5;
    EXPECT_EQ(refused(request, {40, 50, 29}), Step::chance);
    EXPECT_EQ(refused(request, {40, 50, 30}), std::nullopt);
    request.min_lift = 1;
    EXPECT_EQ(refused(request, {40, 50, 20}), std::nullopt);
}

TEST(RuleFilter, TakesAnyLiftEvenNoneWhereTheSmallestIsNought) {
    RuleRequest request;
    request.min_lift = 0;
    EXPECT_EQ(refused(request, {40, 50, 1}), std::nullopt);
    EXPECT_EQ(refused(request, {40, 0, 0}), std::nullopt);
    request.min_lift = 1e-9;
    EXPECT_EQ(refused(request, {40, 0, 0}), Step::chance);
}

TEST(RuleFilter, WantsBothEndsOfTheLift) {
    const Contingency by_chance = {40, 50, 20};
    const Contingency above = {40, 50, 30};
    EXPECT_EQ(refused({}, Form::R111, by_chance, above), Step::chance);
    EXPECT_EQ(refused({}, Form::R111, above, by_chance), Step::chance);
}

TEST(RuleFilter, AsksForTheLiftThenTheFormThenTheKind) {
    RuleRequest request;
    request.forms = {Form::R131};
    request.kinds = {Certainty::exact};
    EXPECT_EQ(refused(request, Form::R111, {40, 50, 20}, {40, 50, 20}), Step::chance);
    EXPECT_EQ(refused(request, Form::R111, {40, 50, 30}, {40, 50, 30}), Step::forms);
    EXPECT_EQ(refused(request, Form::R131, {40, 50, 30}, {40, 50, 30}), Step::kinds);
    EXPECT_EQ(refused(request, Form::R131, {40, 50, 40}, {40, 50, 40}), std::nullopt);
}

TEST(RuleFilter, CountsARuleAsBoundedWhereSupportOrConfidenceIsOpen) {
    RuleRequest request;
    request.kinds = {Certainty::bounded};
    EXPECT_EQ(refused(request, Form::R111, {40, 50, 30}, {40, 50, 35}), std::nullopt);
    // Only the number of the conclusion is open.
    EXPECT_EQ(refused(request, Form::R111, {40, 50, 30}, {40, 55, 30}), Step::kinds);
}

TEST(RuleFilter, AsksForItemsThenTheSize) {
    RuleRequest request;
    request.patterns = {{"--if", "a", PatternPlace::premise, true}};
    request.max_items = 2;
    EXPECT_EQ(refused(request, {2}, {1}), Step::items);
    EXPECT_EQ(refused(request, {2, 3}, {1, 4}), Step::items);
    EXPECT_EQ(refused(request, {1, 3}, {2}), Step::size);
    EXPECT_EQ(refused(request, {1}, {2}), std::nullopt);
}

TEST(RuleFilter, LimitsEachSideOfItsOwn) {
    RuleRequest request;
    request.max_items = 0;
    request.max_premise_items = 1;
    EXPECT_EQ(refused(request, {1, 3}, {2}), Step::size);
    EXPECT_EQ(refused(request, {1}, {2, 3, 4}), std::nullopt);
    request.max_premise_items = 0;
    request.max_conclusion_items = 2;
    EXPECT_EQ(refused(request, {1}, {2, 3, 4}), Step::size);
    EXPECT_EQ(refused(request, {1, 2}, {3, 4}), std::nullopt);
}

TEST(RuleFilter, TakesSixItemsAtMostUnlessItIsSaid) {
    EXPECT_EQ(refused({}, {1, 2, 3}, {4, 5, 6}), std::nullopt);
    EXPECT_EQ(refused({}, {1, 2, 3}, {4, 5, 6, 7}), Step::size);
}

TEST(RuleFilter, AsksForTheCondition) {
    RuleRequest request;
    request.where = "support >= 30 and items = 3";
    ItemsetPool pool;
    const FoundRule rule = {{pool.intern(Itemset{1}), false},
                            {pool.intern(Itemset{2, 3}), false},
                            {40, 50, 30},
                            {40, 50, 30},
                            Form::R111};
    const Itemset one = {1};
    const Itemset two = {2, 3};
    const auto refused_with = [&](const Itemset& premise) {
        return filter(request).refused_at_last(rule, {premise, false}, {two, false});
    };
    EXPECT_EQ(refused_with(one), std::nullopt);
    EXPECT_EQ(refused_with({1, 4}), Step::where);
    request.where = "";
    EXPECT_EQ(refused_with({1, 4}), std::nullopt);
}

TEST(RuleFilter, AsksForTheTestAtLast) {
    const ItemNames names(std::map<Item, std::string>{{1, "a=1"}, {2, "a=2"}});
    const Database database = {{{1, {0}}, {2, {1}}}, 100, {}, 100, {}};
    RuleRequest request;
    request.where = "support >= 30";
    const RuleFilter filter(request, 1, 100, ItemChoice(), parse_where(request.where),
                            SignificanceTest({0.05, 4, 6}, ColumnFacts(names, database), 100));
    ItemsetPool pool;
    const auto refused = [&](const Itemset& premise, const Itemset& conclusion, const Contingency& table) {
        const FoundRule rule = {
            {pool.intern(premise), false}, {pool.intern(conclusion), false}, table, table, Form::R111};
        return filter.refused_at_last(rule, {premise, false}, {conclusion, false});
    };
    EXPECT_EQ(refused({1}, {2}, {30, 30, 29}), Step::where);
    EXPECT_EQ(refused({1}, {2}, {30, 30, 30}), Step::one_column);
    EXPECT_EQ(refused({1}, {3}, {90, 40, 36}), Step::insignificant);
    EXPECT_EQ(refused({1}, {3}, {30, 30, 30}), std::nullopt);
}

}  // namespace
}  // namespace korv::tools
