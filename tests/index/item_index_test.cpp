#include "index/item_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "support/itemset_tables.h"

namespace korv {
namespace {

// Few items in many columns, so that there are lists, and bitmaps whose summaries have several words.
constexpr std::size_t columns = 9000;
constexpr Item items = 12;

std::set<Column> columns_of(const ColumnSet& words) {
    std::set<Column> result;
    for (const ColumnWord& word : words) {
        for (Column bit = 0; bit < 64; ++bit) {
            if ((word.bits >> bit & 1U) != 0) {
                result.insert(word.index * 64 + bit);
            }
        }
    }
    return result;
}

/// Random columns, every twentieth of them long: the union of eight.
std::vector<Itemset> random_columns(std::mt19937& random) {
    std::vector<Itemset> itemsets = test::random_itemsets(columns, items, random);
    for (std::size_t column = 0; column < columns; column += 20) {
        std::set<Item> united;
        for (const Itemset& itemset : test::random_itemsets(8, items, random)) {
            united.insert(itemset.begin(), itemset.end());
        }
        itemsets[column].assign(united.begin(), united.end());
    }
    return test::rarest_first(itemsets, items);
}

class RandomIndex : public ::testing::Test {
protected:
    std::set<Column> supersets(const Itemset& itemset, Column from) const {
        std::set<Column> result;
        for (Column column = from; column < columns; ++column) {
            if (is_contained(itemset, itemsets_[column])) {
                result.insert(column);
            }
        }
        return result;
    }

    /// A short itemset, or most items of a long column.
    Itemset any_itemset() {
        if (random_() % 2 == 0) {
            return test::random_itemsets(1, items, random_).front();
        }
        const std::size_t column = any_column();
        Itemset itemset = itemsets_[column - column % 20];
        const Item last = itemset.back();
        std::erase_if(itemset, [&](Item item) { return item != last && random_() % 6 == 0; });
        return itemset;
    }
    Column any_column() { return static_cast<Column>(random_() % columns); }

    std::mt19937 random_{20261121};
    std::vector<Itemset> itemsets_ = random_columns(random_);
    ItemsetTable table_ = test::table_of(itemsets_);
    ItemIndex index_{table_, items};
};

TEST_F(RandomIndex, HasItemsWithListsAndItemsWithBitmaps) {
    EXPECT_LT(supersets({0}, 0).size() * 512, columns);
    EXPECT_GT(supersets({items - 1}, 0).size() * 512, columns);
}

TEST_F(RandomIndex, IsAskedForShortAndForLongItemsets) {
    std::set<std::size_t> sizes;
    for (int round = 0; round < 100; ++round) {
        sizes.insert(any_itemset().size());
    }
    EXPECT_TRUE(sizes.contains(1));
    EXPECT_TRUE(sizes.contains(7));
}

TEST_F(RandomIndex, FindsTheFirstSuperset) {
    for (int round = 0; round < 2000; ++round) {
        const Itemset itemset = any_itemset();
        const Column from = any_column();
        const auto to = static_cast<Column>(from + any_column() % (columns - from + 1));
        const std::set<Column> all = supersets(itemset, from);
        const Column expected = all.empty() || *all.begin() >= to ? to : *all.begin();
        ASSERT_EQ(index_.first_superset(itemset, from, to), expected) << "round " << round;
    }
}

TEST_F(RandomIndex, FindsTheFirstSupersetAmongSome) {
    for (int round = 0; round < 1000; ++round) {
        const Itemset itemset = any_itemset();
        const Column from = any_column();
        std::vector<std::uint64_t> among(index_.bitmap_words());
        std::ranges::generate(among, [&] { return std::uint64_t{random_()} << 32U | random_(); });
        Column expected = columns;
        for (const Column column : supersets(itemset, from)) {
            if ((among[column / 64] >> column % 64 & 1U) != 0) {
                expected = column;
                break;
            }
        }
        ASSERT_EQ(index_.first_superset(itemset, from, columns, among.data()), expected) << "round " << round;
    }
}

TEST_F(RandomIndex, FindsAllSupersetsFromAColumnOn) {
    ColumnSet found;
    for (int round = 0; round < 1000; ++round) {
        const Itemset itemset = any_itemset();
        const Column from = any_column();
        index_.find_supersets(itemset, from, found);
        ASSERT_EQ(columns_of(found), supersets(itemset, from)) << "round " << round;
    }
}

TEST_F(RandomIndex, RemovesSupersets) {
    ColumnSet words;
    for (int round = 0; round < 1000; ++round) {
        const Itemset one = any_itemset();
        const Itemset other = any_itemset();
        index_.find_supersets(one, 0, words);
        index_.remove_supersets(other, words, 0);
        std::set<Column> expected = supersets(one, 0);
        std::erase_if(expected, [&](Column column) { return is_contained(other, itemsets_[column]); });
        ASSERT_EQ(columns_of(words), expected) << "round " << round;
    }
}

TEST_F(RandomIndex, RemovesNothingBeforeTheWordAskedFor) {
    ColumnSet words;
    const Itemset frequent = {items - 1};
    index_.find_supersets(frequent, 0, words);
    index_.remove_supersets(frequent, words, 3);
    const std::set<Column> left = columns_of(words);
    std::set<Column> expected = supersets(frequent, 0);
    const Column removed_from = words[3].index * 64;
    std::erase_if(expected, [removed_from](Column column) { return column >= removed_from; });
    EXPECT_EQ(left, expected);
}

}  // namespace
}  // namespace korv
