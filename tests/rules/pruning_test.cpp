#include "rules/pruning.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <iterator>
#include <ostream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "rules/plain_pruning.h"
#include "rules/random_rules.h"
#include "support/bits.h"

namespace korv::tools {

namespace {

using test::RuleSet;
using test::RuleSetShape;

/// A rule as it is typed in a test: the items of a side, negative ones for a negated side.
struct TypedRule {
    std::vector<int> premise;
    std::vector<int> conclusion;
    Contingency low;
    Contingency high;

    TypedRule(std::vector<int> if_this, std::vector<int> then_that, Contingency table)
        : premise(std::move(if_this)), conclusion(std::move(then_that)), low(table), high(table) {}
    TypedRule(std::vector<int> if_this, std::vector<int> then_that, Contingency at_low, Contingency at_high)
        : premise(std::move(if_this)), conclusion(std::move(then_that)), low(at_low), high(at_high) {}
};

Side side_of(const std::vector<int>& typed, ItemsetPool& itemsets) {
    Itemset items;
    for (const int item : typed) {
        items.push_back(static_cast<Item>(std::abs(item)));
    }
    return {itemsets.intern(items), typed.front() < 0};
}

std::string text(const Side& side, const ItemsetPool& itemsets) {
    std::string text;
    for (const Item item : itemsets[side.itemset()]) {
        text += (text.empty() ? "" : " ") +
                std::to_string(side.is_negated() ? -static_cast<int>(item) : static_cast<int>(item));
    }
    return text;
}

std::string text(const FoundRule& rule, const ItemsetPool& itemsets) {
    return text(rule.premise, itemsets) + " => " + text(rule.conclusion, itemsets);
}

std::vector<std::string> texts(const std::vector<FoundRule>& rules, const ItemsetPool& itemsets) {
    std::vector<std::string> all;
    for (const FoundRule& rule : rules) {
        all.push_back(text(rule, itemsets));
    }
    return all;
}

/// What is left, and how many rules each step left out.
struct Outcome {
    std::vector<std::string> left;
    std::array<std::size_t, 3> pruned;

    bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out) {
    *out << outcome.left.size() << " left:";
    for (const std::string& rule : outcome.left) {
        *out << "  " << rule;
    }
    *out << "; turned round " << outcome.pruned[0] << ", weaker " << outcome.pruned[1] << ", unproductive "
         << outcome.pruned[2];
}

/// prune_rules on so many threads.
auto prune_on(std::size_t threads) {
    return [threads](std::vector<FoundRule>& rules, const ItemsetPool& itemsets, Count transactions,
                     Prune prune, const Rests& rests = {}) {
        Workers workers(threads);
        return prune_rules(rules, itemsets, transactions, prune, workers, rests);
    };
}

template <typename PruneRules>
Outcome outcome_of(PruneRules prune_them, RuleSet set, Prune prune, const Rests& rests = {}) {
    const Pruned pruned = prune_them(set.rules, set.itemsets, set.transactions, prune, rests);
    return {texts(set.rules, set.itemsets), {pruned.turned_round, pruned.weaker, pruned.unproductive}};
}

/// The rests of sides in exhaustive columns, that have no more items than those.
Rests rests_of_sides(RuleSet& set, const std::vector<Itemset>& columns) {
    Rests rests(set.itemsets.size());
    for (ItemsetId side = 0; side < rests.size(); ++side) {
        rests[side] = side;
        for (const Itemset& column : columns) {
            const ItemSpan items = set.itemsets[side];
            if (is_contained(items, column) && 2 * items.size() <= column.size()) {
                Itemset rest;
                std::ranges::set_difference(column, items, std::back_inserter(rest));
                rests[side] = set.itemsets.intern(rest);
            }
        }
    }
    return rests;
}

/// Of 100 transactions. Itemsets of `column` stand for their rests.
Outcome outcome(const std::vector<TypedRule>& typed, Prune prune, const Itemset& column = {}) {
    RuleSet set;
    set.transactions = 100;
    for (const TypedRule& rule : typed) {
        const Side premise = side_of(rule.premise, set.itemsets);
        const Side conclusion = side_of(rule.conclusion, set.itemsets);
        set.rules.push_back({premise, conclusion, rule.low, rule.high, Form::R111});
    }
    const Rests rests = rests_of_sides(set, {column});
    return outcome_of(prune_on(1), set, prune, rests);
}

using Left = std::vector<std::string>;

TEST(PruneRules, LeavesEverythingIfNothingIsToBePruned) {
    const Outcome found = outcome({{{1}, {2}, {10, 20, 10}}, {{-2}, {-1}, {80, 90, 80}}}, Prune::none);

    EXPECT_EQ(found, (Outcome{{"1 => 2", "-2 => -1"}, {0, 0, 0}}));
}

TEST(PruneRules, KeepsTheOrderOfTheRulesThatAreLeft) {
    const Outcome found =
        outcome({{{9}, {2}, {10, 20, 9}}, {{1}, {2, 3}, {10, 30, 8}}, {{1}, {2}, {10, 20, 8}}}, Prune::full);

    EXPECT_EQ(found, (Outcome{{"9 => 2", "1 => 2"}, {0, 1, 0}}));
}

TEST(PruneRules, LeavesOutADominatedRuleOfTheSameConclusionOnlyUnderSame) {
    // The first dominates the second, whose premise is smaller, and the third, whose conclusion is larger.
    const std::vector<TypedRule> rules = {
        {{1, 2}, {5}, {20, 30, 18}}, {{1}, {5}, {10, 30, 9}}, {{1, 2}, {5, 6}, {20, 40, 18}}};

    EXPECT_EQ(outcome(rules, Prune::same), (Outcome{{"1 2 => 5", "1 2 => 5 6"}, {0, 1, 0}}));
    EXPECT_EQ(outcome(rules, Prune::full), (Outcome{{"1 2 => 5"}, {0, 2, 0}}));
}

TEST(PruneRules, KeepsARuleThatIsMoreConfidentThanTheOneThatDominatesItInItems) {
    const std::vector<TypedRule> rules = {{{1, 2}, {5}, {20, 30, 17}}, {{1}, {5}, {10, 30, 9}}};

    EXPECT_EQ(outcome(rules, Prune::full), (Outcome{{"1 2 => 5", "1 => 5"}, {0, 0, 0}}));
}

TEST(PruneRules, ComparesTheLowerEndOfABoundedRuleWithTheUpperEndOfAnother) {
    // 16/20 to 18/20 against 9/10, then against 8/10.
    const TypedRule bounded = {{1, 2}, {5}, {20, 30, 16}, {20, 30, 18}};

    EXPECT_EQ(outcome({bounded, {{1}, {5}, {10, 30, 9}}}, Prune::full).left, (Left{"1 2 => 5", "1 => 5"}));
    EXPECT_EQ(outcome({bounded, {{1}, {5}, {10, 30, 8}}}, Prune::full).left, (Left{"1 2 => 5"}));
    // 8/10 to 9/10 against 9/10: the upper end of the weaker one counts.
    EXPECT_EQ(
        outcome({{{1, 2}, {5}, {20, 30, 17}}, {{1}, {5}, {10, 30, 8}, {10, 30, 9}}}, Prune::full).left.size(),
        2U);
    EXPECT_EQ(
        outcome({{{1, 2}, {5}, {20, 30, 18}}, {{1}, {5}, {10, 30, 8}, {10, 30, 9}}}, Prune::full).left.size(),
        1U);
}

TEST(PruneRules, ComparesConfidencesExactly) {
    // 2147483646/2147483647 is more than 2147483645/2147483646; as floating-point numbers of 53 bits they are
    // the same.
    const Contingency larger = {2147483647, 2147483647, 2147483646};
    const Contingency smaller = {2147483646, 2147483647, 2147483645};

    EXPECT_EQ(outcome({{{1, 2}, {5}, smaller}, {{1}, {5}, larger}}, Prune::full).left.size(), 2U);
    EXPECT_EQ(outcome({{{1, 2}, {5}, larger}, {{1}, {5}, smaller}}, Prune::full).left.size(), 1U);
}

TEST(PruneRules, KeepsOneOfTwoContrapositivesWithoutException) {
    // Plain sides first.
    EXPECT_EQ(outcome({{{-2}, {-1, -3}, {80, 90, 80}}, {{1, 3}, {2}, {10, 20, 10}}}, Prune::same),
              (Outcome{{"1 3 => 2"}, {1, 0, 0}}));
    // Then the smaller premise.
    EXPECT_EQ(outcome({{{2}, {-1}, {20, 90, 20}}, {{1}, {-2}, {10, 80, 10}}}, Prune::same),
              (Outcome{{"1 => -2"}, {1, 0, 0}}));
    EXPECT_EQ(outcome({{{-2}, {1, 3}, {20, 80, 20}}, {{-1, -3}, {2}, {20, 80, 20}}}, Prune::same),
              (Outcome{{"-1 -3 => 2"}, {1, 0, 0}}));
}

TEST(PruneRules, KeepsBothContrapositivesIfTheyHaveExceptions) {
    const std::vector<TypedRule> rules = {{{-2}, {-1}, {80, 90, 79}}, {{1}, {2}, {10, 20, 9}}};

    EXPECT_EQ(outcome(rules, Prune::full), (Outcome{{"-2 => -1", "1 => 2"}, {0, 0, 0}}));
}

TEST(PruneRules, CountsAContrapositiveAsTurnedRoundThoughBothAreWeaker) {
    const std::vector<TypedRule> rules = {
        {{1, 4}, {2}, {15, 20, 15}}, {{1}, {2}, {10, 20, 10}}, {{-2}, {-1}, {80, 90, 80}}};

    EXPECT_EQ(outcome(rules, Prune::full), (Outcome{{"1 4 => 2"}, {1, 1, 0}}));
}

TEST(PruneRules, LeavesOutWhatAnExclusionImpliesTheOtherWayRound) {
    const std::vector<TypedRule> rules = {{{1, 2}, {-5, -6}, {20, 70, 20}}, {{5}, {-1}, {10, 90, 10}}};

    EXPECT_EQ(outcome(rules, Prune::same).left.size(), 2U);
    EXPECT_EQ(outcome(rules, Prune::full), (Outcome{{"1 2 => -5 -6"}, {0, 1, 0}}));
}

TEST(PruneRules, ComparesTheUnionsOfRulesThatSayEverybodyMeetsOne) {
    const std::vector<TypedRule> rules = {
        {{-3}, {1}, {30, 80, 30}}, {{-1, -2}, {3, 4}, {10, 90, 10}}, {{-1, -4}, {2, 3}, {10, 90, 10}}};

    EXPECT_EQ(outcome(rules, Prune::full), (Outcome{{"-3 => 1"}, {0, 2, 0}}));
    EXPECT_EQ(outcome({rules[2], rules[1]}, Prune::full), (Outcome{{"-1 -2 => 3 4"}, {0, 1, 0}}));
    EXPECT_EQ(outcome(rules, Prune::same).left.size(), 3U);
}

TEST(PruneRules, LeavesOutARuleThatGainsLessThanATransactionOverOneOfFewerItems) {
    // Beyond what chance gives: 7, 7, 7.8 and 8. None dominates: the longer premises are less confident.
    const std::vector<TypedRule> rules = {{{1}, {5}, {10, 20, 9}},
                                          {{1, 2}, {5}, {20, 20, 11}},
                                          {{1, 3}, {5}, {16, 20, 11}},
                                          {{1, 4}, {5}, {20, 20, 12}}};

    EXPECT_EQ(outcome(rules, Prune::full).left.size(), 4U);
    EXPECT_EQ(outcome(rules, Prune::productive), (Outcome{{"1 => 5", "1 4 => 5"}, {0, 0, 2}}));
}

TEST(PruneRules, ComparesASideByTheRestOfItsColumnAsWell) {
    // Whoever is not 2 is 1. Beyond what chance gives: 7 and, for not 1 => 3 or 5, 7.2.
    const TypedRule shorter = {{2}, {-3}, {10, 20, 9}};
    const TypedRule longer = {{1, 4}, {3}, {12, 40, 12}};

    EXPECT_EQ(outcome({longer, shorter}, Prune::productive).left.size(), 2U);
    EXPECT_EQ(outcome({longer, shorter}, Prune::productive, {1, 2}), (Outcome{{"2 => -3"}, {0, 0, 1}}));
    EXPECT_EQ(outcome({longer, shorter}, Prune::full, {1, 2}).left.size(), 2U);
    // The one says the opposite of the other.
    EXPECT_EQ(outcome({{{1, 4}, {-3}, {12, 40, 12}}, shorter}, Prune::productive, {1, 2}).left.size(), 2U);
}

TEST(PruneRules, ARuleThatIsLeftOutStillLeavesOutLongerOnes) {
    // Beyond what chance gives: 7, 7.8 and 8.6.
    const std::vector<TypedRule> rules = {
        {{1}, {5}, {10, 20, 9}}, {{1, 3}, {5}, {16, 20, 11}}, {{1, 2, 3}, {5}, {22, 20, 13}}};

    EXPECT_EQ(outcome(rules, Prune::productive), (Outcome{{"1 => 5"}, {0, 0, 2}}));
    EXPECT_EQ(outcome({rules[0], rules[2]}, Prune::productive).left.size(), 2U);
}

TEST(PruneRules, ComparesNoSideByTheRestOfItsColumnWithOneThatFurtherItemsNarrow) {
    // Whoever is not 1 is 2. 2 => 3, and the same of those who are not 4, either.
    const std::vector<TypedRule> rules = {{{2}, {3}, {20, 20, 14}}, {{-1, -4}, {3}, {10, 20, 9}}};

    EXPECT_EQ(outcome(rules, Prune::productive, {1, 2}).left.size(), 2U);
}

TEST(PruneRules, ARuleThatIsLeftOutStillLeavesOutOthersByTheRestOfAColumn) {
    // Beyond what chance gives: 7, 7.6 and 8.2. Whoever is not 2 is 1.
    const std::vector<TypedRule> rules = {
        {{2}, {6}, {10, 20, 9}}, {{2}, {3, 6}, {10, 24, 10}}, {{1, 4}, {-3, -6}, {10, 18, 10}}};

    EXPECT_EQ(outcome(rules, Prune::productive, {1, 2}), (Outcome{{"2 => 6"}, {0, 0, 2}}));
    EXPECT_EQ(outcome({rules[0], rules[2]}, Prune::productive, {1, 2}).left.size(), 2U);
}

TEST(PruneRules, KeepsABoundedRuleThatMayGainATransactionOverOneOfFewerItems) {
    // Beyond what chance gives: 8 against 7 to 9, then against 7 to 8.
    const TypedRule shorter = {{1}, {5}, {10, 10, 9}};

    EXPECT_EQ(outcome({shorter, {{1, 2}, {5}, {20, 10, 9}, {20, 10, 11}}}, Prune::productive).left.size(),
              2U);
    EXPECT_EQ(outcome({shorter, {{1, 2}, {5}, {20, 10, 9}, {20, 10, 10}}}, Prune::productive).left.size(),
              1U);
}

TEST(PruneRules, ComparesLeverageWhicheverSideIsThePremise) {
    // 500 - 200 against 600 - 400 in 10,000.
    const Contingency shorter = {5, 40, 5};
    const Contingency longer = {10, 40, 6};
    using Sides = std::array<std::vector<int>, 2>;
    const std::vector<std::pair<Sides, Sides>> pairs = {
        {{{{1}, {2}}}, {{{2, 3}, {1}}}},    {{{{1}, {2}}}, {{{2}, {1, 3}}}},
        {{{{-1}, {-2}}}, {{{2, 3}, {1}}}},  {{{{1}, {2}}}, {{{-1, -3}, {-2}}}},
        {{{{1}, {-2}}}, {{{2, 3}, {-1}}}},  {{{{1}, {-2}}}, {{{-1, -3}, {2}}}},
        {{{{-1}, {2}}}, {{{2}, {-1, -3}}}}, {{{{-1}, {2}}}, {{{1}, {-2, -3}}}},
    };
    for (const auto& [inner, outer] : pairs) {
        const TypedRule kept = {inner[0], inner[1], shorter};
        const TypedRule left_out = {outer[0], outer[1], longer};

        EXPECT_EQ(outcome({left_out, kept}, Prune::productive),
                  (Outcome{outcome({kept}, Prune::none).left, {0, 0, 1}}));
        EXPECT_EQ(outcome({left_out, kept}, Prune::full).left.size(), 2U);
    }
}

TEST(PruneRules, ComparesNoLeverageOfRulesThatSayTheOpposite) {
    const TypedRule shorter = {{1}, {2}, {5, 40, 5}};
    const Contingency longer = {10, 40, 6};

    EXPECT_EQ(outcome({shorter, {{1, 3}, {-2}, longer}}, Prune::productive).left.size(), 2U);
    EXPECT_EQ(outcome({shorter, {{-2}, {1, 3}, longer}}, Prune::productive).left.size(), 2U);
    EXPECT_EQ(outcome({shorter, {{2}, {-1, -3}, longer}}, Prune::productive).left.size(), 2U);
}

TEST(PruneRules, ComparesNoLeverageOfRulesOfTheSameItemsets) {
    // Leverage times 10,000: 800, 700, 600.
    const std::vector<TypedRule> rules = {
        {{1}, {2}, {10, 10, 9}}, {{2}, {1}, {10, 10, 8}}, {{-1}, {-2}, {10, 10, 7}}};

    EXPECT_EQ(outcome(rules, Prune::productive).left.size(), 3U);
}

TEST(PruneRules, OfRulesOfTheSameItemsetsTheBestOneLeavesOutLongerOnes) {
    // Beyond what chance gives: 7 and 8 against 8, whichever comes first.
    const TypedRule longer = {{1, 3}, {2}, {20, 10, 10}};
    const TypedRule weak = {{2}, {1}, {10, 10, 8}};
    const TypedRule strong = {{-1}, {-2}, {10, 10, 9}};

    EXPECT_EQ(outcome({longer, weak}, Prune::productive).left.size(), 2U);
    EXPECT_EQ(outcome({longer, weak, strong}, Prune::productive),
              (Outcome{{"2 => 1", "-1 => -2"}, {0, 0, 1}}));
    EXPECT_EQ(outcome({longer, strong, weak}, Prune::productive),
              (Outcome{{"-1 => -2", "2 => 1"}, {0, 0, 1}}));
}

TEST(PruneRules, NeitherLeavesOutNorComparesByConfidenceARuleWhosePremiseMayHoldForNobody) {
    const std::vector<TypedRule> rules = {{{1, 2}, {5}, {0, 30, 0}, {20, 30, 20}}, {{1}, {5}, {10, 30, 9}}};

    EXPECT_EQ(outcome(rules, Prune::full).left.size(), 2U);
}

TEST(PruneRules, HasNothingToDoWithoutRules) {
    EXPECT_EQ(outcome({}, Prune::productive), (Outcome{{}, {0, 0, 0}}));
}

// --- Five items, all rules ---

/// Everything that two sides over five items can say: a bit for each of the 32 possible transactions.
using Transactions = std::uint32_t;

constexpr test::Bits five_items = 0b11111;

struct SmallRule {
    test::Bits premise;
    bool is_premise_negated;
    test::Bits conclusion;
    bool is_conclusion_negated;
};

std::vector<SmallRule> all_small_rules() {
    std::vector<SmallRule> rules;
    for (test::Bits premise = 1; premise <= five_items; ++premise) {
        for (test::Bits conclusion = 1; conclusion <= five_items; ++conclusion) {
            if ((premise & conclusion) != 0) {
                continue;
            }
            for (const bool is_premise_negated : {false, true}) {
                for (const bool is_conclusion_negated : {false, true}) {
                    rules.push_back({premise, is_premise_negated, conclusion, is_conclusion_negated});
                }
            }
        }
    }
    return rules;
}

Transactions that_meet(test::Bits items, bool is_negated) {
    Transactions meeting = 0;
    for (test::Bits transaction = 0; transaction <= five_items; ++transaction) {
        const bool meets_any = (transaction & items) != 0;
        meeting |= Transactions{meets_any != is_negated ? 1U : 0U} << transaction;
    }
    return meeting;
}

/// The transactions that cannot be if a rule has no exception.
Transactions forbidden(const SmallRule& rule) {
    return that_meet(rule.premise, rule.is_premise_negated) &
           ~that_meet(rule.conclusion, rule.is_conclusion_negated);
}

bool is_subset(Transactions inner, Transactions outer) {
    return (inner & ~outer) == 0;
}

FoundRule found(const SmallRule& rule, ItemsetPool& itemsets, const Contingency& table) {
    return {{itemsets.intern(test::itemset_of(rule.premise)), rule.is_premise_negated},
            {itemsets.intern(test::itemset_of(rule.conclusion)), rule.is_conclusion_negated},
            table,
            table,
            Form::R111};
}

TEST(RelationsOfSides, AreThoseOfTheItems) {
    ItemsetPool itemsets;
    for (test::Bits a = 1; a <= five_items; ++a) {
        for (test::Bits b = 1; b <= five_items; ++b) {
            for (const auto& [is_a_negated, is_b_negated] :
                 {std::pair(false, false), {false, true}, {true, false}, {true, true}}) {
                const Side side = {itemsets.intern(test::itemset_of(a)), is_a_negated};
                const Side other = {itemsets.intern(test::itemset_of(b)), is_b_negated};

                EXPECT_EQ(test::implies(side, other, itemsets),
                          is_subset(that_meet(a, is_a_negated), that_meet(b, is_b_negated)));
            }
        }
    }
}

TEST(RelationsOfRules, DominanceIsAWiderPremiseAndANarrowerConclusion) {
    ItemsetPool itemsets;
    const std::vector<SmallRule> rules = all_small_rules();
    std::size_t pairs = 0;
    for (const SmallRule& a : rules) {
        for (const SmallRule& b : rules) {
            const bool is_same = &a == &b;
            const bool is_wider = is_subset(that_meet(b.premise, b.is_premise_negated),
                                            that_meet(a.premise, a.is_premise_negated));
            const bool is_narrower = is_subset(that_meet(a.conclusion, a.is_conclusion_negated),
                                               that_meet(b.conclusion, b.is_conclusion_negated));
            ASSERT_EQ(test::dominates_in_items(found(a, itemsets, {}), found(b, itemsets, {}), itemsets),
                      is_wider && is_narrower && !is_same);
            ++pairs;
        }
    }
    EXPECT_EQ(pairs, 518'400U);
}

/// Whether a rule says that everybody meets one of its items.
bool is_alternative(const SmallRule& rule) {
    return rule.is_premise_negated && !rule.is_conclusion_negated;
}

/// Whether everybody meets the conclusion, or nobody the premise, if everybody meets one of `items`.
bool is_idle(const SmallRule& rule, test::Bits items) {
    return (!rule.is_conclusion_negated && is_subset(items, rule.conclusion)) ||
           (rule.is_premise_negated && is_subset(items, rule.premise));
}

TEST(RelationsOfRules, WhatARuleWithoutExceptionImpliesFollowsFromItsItems) {
    ItemsetPool itemsets;
    const std::vector<SmallRule> rules = all_small_rules();
    std::size_t idle = 0;
    for (const SmallRule& a : rules) {
        for (const SmallRule& b : rules) {
            const bool is_implied = is_subset(forbidden(b), forbidden(a));
            const bool is_implied_in_items =
                test::statement_implies(found(a, itemsets, {}), found(b, itemsets, {}), itemsets);
            // Whoever says that everybody meets one of some items makes rules idle that conclude them. They
            // are implied, but have no lift: they are left to the choice by lift.
            const bool is_made_idle =
                is_alternative(a) && !is_alternative(b) && is_idle(b, a.premise | a.conclusion);
            ASSERT_EQ(is_implied, is_implied_in_items || is_made_idle);
            idle += is_made_idle && !is_implied_in_items ? 1 : 0;
        }
    }
    EXPECT_GT(idle, 0U);
}

TEST(PruneRules, OfTwoRulesWithoutExceptionKeepsTheOneThatImpliesTheOther) {
    ItemsetPool itemsets;
    std::vector<FoundRule> all;
    const std::vector<SmallRule> small = all_small_rules();
    for (const SmallRule& rule : small) {
        all.push_back(found(rule, itemsets, {10, 50, 10}));
    }
    for (std::size_t a = 0; a < small.size(); ++a) {
        for (std::size_t b = 0; b < a; ++b) {
            const Transactions of_a = forbidden(small[a]);
            const Transactions of_b = forbidden(small[b]);
            const bool are_of_a_kind = is_alternative(small[a]) == is_alternative(small[b]);
            const bool is_one_redundant = are_of_a_kind && (is_subset(of_a, of_b) || is_subset(of_b, of_a));
            std::vector<FoundRule> rules = {all[a], all[b]};

            prune_on(1)(rules, itemsets, 100, Prune::full);

            ASSERT_EQ(rules.size(), is_one_redundant ? 1U : 2U)
                << text(all[a], itemsets) << ", " << text(all[b], itemsets);
            if (is_one_redundant && of_a != of_b) {
                ASSERT_EQ(text(rules[0], itemsets), text(is_subset(of_a, of_b) ? all[b] : all[a], itemsets));
            }
        }
    }
}

// --- Random rules ---

constexpr std::array every_prune = {Prune::same, Prune::full, Prune::productive};

void expect_as_plain(RuleSet set, unsigned seed) {
    const Rests rests = seed % 2 == 0 ? Rests() : rests_of_sides(set, {{1, 2}, {3, 4, 5}});
    for (const Prune prune : every_prune) {
        ASSERT_EQ(outcome_of(prune_on(1 + seed % 3), set, prune, rests),
                  outcome_of(test::prune_rules_plainly, set, prune, rests))
            << "seed " << seed << ", --prune " << static_cast<int>(prune);
    }
}

struct RandomCase {
    const char* name;
    RuleSetShape shape;
    unsigned sets;
};

void PrintTo(const RandomCase& one, std::ostream* out) {
    *out << one.name;
}

class PruneRandomRules : public testing::TestWithParam<RandomCase> {};

TEST_P(PruneRandomRules, OfADatabaseAsThePlainAlgorithmDoes) {
    for (unsigned seed = 0; seed < GetParam().sets; ++seed) {
        std::mt19937 random(seed);
        expect_as_plain(rules_of_database(GetParam().shape, random), seed);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST_P(PruneRandomRules, ThatContradictEachOtherAsThePlainAlgorithmDoes) {
    for (unsigned seed = 0; seed < GetParam().sets; ++seed) {
        std::mt19937 random(seed);
        expect_as_plain(contradictory_rules(GetParam().shape, random), seed);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST_P(PruneRandomRules, SoThatWhatIsLeftOutFollowsFromOneThatIsKept) {
    std::size_t left_out = 0;
    for (unsigned seed = 0; seed < GetParam().sets; ++seed) {
        std::mt19937 random(seed);
        const RuleSet set = rules_of_database(GetParam().shape, random);
        std::vector<FoundRule> kept = set.rules;
        prune_on(1)(kept, set.itemsets, set.transactions, Prune::full);
        left_out += set.rules.size() - kept.size();
        for (const FoundRule& rule : set.rules) {
            ASSERT_TRUE(std::ranges::any_of(
                kept,
                [&](const FoundRule& one) {
                    return (one.premise == rule.premise && one.conclusion == rule.conclusion) ||
                           test::dominates(one, rule, set.itemsets) ||
                           (test::has_no_exception(one) && test::statement_implies(one, rule, set.itemsets));
                }))
                << "seed " << seed << ": " << text(rule, set.itemsets);
        }
    }
    EXPECT_GT(left_out, GetParam().sets);
}

TEST_P(PruneRandomRules, WhateverTheirOrder) {
    for (unsigned seed = 0; seed < GetParam().sets / 10; ++seed) {
        std::mt19937 random(seed);
        RuleSet set = rules_of_database(GetParam().shape, random);
        Outcome before = outcome_of(prune_on(1), set, Prune::productive);
        std::ranges::shuffle(set.rules, random);
        Outcome after = outcome_of(prune_on(1), set, Prune::productive);
        std::ranges::sort(before.left);
        std::ranges::sort(after.left);
        ASSERT_EQ(before, after) << "seed " << seed;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rules, PruneRandomRules,
    testing::Values(RandomCase{"FewItems", {.items = 4, .rules = 30, .most_items = 3}, 20'000},
                    RandomCase{"FiveItemsKnown",
                               {.items = 5, .rules = 60, .most_items = 4, .one_is_bounded_of = 0},
                               5'000},
                    RandomCase{"ShortOnes", {.items = 8, .rules = 150, .most_items = 4}, 1'000},
                    RandomCase{"ShortAndLongOnes", {.items = 14, .rules = 200, .most_items = 8}, 500},
                    RandomCase{"LongOnes", {.items = 60, .rules = 300, .most_items = 30}, 100},
                    RandomCase{"ManyBlocks", {.items = 24, .rules = 3'000, .most_items = 12}, 3},
                    RandomCase{"ManyItems", {.items = 600, .rules = 400, .most_items = 40}, 50}),
    [](const auto& one) { return one.param.name; });

}  // namespace

}  // namespace korv::tools
