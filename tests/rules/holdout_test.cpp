#include "rules/holdout.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "rules/made_rules.h"
#include "rules/recount.h"

namespace korv::tools {
namespace {

/// Of 10 transactions the first 3 hold both items, and no other any.
Database twins_in_ten() {
    Database database;
    database.items = {{1, {0, 1, 2}}, {2, {0, 1, 2}}};
    database.lines = 10;
    database.transactions = 10;
    return database;
}

constexpr Contingency nowhere = {0, 0, 0};

TEST(HolmCorrection, DividesTheErrorRateAmongThoseThatAreLeft) {
    // p of 0.01, 0.04, 0.03, 0.005 become 0.03, 0.06, 0.06 and 0.02.
    const std::vector<double> corrected =
        corrected_by_holm({-std::log10(0.01), -std::log10(0.04), -std::log10(0.03), -std::log10(0.005)});
    ASSERT_EQ(corrected.size(), 4U);
    EXPECT_NEAR(std::pow(10, -corrected[0]), 0.03, 1e-12);
    EXPECT_NEAR(std::pow(10, -corrected[1]), 0.06, 1e-12);
    EXPECT_NEAR(std::pow(10, -corrected[2]), 0.06, 1e-12);
    EXPECT_NEAR(std::pow(10, -corrected[3]), 0.02, 1e-12);
}

TEST(HolmCorrection, MakesNoProbabilityLargerThanOne) {
    EXPECT_EQ(corrected_by_holm({0, 0.1, 0.2}), (std::vector<double>{0, 0, 0}));
}

TEST(HolmCorrection, LeavesASingleOneAsItIs) {
    EXPECT_EQ(corrected_by_holm({3.5}), std::vector<double>{3.5});
    EXPECT_EQ(corrected_by_holm({}), std::vector<double>());
}

TEST(HolmCorrection, TreatsEqualOnesAlike) {
    const std::vector<double> corrected = corrected_by_holm({4, 4, 4});
    EXPECT_NEAR(corrected[0], 4 - std::log10(3.0), 1e-12);
    EXPECT_EQ(corrected[1], corrected[0]);
    EXPECT_EQ(corrected[2], corrected[0]);
}

TEST(Holdout, CountsRulesOfAllSignsInOtherTransactions) {
    MadeRules rules({});
    const Database database = twins_in_ten();
    const std::vector<FoundRule> found = {known_rule(rules.any({1}), rules.any({2}), nowhere),
                                          known_rule(rules.any({1}), rules.none({2}), nowhere),
                                          known_rule(rules.none({1}), rules.any({2}), nowhere),
                                          known_rule(rules.none({1}), rules.none({2}), nowhere)};
    const auto counted = counts_in_holdout(found, rules.pool(), database);
    ASSERT_EQ(counted.size(), 4U);
    EXPECT_EQ(counted[0].counts, (Contingency{3, 3, 3}));
    EXPECT_EQ(counted[1].counts, (Contingency{3, 7, 0}));
    EXPECT_EQ(counted[2].counts, (Contingency{7, 3, 0}));
    EXPECT_EQ(counted[3].counts, (Contingency{7, 7, 7}));
    // p is 1/120 for the first and the last one, of which 4 and 3 are left to be corrected for.
    EXPECT_NEAR(counted[0].surprise, std::log10(120.0 / 4), 1e-12);
    EXPECT_NEAR(counted[3].surprise, std::log10(120.0 / 4), 1e-12);
    EXPECT_EQ(counted[1].surprise, 0);
    EXPECT_EQ(counted[2].surprise, 0);
}

class RandomHoldout {
public:
    /// Up to 40 lines of the items 1 to 6, half of the time with weights.
    Database database() {
        Database made;
        made.lines = 1 + below(40);
        made.transactions = made.lines;
        if (below(2) == 0) {
            made.transactions = 0;
            for (Count line = 0; line < made.lines; ++line) {
                made.weights.push_back(1 + below(5));
                made.transactions += made.weights.back();
            }
        }
        for (Item item = 1; item <= 6; ++item) {
            Database::ItemColumn column = {item, {}};
            for (Transaction line = 0; line < made.lines; ++line) {
                if (below(item + 1) == 0) {
                    column.transactions.push_back(line);
                }
            }
            if (!column.transactions.empty()) {
                made.items.push_back(column);
            }
        }
        return made;
    }

    /// Two disjoint sides of the items 1 to 8, of which the last two are in no line.
    std::pair<WordedSide, WordedSide> sides() {
        premise_ = {1};
        conclusion_ = {2};
        for (Item item = 3; item <= 8; ++item) {
            const Count place = below(3);
            if (place > 0) {
                (place == 1 ? premise_ : conclusion_).push_back(item);
            }
        }
        return {{premise_, below(2) == 0}, {conclusion_, below(2) == 0}};
    }

private:
    Count below(Count limit) { return static_cast<Count>(random_() % limit); }

    std::mt19937 random_{20};
    Itemset premise_;
    Itemset conclusion_;
};

TEST(Holdout, CountsAsIfLineByLine) {
    RandomHoldout random;
    for (int round = 0; round < 500; ++round) {
        const Database database = random.database();
        const auto [premise, conclusion] = random.sides();
        MadeRules rules({});
        const auto side = [&rules](const WordedSide& each) {
            const Itemset items(each.items.begin(), each.items.end());
            return each.is_negated ? rules.none(items) : rules.any(items);
        };
        const std::vector<FoundRule> found = {known_rule(side(premise), side(conclusion), nowhere)};
        EXPECT_EQ(counts_in_holdout(found, rules.pool(), database).front().counts,
                  Recount(database).count(premise, conclusion))
            << "round " << round;
    }
}

TEST(Holdout, NeverMeetsItemsThatItDoesNotHave) {
    MadeRules rules({});
    const std::vector<FoundRule> found = {known_rule(rules.any({1, 7}), rules.none({8}), nowhere)};
    EXPECT_EQ(counts_in_holdout(found, rules.pool(), twins_in_ten()).front().counts, (Contingency{3, 10, 3}));
}

TEST(Holdout, KeepsWhatItConfirmsWithItsCounts) {
    MadeRules rules({});
    std::vector<FoundRule> found = {known_rule(rules.any({1}), rules.none({2}), nowhere, Form::R311),
                                    known_rule(rules.any({1}), rules.any({2}), nowhere, Form::R111)};
    // p is 1/120, for two rules 1/60.
    std::vector<FoundRule> strictly = found;
    EXPECT_TRUE(keep_confirmed(strictly, rules.pool(), twins_in_ten(), 0.9999 / 60).empty());
    EXPECT_TRUE(strictly.empty());
    const auto counts = keep_confirmed(found, rules.pool(), twins_in_ten(), 1.0 / 60);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front().form, Form::R111);
    ASSERT_EQ(counts.size(), 1U);
    EXPECT_EQ(counts.front().counts, (Contingency{3, 3, 3}));
}

}  // namespace
}  // namespace korv::tools
