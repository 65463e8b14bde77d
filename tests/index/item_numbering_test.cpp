#include "index/item_numbering.h"

#include <gtest/gtest.h>

#include <numeric>

namespace korv {
namespace {

Itemset numbers_of(const Itemset& itemset, const std::vector<Itemset>& family) {
    std::vector<const Itemset*> members;
    for (const Itemset& member : family) {
        members.push_back(&member);
    }
    Itemset numbers;
    ItemNumbering(members).translate(itemset, numbers);
    return numbers;
}

TEST(ItemNumbering, GivesRarerItemsSmallerNumbers) {
    const std::vector<Itemset> family = {{1}, {1, 2}, {1, 2, 3}};
    EXPECT_EQ(numbers_of({3}, family), Itemset{0});
    EXPECT_EQ(numbers_of({2}, family), Itemset{1});
    EXPECT_EQ(numbers_of({1}, family), Itemset{2});
}

TEST(ItemNumbering, NumbersAnItemsetAscending) {
    EXPECT_EQ(numbers_of({1, 3}, {{1}, {1, 2}, {1, 2, 3}}), (Itemset{0, 2}));
}

/// Numbers an itemset of so many items, none rarer than another, whose items are the numbers.
class NumberOfItems : public ::testing::TestWithParam<Item> {};

TEST_P(NumberOfItems, DoesNotChangeTheOrder) {
    Itemset itemset(GetParam());
    std::iota(itemset.begin(), itemset.end(), Item{0});
    std::vector<Itemset> family = {itemset};
    // The last item is the rarest: 0.
    family.emplace_back(itemset.begin(), itemset.end() - 1);
    EXPECT_EQ(numbers_of(itemset, family), itemset);
    EXPECT_EQ(numbers_of({itemset.back()}, family), Itemset{0});
    EXPECT_EQ(numbers_of({itemset.front(), itemset.back()}, family), (Itemset{0, 1}));
}

INSTANTIATE_TEST_SUITE_P(FewAndMany, NumberOfItems, ::testing::Values(2, 64, 65, 511, 512, 513, 5000));

TEST(ItemNumbering, TakesEachOccurrenceForAnItemOfItsOwn) {
    const std::vector<Itemset> family = {{7}, {7, 7}, {7, 7, 7}};
    EXPECT_EQ(numbers_of({7}, family), Itemset{2});
    EXPECT_EQ(numbers_of({7, 7}, family), (Itemset{1, 2}));
}

TEST(ItemNumbering, KnowsTheLargestItem) {
    EXPECT_EQ(numbers_of({4294967295}, {{5}, {5, 4294967295}}), Itemset{0});
}

}  // namespace
}  // namespace korv
