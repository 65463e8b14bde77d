#include "index/item_index.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace korv {

namespace {

/// An item has a bitmap when at least one column in so many holds it. The bitmap then takes at most 16 times
/// the memory of a list.
constexpr std::size_t sparse_from = 512;

}  // namespace

ItemIndex::ItemIndex(const ItemsetTable& itemsets, std::size_t items)
    : itemsets_(itemsets),
      bitmap_words_(words_for(itemsets.size())),
      summary_words_(words_for(bitmap_words_)),
      rows_(items, no_row),
      list_begins_(items + 1) {
    std::vector<std::size_t> frequencies(items);
    for (std::size_t column = 0; column < itemsets.size(); ++column) {
        for (const Item item : itemsets[column]) {
            ++frequencies[item];
        }
    }
    std::uint32_t bitmaps = 0;
    std::size_t listed = 0;
    for (std::size_t item = 0; item < items; ++item) {
        list_begins_[item] = listed;
        if (frequencies[item] * sparse_from >= itemsets.size()) {
            rows_[item] = bitmaps++;
        } else {
            listed += frequencies[item];
        }
    }
    list_begins_[items] = listed;
    words_.resize(bitmaps * bitmap_words_);
    summaries_.resize(bitmaps * summary_words_);
    lists_.resize(listed);

    std::vector<std::size_t> list_ends(list_begins_);
    for (Column column = 0; column < itemsets.size(); ++column) {
        for (const Item item : itemsets[column]) {
            if (rows_[item] != no_row) {
                words_[rows_[item] * bitmap_words_ + word_of(column)] |= bit_of(column);
                summaries_[rows_[item] * summary_words_ + column / group_bits] |= bit_of(word_of(column));
            } else {
                lists_[list_ends[item]++] = column;
            }
        }
    }
}

/// The part of an item's list from the column `from` on.
std::span<const Column> ItemIndex::list(Item item, Column from) const {
    const std::span<const Column> whole = list(item);
    return whole.subspan(static_cast<std::size_t>(std::ranges::lower_bound(whole, from) - whole.begin()));
}

/// Whether a column that holds the first item of `itemset` holds them all.
bool ItemIndex::contains(Column column, ItemSpan itemset) const {
    bool all_have_bitmaps = true;
    for (const Item item : itemset.subspan(1)) {
        const BitWord* const held = bitmap(item);
        if (held != nullptr && (held[word_of(column)] & bit_of(column)) == 0) {
            return false;
        }
        all_have_bitmaps = all_have_bitmaps && held != nullptr;
    }
    return all_have_bitmaps || is_contained(itemset, itemsets_[column]);
}

/// The bitmaps of the items of an itemset, all of which have one, and one more if wanted.
class ItemIndex::Intersection {
public:
    Intersection(const ItemIndex& index, ItemSpan itemset, const BitWord* among)
        : index_(index),
          rarest_items_(itemset.first(std::min(itemset.size(), rarest_.size() - 1))),
          others_(itemset.subspan(rarest_items_.size())) {
        rarest_.fill(among != nullptr ? among : index.bitmap(itemset.front()));
        std::ranges::transform(rarest_items_, rarest_.begin(),
                               [&index](Item item) { return index.bitmap(item); });
    }

    /// A bit for each of 64 words from 64 * `group` on: 0 where the word has no columns.
    BitWord occupied(std::size_t group) const {
        BitWord words = ~BitWord{0};
        for (const Item item : rarest_items_) {
            words &= index_.summary(item)[group];
        }
        return words;
    }

    BitWord word(std::size_t position) const {
        BitWord bits = ~BitWord{0};
        for (const BitWord* const words : rarest_) {
            bits &= words[position];
        }
        for (std::size_t i = 0; bits != 0 && i < others_.size(); ++i) {
            bits &= index_.bitmap(others_[i])[position];
        }
        return bits;
    }

private:
    const ItemIndex& index_;
    /// One test behind six loads costs less than six tests: they seldom leave anything.
    std::array<const BitWord*, 6> rarest_;
    ItemSpan rarest_items_;
    ItemSpan others_;
};

/// Calls `visit(index, bits)` for each word of columns from `from` on that contain `itemset`, an itemset
/// whose items all have bitmaps, until it returns true or all columns before `to` were visited. The last
/// words may have columns of `to` and beyond.
template <typename Visit>
void ItemIndex::for_each_superset_word(ItemSpan itemset, Column from, Column to, const BitWord* among,
                                       Visit visit) const {
    const Intersection common(*this, itemset, among);
    const std::size_t first = word_of(from);
    BitWord wanted_words = ~BitWord{0} << first % word_bits;
    for (std::size_t group = first / word_bits; group * group_bits < to; ++group) {
        BitWord words = common.occupied(group) & std::exchange(wanted_words, ~BitWord{0});
        for (; words != 0; words &= words - 1) {
            const std::size_t index = group * word_bits + static_cast<std::size_t>(std::countr_zero(words));
            BitWord bits = common.word(index);
            if (index == first) {
                bits &= ~BitWord{0} << from % word_bits;
            }
            if (bits != 0 && visit(static_cast<std::uint32_t>(index), bits)) {
                return;
            }
        }
    }
}

Column ItemIndex::first_superset(ItemSpan itemset, Column from, Column to) const {
    return first_superset(itemset, from, to, nullptr);
}

Column ItemIndex::first_superset(ItemSpan itemset, Column from, Column to, const BitWord* among) const {
    Column first = to;
    if (bitmap(itemset.front()) != nullptr) {
        for_each_superset_word(itemset, from, to, among, [&first](std::uint32_t index, BitWord bits) {
            const auto bit = static_cast<std::uint32_t>(std::countr_zero(bits));
            first = std::min(first, static_cast<Column>(index * word_bits + bit));
            return true;
        });
        return first;
    }
    for (const Column column : list(itemset.front(), from)) {
        if (column >= to) {
            break;
        }
        const bool asked_for = among == nullptr || (among[word_of(column)] & bit_of(column)) != 0;
        if (asked_for && contains(column, itemset)) {
            return column;
        }
    }
    return to;
}

void ItemIndex::find_supersets(ItemSpan itemset, Column from, Column to, ColumnSet& found) const {
    found.clear();
    if (bitmap(itemset.front()) != nullptr) {
        for_each_superset_word(itemset, from, to, nullptr, [&](std::uint32_t index, BitWord bits) {
            if (index >= word_of(to)) {
                bits &= index == word_of(to) ? bit_of(to) - 1 : 0;
            }
            if (bits != 0) {
                found.push_back({index, bits});
            }
            return index >= word_of(to);
        });
        return;
    }
    for (const Column column : list(itemset.front(), from)) {
        if (column >= to) {
            break;
        }
        if (!contains(column, itemset)) {
            continue;
        }
        if (found.empty() || found.back().index != word_of(column)) {
            found.push_back({word_of(column), 0});
        }
        found.back().bits |= bit_of(column);
    }
}

void ItemIndex::find_supersets(ItemSpan itemset, Column from, ColumnSet& found) const {
    find_supersets(itemset, from, static_cast<Column>(itemsets_.size()), found);
}

void ItemIndex::remove_supersets(ItemSpan itemset, ColumnSet& columns, std::size_t from,
                                 std::vector<Hit>& hits) const {
    const auto words = std::span(columns).subspan(from);
    if (words.empty()) {
        return;
    }
    if (const BitWord* const rarest = bitmap(itemset.front())) {
        // Item after item rather than word after word: each bitmap is then walked in one direction.
        hits.clear();
        for (ColumnWord& word : words) {
            if (const BitWord bits = word.bits & rarest[word.index]) {
                hits.push_back({&word, bits});
            }
        }
        for (const Item item : itemset.subspan(1)) {
            const BitWord* const held = bitmap(item);
            for (Hit& hit : hits) {
                hit.bits &= held[hit.word->index];
            }
        }
        for (const Hit& hit : hits) {
            hit.word->bits &= ~hit.bits;
        }
        return;
    }
    auto word = words.begin();
    for (const Column column : list(itemset.front(), static_cast<Column>(word->index * word_bits))) {
        word = std::ranges::lower_bound(word, words.end(), word_of(column), {}, &ColumnWord::index);
        if (word == words.end()) {
            return;
        }
        if (word->index == word_of(column) && (word->bits & bit_of(column)) != 0 &&
            contains(column, itemset)) {
            word->bits &= ~bit_of(column);
        }
    }
}

}  // namespace korv
