#include "mine/miner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <map>
#include <ostream>
#include <tuple>

#include "tools/random_database.h"

namespace korv::tools {

bool operator==(const MinedClass& a, const MinedClass& b) {
    return std::tie(a.closure, a.support, a.essentials) == std::tie(b.closure, b.support, b.essentials);
}

// For the messages of failed expectations.
void PrintTo(const MinedClass& each, std::ostream* out) {
    *out << testing::PrintToString(each.closure) << " of support " << each.support << " by "
         << testing::PrintToString(each.essentials);
}

namespace {

using Classes = std::vector<MinedClass>;

// Persons by travelling class and survival: 10 first class, 11 third class, 12 survived, 13 died.
const Transactions persons = {0b0101, 0b0101, 0b0110, 0b1010, 0b1010};

TEST(Mine, FindsTheClassesOfASmallDatabase) {
    // 10: {0 1}, 11: {2 3 4}, 12: {0 1 2}, 13: {3 4}. The closure of 12 holds 10, that of 11 holds 13. Two
    // items in no common transaction, such as 10 and 11, are not frequent together.
    EXPECT_EQ(mine(database_of(persons), {.min_support = 1}), (Classes{
                                                                  {{10}, 2, {{10}}},
                                                                  {{13}, 2, {{13}}},
                                                                  {{10, 12}, 3, {{12}}},
                                                                  {{11, 13}, 3, {{11}}},
                                                                  {{10, 11, 12, 13}, 5, {{11, 12}}},
                                                              }));
}

TEST(Mine, LeavesOutEssentialsThatAreNotFrequent) {
    EXPECT_EQ(mine(database_of(persons), {.min_support = 2}), (Classes{
                                                                  {{10}, 2, {{10}}},
                                                                  {{13}, 2, {{13}}},
                                                                  {{10, 12}, 3, {{12}}},
                                                                  {{11, 13}, 3, {{11}}},
                                                              }));
}

TEST(Mine, ClosesOverFrequentItemsOnlyUnlessAskedForAll) {
    EXPECT_EQ(mine(database_of(persons), {.min_support = 3}),
              (Classes{{{11}, 3, {{11}}}, {{12}, 3, {{12}}}}));
    EXPECT_EQ(mine(database_of(persons), {.min_support = 3, .closure_over_all = true}),
              (Classes{{{10, 12}, 3, {{12}}}, {{11, 13}, 3, {{11}}}}));
}

TEST(Mine, LimitsTheSizeOfEssentials) {
    const Classes classes = mine(database_of(persons), {.min_support = 1, .max_size = 1});
    EXPECT_EQ(classes.size(), 4U);
}

TEST(Mine, CollectsTheEssentialsOfAClosureBySizeThenLexicographically) {
    // 12 is in all transactions; so are 10 and 11 together, and only together.
    EXPECT_EQ(mine(database_of({0b101, 0b111, 0b110}), {.min_support = 1}),
              (Classes{{{10}, 2, {{10}}}, {{11}, 2, {{11}}}, {{10, 11, 12}, 3, {{12}, {10, 11}}}}));
}

TEST(Mine, FindsNothingWhereNoItemIsFrequent) {
    EXPECT_EQ(mine(database_of(persons), {.min_support = 4}), Classes{});
}

TEST(Mine, ReportsEachRootItemAndEachOfItsExtensions) {
    std::vector<std::pair<std::size_t, double>> reported;
    mine(database_of(persons), {.min_support = 3}, [&reported](const MiningProgress& progress) {
        EXPECT_EQ(progress.roots, 2U);
        reported.emplace_back(progress.roots_done, progress.current);
    });
    // The first root has nothing before it, the second can be tried with the first.
    EXPECT_EQ(reported, (std::vector<std::pair<std::size_t, double>>{{1, 0.0}, {1, 1.0}, {2, 0.0}}));
}

// Any database.

Set transactions_with_any(Set itemset, const Transactions& transactions) {
    Set holding = 0;
    for (std::size_t i = 0; i < transactions.size(); ++i) {
        holding |= (transactions[i] & itemset) != 0 ? Set{1} << i : Set{0};
    }
    return holding;
}

std::size_t number_with_all(Set itemset, const Transactions& transactions) {
    return static_cast<std::size_t>(std::ranges::count_if(
        transactions, [itemset](Set transaction) { return (transaction & itemset) == itemset; }));
}

bool is_essential(Set itemset, const Transactions& transactions) {
    for (Set rest = itemset; rest != 0; rest &= rest - 1) {
        const Set without_one = itemset & ~(rest & -rest);
        if (transactions_with_any(without_one, transactions) ==
            transactions_with_any(itemset, transactions)) {
            return false;
        }
    }
    return true;
}

Itemset items_of(Set itemset) {
    Itemset items;
    for (Item item = 0; item < 32; ++item) {
        if ((itemset >> item & 1U) != 0) {
            items.push_back(10 + item);
        }
    }
    return items;
}

/// The definition, over all subsets of the items.
Classes brute_force(const Transactions& transactions, std::size_t items, const MiningOptions& options) {
    std::map<std::pair<std::size_t, Itemset>, MinedClass> by_closure;
    for (Set itemset = 1; itemset < Set{1} << items; ++itemset) {
        const auto size = static_cast<std::size_t>(std::popcount(itemset));
        if (size > options.max_size || number_with_all(itemset, transactions) < options.min_support ||
            !is_essential(itemset, transactions)) {
            continue;
        }
        const Set holding = transactions_with_any(itemset, transactions);
        Set closure = 0;
        for (std::size_t item = 0; item < items; ++item) {
            const Set one = Set{1} << item;
            const std::size_t number = number_with_all(one, transactions);
            const bool counts = number > 0 && (options.closure_over_all || number >= options.min_support);
            if (counts && (transactions_with_any(one, transactions) & ~holding) == 0) {
                closure |= one;
            }
        }
        const Itemset closed = items_of(closure);
        MinedClass& found = by_closure[{closed.size(), closed}];
        found.closure = closed;
        found.support = static_cast<Count>(std::popcount(holding));
        found.essentials.push_back(items_of(itemset));
    }
    Classes classes;
    for (auto& [closure, found] : by_closure) {
        std::ranges::sort(found.essentials, {},
                          [](const Itemset& each) { return std::pair(each.size(), each); });
        classes.push_back(found);
    }
    return classes;
}

TEST(Mine, FindsWhatBruteForceFindsInAnyDatabase) {
    constexpr std::uint32_t seed = 20261121;
    std::mt19937 random(seed);
    std::size_t found = 0;
    for (int round = 0; round < 12'000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const std::size_t items = 1 + random() % 10;
        const Transactions transactions =
            random_transactions(items, 20, 2 + static_cast<std::uint32_t>(random() % 5), random);
        MiningOptions options = {
            .min_support = 1 + static_cast<Count>(random() % 4),
            .closure_over_all = random() % 2 == 0,
            .representation = random() % 2 == 0 ? Representation::dense : Representation::sparse};
        if (random() % 2 == 0) {
            options.max_size = 1 + random() % 4;
        }
        const Classes expected = brute_force(transactions, items, options);
        ASSERT_EQ(mine(database_of(transactions), options), expected)
            << testing::PrintToString(transactions) << ", min_support " << options.min_support
            << ", max_size " << options.max_size << ", closure over all " << options.closure_over_all;
        found += expected.size();
    }
    EXPECT_GT(found, 50'000U);
}

}  // namespace
}  // namespace korv::tools
