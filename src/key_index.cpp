#include "key_index.h"

#include <algorithm>
#include <bit>
#include <functional>

namespace korv {

namespace {

/// The keys within an itemset are found under their rarest items when no more keys are filed there than so
/// many for each item outside the itemset; otherwise by the bitmaps of those items. The factor is a guess
/// that serves dense and sparse files.
constexpr std::size_t filed_for_each_outside_item = 8;

/// An item has a bitmap when at least one key in so many holds it. The others only leave more keys to look
/// at.
constexpr std::size_t sparse_from = 512;

/// Bitmaps are no longer united when so few words of a block have keys left: those are then looked at one by
/// one.
constexpr std::size_t few_words = 4;

}  // namespace

KeyIndex::KeyIndex(const ItemsetTable& keys, const std::vector<Count>& supports, std::size_t items)
    : keys_(keys),
      supports_(supports),
      filed_begins_(items + 1),
      filed_(keys.size()),
      bitmap_of_(items, no_bitmap),
      is_selected_(items),
      is_wanted_(items) {
    file_by_rarest_item();
    make_bitmaps();
}

void KeyIndex::file_by_rarest_item() {
    for (std::size_t key = 0; key < keys_.size(); ++key) {
        ++filed_begins_[keys_[key].front() + 1];
    }
    for (std::size_t item = 1; item < filed_begins_.size(); ++item) {
        filed_begins_[item] += filed_begins_[item - 1];
    }
    std::vector<std::size_t> ends(filed_begins_);
    for (Column key = 0; key < keys_.size(); ++key) {
        filed_[ends[keys_[key].front()]++] = key;
    }
}

void KeyIndex::make_bitmaps() {
    std::vector<std::size_t> frequencies(bitmap_of_.size());
    for (std::size_t key = 0; key < keys_.size(); ++key) {
        for (const Item item : keys_[key]) {
            ++frequencies[item];
        }
    }
    for (std::size_t item = 0; item < frequencies.size(); ++item) {
        if (frequencies[item] * sparse_from >= keys_.size()) {
            bitmap_of_[item] = static_cast<std::uint32_t>(bitmaps_++);
        }
    }
    blocks_.resize((keys_.size() + block_bits - 1) / block_bits * bitmaps_);
    for (std::size_t key = 0; key < keys_.size(); ++key) {
        for (const Item item : keys_[key]) {
            if (bitmap_of_[item] != no_bitmap) {
                Block& block = blocks_[key / block_bits * bitmaps_ + bitmap_of_[item]];
                block[key % block_bits / word_bits] |= std::uint64_t{1} << key % word_bits;
            }
        }
    }
}

void KeyIndex::select(ItemSpan itemset, Count support) {
    for (const Item item : selected_) {
        is_selected_[item] = 0;
    }
    selected_.assign(itemset.begin(), itemset.end());
    std::size_t filed = 0;
    for (const Item item : itemset) {
        is_selected_[item] = 1;
        filed += filed_begins_[item + 1] - filed_begins_[item];
    }
    inside_.clear();
    searched_to_ =
        static_cast<Column>(std::ranges::lower_bound(supports_, support, std::greater{}) - supports_.begin());

    const std::size_t outside = is_selected_.size() - itemset.size();
    if (filed <= filed_for_each_outside_item * (outside + 8)) {
        find_all_by_rarest_item(itemset);
        return;
    }
    outside_bitmaps_.clear();
    // The most frequent items first: they exclude most keys.
    for (std::size_t item = is_selected_.size(); item-- > 0;) {
        if (is_selected_[item] == 0 && bitmap_of_[item] != no_bitmap) {
            outside_bitmaps_.push_back(bitmap_of_[item]);
        }
    }
}

Count KeyIndex::largest_support_within(ItemSpan part, Count lowest) {
    for (const Item item : part) {
        is_wanted_[item] = 1;
    }
    Count largest = 0;
    for (std::size_t i = 0;; ++i) {
        while (i == inside_.size() && searched_to_ < keys_.size() && supports_[searched_to_] >= lowest) {
            find_more();
        }
        if (i == inside_.size() || supports_[inside_[i]] < lowest) {
            break;
        }
        if (std::ranges::all_of(keys_[inside_[i]], [this](Item item) { return is_wanted_[item] != 0; })) {
            largest = supports_[inside_[i]];
            break;
        }
    }
    for (const Item item : part) {
        is_wanted_[item] = 0;
    }
    return largest;
}

bool KeyIndex::lies_within_selected(Column key) const {
    return std::ranges::all_of(keys_[key], [this](Item item) { return is_selected_[item] != 0; });
}

void KeyIndex::find_all_by_rarest_item(ItemSpan itemset) {
    for (const Item item : itemset) {
        for (std::size_t i = filed_begins_[item]; i < filed_begins_[item + 1]; ++i) {
            if (filed_[i] >= searched_to_ && lies_within_selected(filed_[i])) {
                inside_.push_back(filed_[i]);
            }
        }
    }
    std::ranges::sort(inside_);
    searched_to_ = static_cast<Column>(keys_.size());
}

bool KeyIndex::has_few_keys(const Block& block) {
    return block.size() - static_cast<std::size_t>(std::ranges::count(block, 0U)) <= few_words;
}

/// Finds the keys within the selected itemset up to the end of the block: those that no item outside it
/// holds.
void KeyIndex::find_more() {
    const std::size_t block_number = searched_to_ / block_bits;
    const Block* const blocks = blocks_.data() + block_number * bitmaps_;
    Block candidates;
    candidates.fill(~std::uint64_t{0});
    for (std::size_t i = 0; i < outside_bitmaps_.size(); ++i) {
        const Block& held = blocks[outside_bitmaps_[i]];
        for (std::size_t word = 0; word < candidates.size(); ++word) {
            candidates[word] &= ~held[word];
        }
        if (i % 8 == 7 && has_few_keys(candidates)) {
            break;
        }
    }
    for (std::size_t word = 0; word < candidates.size(); ++word) {
        for (std::uint64_t bits = candidates[word]; bits != 0; bits &= bits - 1) {
            const auto key = static_cast<Column>(block_number * block_bits + word * word_bits +
                                                 static_cast<std::size_t>(std::countr_zero(bits)));
            if (key >= searched_to_ && key < keys_.size() && lies_within_selected(key)) {
                inside_.push_back(key);
            }
        }
    }
    searched_to_ = static_cast<Column>((block_number + 1) * block_bits);
}

}  // namespace korv
