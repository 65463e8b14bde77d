#include "index/item_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "support/bits.h"
#include "support/itemset_tables.h"

namespace korv {
namespace {

// Few items in many columns, so that there are lists, and bitmaps whose summaries have several words.
constexpr std::size_t columns = 9000;
constexpr Item items = 12;

using Columns = std::vector<Column>;

/// The columns of words, which must ascend.
Columns columns_of(const ColumnSet& words) {
    Columns result;
    EXPECT_TRUE(std::ranges::is_sorted(words, std::ranges::less_equal(), &ColumnWord::index));
    for (const ColumnWord& word : words) {
        for (Column bit = 0; bit < 64; ++bit) {
            if ((word.bits >> bit & 1U) != 0) {
                result.push_back(word.index * 64 + bit);
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
    Columns supersets(const Itemset& itemset, Column from) const {
        Columns result;
        for (Column column = from; column < columns; ++column) {
            if (is_contained(itemset, itemsets_[column])) {
                result.push_back(column);
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
    std::vector<ItemIndex::Hit> hits_;
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
        const Columns all = supersets(itemset, from);
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
        index_.remove_supersets(other, words, 0, hits_);
        Columns expected = supersets(one, 0);
        std::erase_if(expected, [&](Column column) { return is_contained(other, itemsets_[column]); });
        ASSERT_EQ(columns_of(words), expected) << "round " << round;
    }
}

TEST_F(RandomIndex, RemovesNothingBeforeTheWordAskedFor) {
    ColumnSet words;
    const Itemset frequent = {items - 1};
    index_.find_supersets(frequent, 0, words);
    index_.remove_supersets(frequent, words, 3, hits_);
    const Columns left = columns_of(words);
    Columns expected = supersets(frequent, 0);
    const Column removed_from = words[3].index * 64;
    std::erase_if(expected, [removed_from](Column column) { return column >= removed_from; });
    EXPECT_EQ(left, expected);
}

// By hand.

/// {2} {0 2} {1 2} {0 1 2}: the items 0 and 1 in two columns each, 2 in all.
class FourColumns : public ::testing::Test {
protected:
    Columns supersets(const Itemset& itemset, Column from) const {
        ColumnSet found = {{7, 7}};
        index_.find_supersets(itemset, from, found);
        return columns_of(found);
    }

    ItemsetTable table_ = test::table_of({{2}, {0, 2}, {1, 2}, {0, 1, 2}});
    ItemIndex index_{table_, 4};
    std::vector<ItemIndex::Hit> hits_;
};

TEST_F(FourColumns, AreFoundByWhatTheyContain) {
    EXPECT_EQ(supersets({2}, 0), (Columns{0, 1, 2, 3}));
    EXPECT_EQ(supersets({0}, 0), (Columns{1, 3}));
    EXPECT_EQ(supersets({0, 1}, 0), (Columns{3}));
    EXPECT_EQ(supersets({2}, 2), (Columns{2, 3}));
    EXPECT_EQ(supersets({2}, 4), Columns{});
    EXPECT_EQ(supersets({3}, 0), Columns{});
}

TEST_F(FourColumns, AreFoundOneByOne) {
    EXPECT_EQ(index_.first_superset(Itemset{2}, 0, 4), 0U);
    EXPECT_EQ(index_.first_superset(Itemset{2}, 1, 4), 1U);
    EXPECT_EQ(index_.first_superset(Itemset{1}, 0, 4), 2U);
    EXPECT_EQ(index_.first_superset(Itemset{0, 1}, 0, 4), 3U);
    EXPECT_EQ(index_.first_superset(Itemset{0, 1}, 0, 3), 3U);
    EXPECT_EQ(index_.first_superset(Itemset{1}, 0, 1), 1U);
    EXPECT_EQ(index_.first_superset(Itemset{1}, 2, 2), 2U);
    EXPECT_EQ(index_.first_superset(Itemset{3}, 0, 4), 4U);
    const std::vector<std::uint64_t> among = {0b1001};
    EXPECT_EQ(index_.first_superset(Itemset{2}, 0, 4, among.data()), 0U);
    EXPECT_EQ(index_.first_superset(Itemset{2}, 1, 4, among.data()), 3U);
    EXPECT_EQ(index_.first_superset(Itemset{2}, 1, 3, among.data()), 3U);
}

TEST_F(FourColumns, AreTakenOut) {
    ColumnSet all;
    index_.find_supersets(Itemset{2}, 0, all);
    index_.remove_supersets(Itemset{0}, all, 1, hits_);
    EXPECT_EQ(columns_of(all), (Columns{0, 1, 2, 3}));
    index_.remove_supersets(Itemset{0}, all, 0, hits_);
    EXPECT_EQ(columns_of(all), (Columns{0, 2}));
    index_.remove_supersets(Itemset{2}, all, 0, hits_);
    EXPECT_EQ(columns_of(all), Columns{});
}

// Where words and groups of words begin and end.

/// So many columns. Item 0 is in every other of those at such places, item 1 in two of three; the others are
/// in nearly all columns.
class Boundaries : public ::testing::TestWithParam<Column> {
protected:
    static constexpr Item items_here = 8;

    static Columns places() {
        Columns result = {0,    1,    2,    62,   63,   64,   65,   127,  128,
                          4031, 4032, 4095, 4096, 4097, 4160, 8191, 8192, 8193};
        std::erase_if(result, [](Column place) { return place >= GetParam(); });
        result.push_back(GetParam());
        return result;
    }

    static std::vector<Itemset> itemsets_with_places() {
        constexpr Item rare = 2;
        std::mt19937 random(GetParam());
        std::vector<Itemset> itemsets(GetParam());
        for (Itemset& itemset : itemsets) {
            for (Item item = rare; item < items_here; ++item) {
                if (random() % 8 != 0) {
                    itemset.push_back(item);
                }
            }
            if (itemset.empty()) {
                itemset.push_back(rare);
            }
        }
        for (std::size_t i = 0; places()[i] < itemsets.size(); ++i) {
            Itemset& itemset = itemsets[places()[i]];
            if (i % 3 != 2) {
                itemset.insert(itemset.begin(), 1);
            }
            if (i % 2 == 1) {
                itemset.insert(itemset.begin(), 0);
            }
        }
        return test::rarest_first(itemsets, items_here);
    }

    Columns supersets(const Itemset& itemset) const {
        Columns result;
        for (Column column = 0; column < itemsets_.size(); ++column) {
            if (is_contained(itemset, itemsets_[column])) {
                result.push_back(column);
            }
        }
        return result;
    }

    /// Calls `visit` with each itemset, the columns that contain it, and each place to begin at.
    template <typename Visit>
    void for_each_query(Visit visit) const {
        for (test::Bits bits = 1; bits < test::Bits{1} << items_here; ++bits) {
            Itemset itemset = test::itemset_of(bits);
            std::ranges::for_each(itemset, [](Item& item) { --item; });
            const Columns holding = supersets(itemset);
            for (const Column from : places()) {
                SCOPED_TRACE(testing::PrintToString(itemset) + " from " + std::to_string(from));
                ASSERT_NO_FATAL_FAILURE(visit(itemset, holding, from));
            }
        }
    }

    /// The first of ascending columns in [from, to), or `to`.
    static Column first_within(const Columns& ascending, Column from, Column to) {
        const auto first =
            std::ranges::find_if(ascending, [&](Column column) { return from <= column && column < to; });
        return first == ascending.end() ? to : *first;
    }

    std::vector<Itemset> itemsets_ = itemsets_with_places();
    ItemsetTable table_ = test::table_of(itemsets_);
    ItemIndex index_{table_, items_here};
    std::vector<ItemIndex::Hit> hits_;
};

TEST_P(Boundaries, AreKeptByASearchForTheFirstSuperset) {
    for_each_query([&](const Itemset& itemset, const Columns& holding, Column from) {
        for (const Column to : places()) {
            if (from <= to) {
                ASSERT_EQ(index_.first_superset(itemset, from, to), first_within(holding, from, to))
                    << "to " << to;
            }
        }
    });
}

TEST_P(Boundaries, AreKeptByASearchAmongSomeColumns) {
    std::mt19937 random(1);
    for_each_query([&](const Itemset& itemset, Columns holding, Column from) {
        std::vector<std::uint64_t> among(index_.bitmap_words());
        for (const Column place : places()) {
            if (place < GetParam() && random() % 2 == 0) {
                among[place / 64] |= std::uint64_t{1} << place % 64;
            }
        }
        std::erase_if(holding, [&](Column column) { return (among[column / 64] >> column % 64 & 1U) == 0; });
        for (const Column to : places()) {
            if (from <= to) {
                ASSERT_EQ(index_.first_superset(itemset, from, to, among.data()),
                          first_within(holding, from, to))
                    << "to " << to;
            }
        }
    });
}

TEST_P(Boundaries, AreKeptByASearchForAllSupersets) {
    ColumnSet found;
    for_each_query([&](const Itemset& itemset, const Columns& holding, Column from) {
        index_.find_supersets(itemset, from, found);
        const auto first = std::ranges::lower_bound(holding, from);
        ASSERT_EQ(columns_of(found), Columns(first, holding.end()));
    });
}

TEST_P(Boundaries, AreKeptByRemoval) {
    std::mt19937 random(2);
    ColumnSet words;
    for_each_query([&](const Itemset& itemset, const Columns& holding, Column from) {
        const Itemset whence = {static_cast<Item>(random() % items_here)};
        index_.find_supersets(whence, from, words);
        std::erase_if(words, [&random](const ColumnWord&) { return random() % 4 == 0; });
        Columns expected = columns_of(words);
        const std::size_t position = words.empty() ? 0 : random() % words.size();
        const Column removed_from = words.empty() ? 0 : words[position].index * 64;
        std::erase_if(expected, [&](Column column) {
            return column >= removed_from && std::ranges::binary_search(holding, column);
        });
        index_.remove_supersets(itemset, words, position, hits_);
        ASSERT_EQ(columns_of(words), expected) << "of " << whence.front() << ", at " << position;
    });
}

INSTANTIATE_TEST_SUITE_P(Columns, Boundaries,
                         ::testing::Values(1, 2, 63, 64, 65, 128, 4095, 4096, 4097, 8192, 12000));

TEST(ItemIndex, OfNoColumnsFindsNone) {
    const ItemsetTable none;
    const ItemIndex index(none, 1);
    ColumnSet found;
    index.find_supersets(Itemset{0}, 0, found);
    EXPECT_TRUE(found.empty());
    EXPECT_EQ(index.first_superset(Itemset{0}, 0, 0), 0U);
}

}  // namespace
}  // namespace korv
