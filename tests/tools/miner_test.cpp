#include "mine/miner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <map>

#include "tools/mined_class_printing.h"
#include "tools/random_database.h"

namespace korv::tools {

namespace {

using Classes = std::vector<MinedClass>;

Classes classes_of(const Database& database, const MiningOptions& options) {
    return list_of(mine(database, options).classes);
}

// Persons by travelling class and survival: 10 first class, 11 third class, 12 survived, 13 died.
const Transactions persons = {0b0101, 0b0101, 0b0110, 0b1010, 0b1010};

TEST(Mine, FindsTheClassesOfASmallDatabase) {
    // 10: {0 1}, 11: {2 3 4}, 12: {0 1 2}, 13: {3 4}. The closure of 12 holds 10, that of 11 holds 13. Two
    // items in no common transaction, such as 10 and 11, are not frequent together.
    EXPECT_EQ(classes_of(database_of(persons), {.min_support = 1}), (Classes{
                                                                        {{10}, 2, {{10}}},
                                                                        {{13}, 2, {{13}}},
                                                                        {{10, 12}, 3, {{12}}},
                                                                        {{11, 13}, 3, {{11}}},
                                                                        {{10, 11, 12, 13}, 5, {{11, 12}}},
                                                                    }));
}

TEST(Mine, LeavesOutEssentialsThatAreNotFrequent) {
    EXPECT_EQ(classes_of(database_of(persons), {.min_support = 2}), (Classes{
                                                                        {{10}, 2, {{10}}},
                                                                        {{13}, 2, {{13}}},
                                                                        {{10, 12}, 3, {{12}}},
                                                                        {{11, 13}, 3, {{11}}},
                                                                    }));
}

TEST(Mine, ClosesOverFrequentItemsOnlyUnlessAskedForAll) {
    EXPECT_EQ(classes_of(database_of(persons), {.min_support = 3}),
              (Classes{{{11}, 3, {{11}}}, {{12}, 3, {{12}}}}));
    EXPECT_EQ(classes_of(database_of(persons), {.min_support = 3, .closure_over_all = true}),
              (Classes{{{10, 12}, 3, {{12}}}, {{11, 13}, 3, {{11}}}}));
}

TEST(Mine, LimitsTheSizeOfEssentials) {
    const Classes classes = classes_of(database_of(persons), {.min_support = 1, .max_size = 1});
    EXPECT_EQ(classes.size(), 4U);
}

TEST(Mine, CollectsTheEssentialsOfAClosureBySizeThenLexicographically) {
    // 12 is in all transactions; so are 10 and 11 together, and only together.
    EXPECT_EQ(classes_of(database_of({0b101, 0b111, 0b110}), {.min_support = 1}),
              (Classes{{{10}, 2, {{10}}}, {{11}, 2, {{11}}}, {{10, 11, 12}, 3, {{12}, {10, 11}}}}));
}

TEST(Mine, FindsItemsThatNeverMeetWhereTheyNeedNotMeet) {
    // 10 and 11 exclude each other, and so do 12 and 13; each of the four pairs of one of either is in a
    // transaction or covers all.
    EXPECT_EQ(classes_of(database_of(persons), {.min_support = 2, .min_joint = 0, .max_size = 2}),
              (Classes{
                  {{10}, 2, {{10}}},
                  {{13}, 2, {{13}}},
                  {{10, 12}, 3, {{12}}},
                  {{10, 13}, 4, {{10, 13}}},
                  {{11, 13}, 3, {{11}}},
                  {{10, 11, 12, 13}, 5, {{10, 11}, {11, 12}, {12, 13}}},
              }));
}

TEST(Mine, WantsMoreTransactionsTogetherThanOfEachItem) {
    // 10 and 11 are together in two transactions, 11 and 12 in one.
    const Transactions transactions = {0b011, 0b011, 0b110, 0b001, 0b100};
    EXPECT_EQ(classes_of(database_of(transactions), {.min_support = 1, .min_joint = 2}),
              (Classes{{{10}, 3, {{10}}}, {{11}, 3, {{11}}}, {{12}, 2, {{12}}}, {{10, 11}, 4, {{10, 11}}}}));
}

TEST(Mine, WantsOwnTransactionsOfEachItem) {
    // 11 has one transaction without 10, and 10 has two without 11; 12 has two without either.
    const Transactions transactions = {0b101, 0b001, 0b011, 0b010, 0b100, 0b100};
    EXPECT_EQ(classes_of(database_of(transactions),
                         {.min_support = 1, .min_joint = 0, .min_own = 2, .max_size = 2}),
              (Classes{{{10}, 3, {{10}}},
                       {{11}, 2, {{11}}},
                       {{12}, 3, {{12}}},
                       {{10, 12}, 5, {{10, 12}}},
                       {{11, 12}, 5, {{11, 12}}}}));
}

TEST(Mine, CountsALineAsManyTimesAsItStandsForTransactions) {
    // 10 in 5 transactions, 11 in 7, both in 5.
    EXPECT_EQ(classes_of(database_of({0b11, 0b10}, {5, 2}), {.min_support = 6}),
              (Classes{{{11}, 7, {{11}}}}));
    EXPECT_EQ(classes_of(database_of({0b01, 0b11, 0b10}, {1, 5, 2}), {.min_support = 5}),
              (Classes{{{10}, 6, {{10}}}, {{11}, 7, {{11}}}, {{10, 11}, 8, {{10, 11}}}}));
}

TEST(Mine, LetsItemsInTheSameTransactionsStandForEachOther) {
    EXPECT_EQ(
        classes_of(database_of({0b011, 0b111, 0b100}), {.min_support = 1}),
        (Classes{{{12}, 2, {{12}}}, {{10, 11}, 2, {{10}, {11}}}, {{10, 11, 12}, 3, {{10, 12}, {11, 12}}}}));
}

TEST(Mine, FindsNothingWhereNoItemIsFrequent) {
    EXPECT_EQ(classes_of(database_of(persons), {.min_support = 4}), Classes{});
}

TEST(Mine, ReportsEachRootItemAtTheLatest) {
    std::vector<std::size_t> roots_done;
    MiningProgress last;
    mine(database_of(persons), {.min_support = 2}, [&](const MiningProgress& progress) {
        EXPECT_EQ(progress.roots, 4U);
        roots_done.push_back(progress.roots_done);
        last = progress;
        return true;
    });
    // First the pairs of each root item are counted, then each is done.
    EXPECT_EQ(roots_done, (std::vector<std::size_t>{0, 0, 0, 0, 1, 2, 3, 4}));
    EXPECT_EQ(last.essentials, 4U);
    EXPECT_EQ(last.classes, 4U);
    // "10 TAB 2 TAB  10," and so on, with line ends: 2 + 1 + 1 + 1 + 4 + 1 bytes, and 3 more for a second
    // item.
    EXPECT_EQ(last.file_bytes, 10U + 10U + 13U + 13U);
}

TEST(Mine, StopsWhenItIsToldTo) {
    std::size_t reports = 0;
    const MiningResult result =
        mine(database_of(persons), {.min_support = 1}, [&reports](const MiningProgress& progress) {
            ++reports;
            return progress.classes < 2;
        });
    EXPECT_FALSE(result.is_complete);
    EXPECT_EQ(list_of(result.classes), (Classes{{{10}, 2, {{10}}}, {{13}, 2, {{13}}}}));
    EXPECT_EQ(reports, 6U);
}

TEST(Mine, StopsWhileItCountsPairs) {
    std::size_t reports = 0;
    const MiningResult result = mine(database_of(persons), {.min_support = 1}, [&](const MiningProgress&) {
        ++reports;
        return false;
    });
    EXPECT_FALSE(result.is_complete);
    EXPECT_EQ(result.classes.size(), 0U);
    EXPECT_EQ(reports, 1U);
}

TEST(Mine, ReportsWithinARootItem) {
    // Each of twelve items alone and all together: 2,048 essential itemsets have the last item.
    Transactions transactions = {(Set{1} << 12) - 1};
    for (unsigned item = 0; item < 12; ++item) {
        transactions.push_back(Set{1} << item);
    }
    std::size_t within_the_last = 0;
    mine(database_of(transactions), {.min_support = 1}, [&](const MiningProgress& progress) {
        within_the_last += progress.roots_done == 11 && progress.essentials > 2047 ? 1 : 0;
        return true;
    });
    EXPECT_EQ(within_the_last, 2U);  // at 2,048 and 3,072
}

TEST(Mine, EndsWhereThereWouldBeMoreClasses) {
    const MiningResult result = mine(database_of(persons), {.min_support = 2, .max_classes = 3});
    EXPECT_FALSE(result.is_complete);
    EXPECT_EQ(list_of(result.classes),
              (Classes{{{10}, 2, {{10}}}, {{13}, 2, {{13}}}, {{11, 13}, 3, {{11}}}}));
    EXPECT_TRUE(mine(database_of(persons), {.min_support = 2, .max_classes = 4}).is_complete);
}

// Any database.

/// Transactions, and for how many each of them stands.
struct Weighted {
    Transactions transactions;
    std::vector<Count> weights;
};

/// The weight of the transactions that satisfy `is_wanted`.
template <typename IsWanted>
Count number_of(const Weighted& database, IsWanted is_wanted) {
    Count number = 0;
    for (std::size_t i = 0; i < database.transactions.size(); ++i) {
        const Count weight = database.weights.empty() ? 1 : database.weights[i];
        number += is_wanted(database.transactions[i]) ? weight : 0;
    }
    return number;
}

Count number_with_all(Set itemset, const Weighted& database) {
    return number_of(database, [itemset](Set held) { return (held & itemset) == itemset; });
}

/// Whether each item of an itemset has so many transactions that hold no other item of it.
bool have_own(Set itemset, const Weighted& database, Count min_own) {
    for (Set rest = itemset; rest != 0; rest &= rest - 1) {
        const Set item = rest & -rest;
        if (number_of(database, [&](Set held) { return (held & itemset) == item; }) < min_own) {
            return false;
        }
    }
    return true;
}

/// Whether an itemset passes the thresholds.
bool passes(Set itemset, const Weighted& database, const MiningOptions& options) {
    for (Set rest = itemset; rest != 0; rest &= rest - 1) {
        if (number_with_all(rest & -rest, database) < options.min_support) {
            return false;
        }
    }
    const auto size = static_cast<std::size_t>(std::popcount(itemset));
    const Count min_joint = options.min_joint.value_or(options.min_support);
    return size <= options.max_size && (size == 1 || number_with_all(itemset, database) >= min_joint) &&
           have_own(itemset, database, options.min_own);
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
Classes brute_force(const Weighted& database, std::size_t items, const MiningOptions& options) {
    std::map<std::pair<std::size_t, Itemset>, MinedClass> by_closure;
    for (Set itemset = 1; itemset < Set{1} << items; ++itemset) {
        if (!passes(itemset, database, options)) {
            continue;
        }
        Set closure = 0;
        for (std::size_t item = 0; item < items; ++item) {
            const Set one = Set{1} << item;
            const Count number = number_with_all(one, database);
            const bool counts = number > 0 && (options.closure_over_all || number >= options.min_support);
            const auto is_uncovered = [&](Set held) { return (held & one) != 0 && (held & itemset) == 0; };
            if (counts && number_of(database, is_uncovered) == 0) {
                closure |= one;
            }
        }
        const Itemset closed = items_of(closure);
        MinedClass& found = by_closure[{closed.size(), closed}];
        found.closure = closed;
        found.support = number_of(database, [itemset](Set held) { return (held & itemset) != 0; });
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

MiningOptions random_options(std::mt19937& random) {
    MiningOptions options = {
        .min_support = 1 + static_cast<Count>(random() % 4),
        .min_own = random() % 2 == 0 ? 1 : 1 + static_cast<Count>(random() % 4),
        .closure_over_all = random() % 2 == 0,
        .representation = random() % 2 == 0 ? Representation::dense : Representation::sparse};
    if (random() % 2 == 0) {
        options.min_joint = static_cast<Count>(random() % 6);
    }
    if (random() % 2 == 0) {
        options.max_size = 1 + random() % 4;
    }
    return options;
}

Weighted random_database(std::size_t items, std::size_t most_transactions, std::mt19937& random) {
    Weighted database = {
        random_transactions(items, most_transactions, 2 + static_cast<std::uint32_t>(random() % 5), random),
        {}};
    if (random() % 3 == 0) {
        for (std::size_t i = 0; i < database.transactions.size(); ++i) {
            database.weights.push_back(1 + static_cast<Count>(random() % 5));
        }
    }
    return database;
}

/// Compares with brute force. Returns the number of classes.
std::size_t compare(const Weighted& database, std::size_t items, const MiningOptions& options) {
    const Classes expected = brute_force(database, items, options);
    EXPECT_EQ(classes_of(database_of(database.transactions, database.weights), options), expected)
        << testing::PrintToString(database.transactions) << ", weights "
        << testing::PrintToString(database.weights) << ", min_support " << options.min_support
        << ", min_joint " << testing::PrintToString(options.min_joint) << ", min_own " << options.min_own
        << ", max_size " << options.max_size << ", closure over all " << options.closure_over_all;
    return expected.size();
}

TEST(Mine, FindsWhatBruteForceFindsInAnyDatabase) {
    constexpr std::uint32_t seed = 20261121;
    std::mt19937 random(seed);
    std::size_t found = 0;
    std::size_t without_meeting = 0;
    for (int round = 0; round < 24'000 && !testing::Test::HasFailure(); ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const std::size_t items = 1 + random() % 10;
        const Weighted database = random_database(items, 20, random);
        const MiningOptions options = random_options(random);
        const std::size_t classes = compare(database, items, options);
        found += classes;
        without_meeting += options.min_joint == Count{0} ? classes : 0;
    }
    EXPECT_GT(found, 100'000U);
    EXPECT_GT(without_meeting, 10'000U);
}

/// So many transactions that supports of itemsets of four and more items follow from those of their parts.
TEST(Mine, FindsWhatBruteForceFindsInLongDatabases) {
    constexpr std::uint32_t seed = 20261122;
    std::mt19937 random(seed);
    for (int round = 0; round < 40 && !testing::Test::HasFailure(); ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        MiningOptions options = random_options(random);
        options.max_size = std::numeric_limits<std::size_t>::max();
        const std::size_t most = options.representation == Representation::dense ? 12'000 : 1'500;
        compare(random_database(7, most, random), 7, options);
    }
}

/// Seven items of which any are together in a hundred transactions, and each is in as many without the
/// others: the support of k of them is 100 for those with all, and 100 for each of the k.
TEST(Mine, CountsLongItemsetsByTheirParts) {
    Database database;
    for (Item item = 0; item < 7; ++item) {
        Database::ItemColumn& column = database.items.emplace_back();
        column.item = item;
        for (Transaction line = 0; line < 100; ++line) {
            column.transactions.push_back(line);
        }
        for (Transaction line = 0; line < 100; ++line) {
            column.transactions.push_back(100 * (item + 1) + line);
        }
    }
    database.lines = database.transactions = 800;
    for (const Representation representation : {Representation::dense, Representation::sparse}) {
        const Classes classes = classes_of(database, {.min_support = 100, .representation = representation});
        EXPECT_EQ(classes.size(), 127U);
        for (const MinedClass& each : classes) {
            EXPECT_EQ(each.support, 100 + 100 * each.closure.size());
        }
    }
}

}  // namespace
}  // namespace korv::tools
