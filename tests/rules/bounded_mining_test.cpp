#include "rules/bounded_mining.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "io/class_loading.h"
#include "io/class_record.h"
#include "tools/complaint.h"
#include "tools/random_database.h"

namespace korv::tools {
namespace {

/// Each subset of four items: all 15 itemsets are closed and essential. Of up to 3 items there are 14, of up
/// to 2 there are 10.
Database all_subsets() {
    Transactions transactions;
    for (Set set = 0; set < 16; ++set) {
        transactions.push_back(set);
    }
    return database_of(transactions);
}

/// Each item is in 8 transactions, two of them together are in 4, three in 2.
MiningOptions options(std::size_t max_classes, std::size_t max_size) {
    return {.min_support = 1, .max_size = max_size, .max_classes = max_classes};
}

TEST(BoundedMining, ClassesThatFitAreAllThere) {
    const BoundedMining mined = mine_bounded(all_subsets(), options(15, 6));

    EXPECT_EQ(mined.classes.size(), 15U);
    EXPECT_FALSE(mined.is_reduced);
    EXPECT_EQ(mined.options.max_size, 6U);
}

TEST(BoundedMining, SizeIsAsLargeAsTheClassesAllow) {
    const BoundedMining by_one = mine_bounded(all_subsets(), options(14, 6));
    EXPECT_EQ(by_one.classes.size(), 14U);
    EXPECT_EQ(by_one.options.max_size, 3U);
    EXPECT_TRUE(by_one.is_reduced);

    const BoundedMining by_two = mine_bounded(all_subsets(), options(13, 6));
    EXPECT_EQ(by_two.classes.size(), 10U);
    EXPECT_EQ(by_two.options.max_size, 2U);
}

TEST(BoundedMining, SizeIsFoundWhereNoneWasAskedFor) {
    MiningOptions any_size = options(14, 1);
    any_size.max_size = MiningOptions().max_size;
    EXPECT_EQ(mine_bounded(all_subsets(), any_size).options.max_size, 3U);
}

TEST(BoundedMining, SizeIsAsLargeAsTheEssentialItemsetsAllow) {
    EXPECT_FALSE(mine_bounded(all_subsets(), options(100, 6), {}, 15).is_reduced);
    const BoundedMining by_one = mine_bounded(all_subsets(), options(100, 6), {}, 14);
    EXPECT_EQ(by_one.options.max_size, 3U);
    EXPECT_TRUE(by_one.has_too_many_essentials);
    const BoundedMining by_two = mine_bounded(all_subsets(), options(100, 6), {}, 13);
    EXPECT_EQ(by_two.options.max_size, 2U);
    EXPECT_EQ(by_two.classes.figures().essentials, 10U);
}

TEST(BoundedMining, PairsAreMinedHoweverManyTheirEssentialItemsetsAre) {
    const BoundedMining reduced = mine_bounded(all_subsets(), options(100, 6), {}, 3);
    EXPECT_EQ(reduced.options.max_size, 2U);
    EXPECT_TRUE(reduced.has_too_many_essentials);
    EXPECT_FALSE(mine_bounded(all_subsets(), options(100, 2), {}, 3).is_reduced);
}

TEST(BoundedMining, ClassesAreNamedAsTheReasonWhereTheyAreIt) {
    EXPECT_FALSE(mine_bounded(all_subsets(), options(14, 6), {}, 15).has_too_many_essentials);
}

TEST(BoundedMining, WherePairsAreTooManyAMinimumSupportIsNamedThatWouldDo) {
    // Items in 1, 2, ..., 20 of 20 transactions.
    Transactions transactions(20);
    for (std::size_t line = 0; line < transactions.size(); ++line) {
        for (std::size_t item = line; item < 20; ++item) {
            transactions[line] |= Set{1} << item;
        }
    }
    // Each item's closure is that of all that are in fewer transactions, so there are as many classes as
    // frequent items: with k, those of the items in k to 20 transactions.
    EXPECT_EQ(complaint_of([&] { mine_bounded(database_of(transactions), options(15, 6)); }),
              "--min-support: with 1 there are more than 15 classes, even of itemsets of at most 2 items; "
              "expected --min-support 6, or a higher --max-classes");
}

TEST(BoundedMining, WhereNoMinimumSupportWouldDoNoneIsNamed) {
    EXPECT_EQ(complaint_of([] {
                  mine_bounded(database_of({0b111, 0b111, 0b001, 0b010, 0b100}), options(2, 2));
              }),
              "--min-support: with 1 there are more than 2 classes, even of itemsets of at most 2 items; "
              "expected a higher --max-classes");
}

TEST(BoundedMining, NoClassIsAnError) {
    MiningOptions rare = options(100, 2);
    rare.min_support = 9;
    EXPECT_EQ(complaint_of([&] { mine_bounded(all_subsets(), rare); }),
              "--min-support: no item is in 9 transactions; the most frequent one is in 8");
}

TEST(BoundedMining, EndsWhereItIsToldTo) {
    EXPECT_THROW(mine_bounded(all_subsets(), options(100, 6), [](const MiningProgress&) { return false; }),
                 MiningStopped);
}

TEST(ClassMapOfMinedClasses, IsThatOfTheirClassFile) {
    std::mt19937 random(60);
    for (int i = 0; i < 500; ++i) {
        const Database database =
            database_of(random_transactions(7, 40, static_cast<std::uint32_t>(2 + random() % 3), random));
        const MiningResult mined = mine(database, {});
        std::string text;
        mined.classes.for_each([&text](const MinedClass& each) {
            append_class_record(each.closure, each.support, each.essentials, text);
        });
        std::istringstream input(text);
        const ClassMap expected = read_classes(input);

        const ClassMap classes = class_map(mined.classes);

        ASSERT_EQ(classes.size(), expected.size());
        for (const auto& [closed_itemset, of_class] : expected) {
            ASSERT_TRUE(classes.contains(closed_itemset));
            ASSERT_EQ(classes.at(closed_itemset).support, of_class.support);
            ASSERT_EQ(classes.at(closed_itemset).essentials, of_class.essentials);
        }
    }
}

}  // namespace
}  // namespace korv::tools
