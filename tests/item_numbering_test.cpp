#include "item_numbering.h"

#include <gtest/gtest.h>

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
