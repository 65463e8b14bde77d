#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/bit_words.h"
#include "base/itemset_table.h"

namespace korv {

/// Position of an itemset in the sequence that an index is made of.
using Column = std::uint32_t;

/// A set of columns: the words of its bitmap that are not all zero, ascending by index.
struct ColumnWord {
    std::uint32_t index;  ///< stands for the columns 64 * index to 64 * index + 63
    BitWord bits;         ///< bit b stands for the column 64 * index + b
};
using ColumnSet = std::vector<ColumnWord>;

/// The lowest column of a word that is not empty.
constexpr Column lowest_column(const ColumnWord& word) {
    return static_cast<Column>(lowest_number(word.index, word.bits));
}

/// An inverted index over a sequence of itemsets, its columns: for each item, which of them hold it.
///
/// Invariant: an item that many columns hold has a bitmap over all columns, any other an ascending list. So
/// the memory is bounded by that of the itemsets, times a constant, however many items there are; and no list
/// is long. Summaries of bitmaps are intersected before the bitmaps are, so that stretches that one of the
/// items leaves empty are skipped.
///
/// Itemsets are sets of numbers below a bound, ascending, the rarer items first (see ItemNumbering): their
/// first item decides between bitmap and list. The index refers to the sequence, which must outlive it
/// unchanged; fewer than 2^32 itemsets. Several threads can ask it at a time.
class ItemIndex {
public:
    /// A word of a set and those of its columns that hold all items looked at so far.
    struct Hit {
        ColumnWord* word;
        BitWord bits;
    };

    /// `items`: the bound of the item numbers. O(items + total length of the itemsets).
    ItemIndex(const ItemsetTable& itemsets, std::size_t items);
    ItemIndex(const ItemIndex&) = delete;
    ItemIndex& operator=(const ItemIndex&) = delete;

    /// The first column of [from, to) that contains `itemset`, or `to`. `itemset` must not be empty.
    /// O(|itemset| * (to - from) / 64) words of bitmaps, or O(|itemset|) steps for each column in the list of
    /// its first item; as a rule a small part of that.
    Column first_superset(ItemSpan itemset, Column from, Column to) const;

    /// The same among the columns that are set in the bitmap `among`, of bitmap_words() words.
    Column first_superset(ItemSpan itemset, Column from, Column to, const BitWord* among) const;

    /// Replaces `found` by all columns of [from, to) that contain `itemset`, which must not be empty. Costs
    /// as much as a search for the first one that finds none.
    void find_supersets(ItemSpan itemset, Column from, Column to, ColumnSet& found) const;

    /// The same of all columns from `from` on.
    void find_supersets(ItemSpan itemset, Column from, ColumnSet& found) const;

    /// Takes out of `columns`, from its word at position `from` on, those that contain `itemset`, which must
    /// not be empty. O(|itemset| * words of `columns`), or steps as above. `hits` is working space.
    void remove_supersets(ItemSpan itemset, ColumnSet& columns, std::size_t from,
                          std::vector<Hit>& hits) const;

    /// Number of words of a bitmap.
    std::size_t bitmap_words() const { return bitmap_words_; }

private:
    static constexpr std::uint32_t no_row = 0xFFFFFFFF;
    /// Columns for which a word of a summary stands.
    static constexpr std::size_t group_bits = word_bits * word_bits;

    class Intersection;

    /// nullptr when the item has a list.
    const BitWord* bitmap(Item item) const {
        return rows_[item] == no_row ? nullptr : words_.data() + rows_[item] * bitmap_words_;
    }
    /// Of an item with a bitmap.
    const BitWord* summary(Item item) const { return summaries_.data() + rows_[item] * summary_words_; }
    std::span<const Column> list(Item item) const {
        return std::span(lists_).subspan(list_begins_[item], list_begins_[item + 1] - list_begins_[item]);
    }
    std::span<const Column> list(Item item, Column from) const;
    bool contains(Column column, ItemSpan itemset) const;
    template <typename Visit>
    void for_each_superset_word(ItemSpan itemset, Column from, Column to, const BitWord* among,
                                Visit visit) const;

    const ItemsetTable& itemsets_;
    std::size_t bitmap_words_;
    std::size_t summary_words_;
    std::vector<std::uint32_t> rows_;       ///< by item: number of its bitmap
    std::vector<BitWord> words_;            ///< the bitmaps, one behind the other
    std::vector<BitWord> summaries_;        ///< for each bitmap, a bit for each of its words that is not zero
    std::vector<std::size_t> list_begins_;  ///< by item
    std::vector<Column> lists_;             ///< the lists, one behind the other
};

}  // namespace korv
