#include "rules/association_merge.h"

#include <gtest/gtest.h>

#include <string>

#include "engine/rule_catalogue.h"
#include "support/loaded_classes.h"

namespace korv::tools {

namespace {

/// Candidates between the itemsets of a pool, of two classes.
class AssociationMergeTest : public testing::Test {
protected:
    AssociationMergeTest() : classes_("1 2 3 4\t50\t 1,\n2 3 4\t60\t 2,\n") {}

    /// Sides as items, with a minus sign where they are negated.
    MergeCandidate candidate(Form form, int premise, int conclusion,
                             const Contingency& table = {20, 20, 10}) {
        const auto itemset = [this](int item) {
            return pool_.intern(Itemset{static_cast<Item>(item < 0 ? -item : item)});
        };
        const auto [first, second] = std::minmax({itemset(premise), itemset(conclusion)});
        return {{{itemset(premise), premise < 0}, {itemset(conclusion), conclusion < 0}, table, table, form},
                {first, second, (premise < 0) != (conclusion < 0)},
                classes_.entries.data()};
    }

    /// What is left, such as "R111 1 -2 (w 2, r 3)", joined by semicolons in the order of its coming.
    std::string settled(std::vector<MergeCandidate> candidates, Readings readings) {
        std::string text;
        const AddRule add = [&](const FoundRule& rule) {
            const auto side = [this](Side each) {
                return (each.is_negated() ? " -" : " ") + std::to_string(pool_[each.itemset()].front());
            };
            text += (text.empty() ? "" : "; ") + std::string(description(rule.form).label) +
                    side(rule.premise) + side(rule.conclusion) + " (w " + std::to_string(rule.wordings) +
                    ", r " + std::to_string(rule.readings) + ")";
        };
        AssociationMerge merge(readings, pool_, accounting_, add);
        merge.settle(candidates);
        EXPECT_TRUE(candidates.empty());
        return text;
    }

    const test::LoadedClasses classes_;
    ItemsetPool pool_;
    Accounting accounting_;
};

TEST_F(AssociationMergeTest, MergesRulesOfTheSameSidesIntoTheFirst) {
    EXPECT_EQ(settled({candidate(Form::R131, 1, 2), candidate(Form::R121, 1, 2), candidate(Form::R121, 1, 2)},
                      Readings::all),
              "R131 1 2 (w 3, r 1)");
    EXPECT_EQ(accounting_[Step::same_fact], 2U);
    EXPECT_EQ(accounting_[Step::reading], 0U);
}

TEST_F(AssociationMergeTest, TakesTheCountsOfAWordingOfWhichTheyAreKnown) {
    MergeCandidate open = candidate(Form::R131, 1, 2, {20, 20, 5});
    open.rule.at_high.both = 15;
    const MergeCandidate known = candidate(Form::R121, 1, 2, {20, 20, 10});
    std::vector<Contingency> tables;
    const AddRule add = [&tables](const FoundRule& rule) { tables = {rule.at_low, rule.at_high}; };
    AssociationMerge merge(Readings::all, pool_, accounting_, add);

    std::vector candidates = {open, known};
    merge.settle(candidates);

    EXPECT_EQ(tables, (std::vector<Contingency>{{20, 20, 10}, {20, 20, 10}}));
}

TEST_F(AssociationMergeTest, TakesARuleWithinANodeForTheFirst) {
    EXPECT_EQ(settled({candidate(Form::R131, 1, 2), candidate(Form::R112, 1, 2)}, Readings::all),
              "R112 1 2 (w 2, r 1)");
}

TEST_F(AssociationMergeTest, OrdersRulesWithinNodesByTheirClosedItemsetsAndOthersByTheLattice) {
    // {1 2 3 4} comes before {2 3 4} among the itemsets, and after it in the lattice.
    MergeCandidate of_lower = candidate(Form::R111, 1, 2);
    of_lower.of_class = &classes_.entry({2, 3, 4});
    MergeCandidate of_upper = candidate(Form::R112, 1, 2);
    of_upper.of_class = &classes_.entry({1, 2, 3, 4});
    EXPECT_EQ(settled({of_lower, of_upper}, Readings::all), "R112 1 2 (w 2, r 1)");

    of_lower.rule.form = Form::R131;
    of_upper.rule.form = Form::R132;
    EXPECT_EQ(settled({of_upper, of_lower}, Readings::all), "R131 1 2 (w 2, r 1)");
}

TEST_F(AssociationMergeTest, KeepsTheReadingOfFewestNegatedSides) {
    EXPECT_EQ(
        settled({candidate(Form::R211, -1, -2, {20, 20, 20}), candidate(Form::R111, 1, 2)}, Readings::one),
        "R111 1 2 (w 1, r 2)");
    EXPECT_EQ(accounting_[Step::reading], 1U);
}

TEST_F(AssociationMergeTest, KeepsTheReadingOfHighestConfidence) {
    EXPECT_EQ(settled({candidate(Form::R111, 1, 2, {20, 15, 10}), candidate(Form::R112, 2, 1, {15, 20, 10})},
                      Readings::one),
              "R112 2 1 (w 1, r 2)");
}

TEST_F(AssociationMergeTest, KeepsTheSmallerReadingOfEqualOnes) {
    EXPECT_EQ(settled({candidate(Form::R112, 2, 1), candidate(Form::R111, 1, 2)}, Readings::one),
              "R111 1 2 (w 1, r 2)");
}

TEST_F(AssociationMergeTest, KeepsBothSignsOfTwoItemsets) {
    EXPECT_EQ(
        settled({candidate(Form::R311, 1, -2), candidate(Form::R111, 1, 2), candidate(Form::R411, -1, 2)},
                Readings::one),
        "R111 1 2 (w 1, r 1); R311 1 -2 (w 1, r 2)");
}

TEST_F(AssociationMergeTest, KeepsAllReadingsWhereTheyAreWanted) {
    EXPECT_EQ(settled({candidate(Form::R111, 1, 2), candidate(Form::R112, 2, 1)}, Readings::all),
              "R111 1 2 (w 1, r 1); R112 2 1 (w 1, r 1)");
}

TEST_F(AssociationMergeTest, DoesNothingWithoutCandidates) {
    EXPECT_EQ(settled({}, Readings::one), "");
}

}  // namespace

}  // namespace korv::tools
