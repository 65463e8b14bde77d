#include "item_index.h"

#include <algorithm>
#include <array>
#include <bit>

namespace korv {

namespace {

/// An item has a bitmap when at least one column in so many holds it. The bitmap then takes at most 16 times
/// the memory of a list.
constexpr std::size_t sparse_from = 512;

using Block = std::array<std::uint64_t, ItemIndex::block_words>;

std::uint32_t word_of(Column column) {
    return column / ItemIndex::word_bits;
}

/// Keeps in `block` what `words` holds too; false when nothing is left.
bool restrict_block(Block& block, const std::uint64_t* words) {
    std::uint64_t any = 0;
    for (std::size_t i = 0; i < block.size(); ++i) {
        block[i] &= words[i];
        any |= block[i];
    }
    return any != 0;
}

/// What bitmaps have in common in their words from `first` on.
template <std::size_t count>
Block common_block(const std::array<const std::uint64_t*, count>& bitmaps, std::size_t first) {
    Block block;
    for (std::size_t i = 0; i < block.size(); ++i) {
        block[i] = bitmaps[0][first + i];
        for (std::size_t k = 1; k < count; ++k) {
            block[i] &= bitmaps[k][first + i];
        }
    }
    return block;
}

/// Takes the columns before `from` out of a block of bitmap words from `first` on.
void clear_before(Column from, std::size_t first, Block& block) {
    for (std::size_t i = 0; i < block.size(); ++i) {
        if (first + i < word_of(from)) {
            block[i] = 0;
        } else if (first + i == word_of(from)) {
            block[i] &= ~std::uint64_t{0} << from % ItemIndex::word_bits;
        }
    }
}

bool is_empty(const Block& block) {
    std::uint64_t any = 0;
    for (const std::uint64_t word : block) {
        any |= word;
    }
    return any == 0;
}

}  // namespace

ItemIndex::ItemIndex(const ItemsetTable& itemsets, std::size_t items)
    : itemsets_(itemsets),
      stride_((itemsets.size() + block_bits - 1) / block_bits * block_words),
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
    words_.resize(bitmaps * stride_);
    lists_.resize(listed);

    std::vector<std::size_t> list_ends(list_begins_);
    for (Column column = 0; column < itemsets.size(); ++column) {
        for (const Item item : itemsets[column]) {
            if (rows_[item] != no_row) {
                words_[rows_[item] * stride_ + word_of(column)] |= bit_of(column);
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
        const std::uint64_t* const held = bitmap(item);
        if (held != nullptr && (held[word_of(column)] & bit_of(column)) == 0) {
            return false;
        }
        all_have_bitmaps = all_have_bitmaps && held != nullptr;
    }
    return all_have_bitmaps || is_contained(itemset, itemsets_[column]);
}

/// Calls `visit(index, bits)` for each word of columns in [from, to) that contain `itemset`, an itemset whose
/// items all have bitmaps, until it returns true. The last word may have columns of `to` and beyond.
template <typename Visit>
void ItemIndex::for_each_superset_word(ItemSpan itemset, Column from, Column to, const std::uint64_t* among,
                                       Visit visit) const {
    // The rarest items seldom leave anything, so their bitmaps are intersected without a look in between.
    std::array<const std::uint64_t*, 6> rarest;
    rarest.fill(among != nullptr ? among : bitmap(itemset.front()));
    const ItemSpan rarest_items = itemset.first(std::min(itemset.size(), rarest.size() - 1));
    std::ranges::transform(rarest_items, rarest.begin(), [this](Item item) { return bitmap(item); });
    const ItemSpan others = itemset.subspan(rarest_items.size());

    for (std::size_t first = from / block_bits * block_words; first * word_bits < to; first += block_words) {
        Block block = common_block(rarest, first);
        if (first <= word_of(from)) {
            clear_before(from, first, block);
        }
        bool any = !is_empty(block);
        for (std::size_t i = 0; any && i < others.size(); ++i) {
            any = restrict_block(block, bitmap(others[i]) + first);
        }
        for (std::size_t i = 0; any && i < block.size(); ++i) {
            if (block[i] != 0 && visit(static_cast<std::uint32_t>(first + i), block[i])) {
                return;
            }
        }
    }
}

Column ItemIndex::first_superset(ItemSpan itemset, Column from, Column to) const {
    return first_superset(itemset, from, to, nullptr);
}

Column ItemIndex::first_superset(ItemSpan itemset, Column from, Column to, const std::uint64_t* among) const {
    Column first = to;
    if (bitmap(itemset.front()) != nullptr) {
        for_each_superset_word(itemset, from, to, among, [&first](std::uint32_t index, std::uint64_t bits) {
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

void ItemIndex::find_supersets(ItemSpan itemset, Column from, ColumnSet& found) const {
    found.clear();
    if (bitmap(itemset.front()) != nullptr) {
        const auto all = static_cast<Column>(itemsets_.size());
        for_each_superset_word(itemset, from, all, nullptr,
                               [&found](std::uint32_t index, std::uint64_t bits) {
                                   found.push_back({index, bits});
                                   return false;
                               });
        return;
    }
    for (const Column column : list(itemset.front(), from)) {
        if (!contains(column, itemset)) {
            continue;
        }
        if (found.empty() || found.back().index != word_of(column)) {
            found.push_back({word_of(column), 0});
        }
        found.back().bits |= bit_of(column);
    }
}

void ItemIndex::remove_supersets(ItemSpan itemset, ColumnSet& columns, std::size_t from) {
    const auto words = std::span(columns).subspan(from);
    if (words.empty()) {
        return;
    }
    if (const std::uint64_t* const rarest = bitmap(itemset.front())) {
        // Item after item rather than word after word: each bitmap is then walked in one direction.
        hits_.clear();
        for (ColumnWord& word : words) {
            if (const std::uint64_t bits = word.bits & rarest[word.index]) {
                hits_.push_back({&word, bits});
            }
        }
        for (const Item item : itemset.subspan(1)) {
            const std::uint64_t* const held = bitmap(item);
            for (Hit& hit : hits_) {
                hit.bits &= held[hit.word->index];
            }
        }
        for (const Hit& hit : hits_) {
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
