#include "key_index.h"

#include <algorithm>
#include <array>
#include <bit>
#include <functional>

namespace korv {

namespace {

/// The keys within an itemset are found under their rarest items when no more keys are filed there than so
/// many for each item outside the itemset; otherwise by the bitmaps of those items. Measured on dense and
/// sparse files.
constexpr std::size_t filed_for_each_outside_item = 8;

/// Bitmaps are no longer united when a block has at most so many keys left: they are then looked at one by
/// one.
constexpr int few_keys = 16;

using Block = std::array<std::uint64_t, ItemIndex::block_words>;

int columns_in(const Block& block) {
    int columns = 0;
    for (const std::uint64_t word : block) {
        columns += std::popcount(word);
    }
    return columns;
}

}  // namespace

KeyIndex::KeyIndex(const ItemsetTable& keys, const std::vector<Count>& supports, std::size_t items)
    : keys_(keys),
      supports_(supports),
      index_(keys, items),
      filed_begins_(items + 1),
      filed_(keys.size()),
      selected_(items),
      wanted_(items) {
    for (std::size_t key = 0; key < keys.size(); ++key) {
        ++filed_begins_[keys[key].front() + 1];
    }
    for (std::size_t item = 0; item < items; ++item) {
        filed_begins_[item + 1] += filed_begins_[item];
    }
    std::vector<std::size_t> ends(filed_begins_);
    for (Column key = 0; key < keys.size(); ++key) {
        filed_[ends[keys[key].front()]++] = key;
    }
}

void KeyIndex::select(ItemSpan itemset, Count support) {
    for (const Item item : selected_items_) {
        selected_[item] = 0;
    }
    selected_items_.assign(itemset.begin(), itemset.end());
    std::size_t filed = 0;
    for (const Item item : itemset) {
        selected_[item] = 1;
        filed += filed_begins_[item + 1] - filed_begins_[item];
    }
    inside_.clear();
    first_ =
        static_cast<Column>(std::ranges::lower_bound(supports_, support, std::greater{}) - supports_.begin());
    searched_to_ = first_;

    const std::size_t outside = selected_.size() - itemset.size();
    if (filed <= filed_for_each_outside_item * (outside + 8)) {
        find_all_by_rarest_item(itemset);
        return;
    }
    outside_bitmaps_.clear();
    // The most frequent items first: they exclude most keys.
    for (auto item = static_cast<Item>(selected_.size()); item-- > 0;) {
        if (selected_[item] == 0 && index_.bitmap(item) != nullptr) {
            outside_bitmaps_.push_back(index_.bitmap(item));
        }
    }
}

Count KeyIndex::largest_support_within(ItemSpan part, Count lowest) {
    for (const Item item : part) {
        wanted_[item] = 1;
    }
    Count largest = 0;
    for (std::size_t i = 0;; ++i) {
        while (i == inside_.size() && searched_to_ < keys_.size() && supports_[searched_to_] >= lowest) {
            find_more();
        }
        if (i == inside_.size() || supports_[inside_[i]] < lowest) {
            break;
        }
        if (std::ranges::all_of(keys_[inside_[i]], [this](Item item) { return wanted_[item] != 0; })) {
            largest = supports_[inside_[i]];
            break;
        }
    }
    for (const Item item : part) {
        wanted_[item] = 0;
    }
    return largest;
}

bool KeyIndex::lies_within_selected(Column key) const {
    return std::ranges::all_of(keys_[key], [this](Item item) { return selected_[item] != 0; });
}

void KeyIndex::find_all_by_rarest_item(ItemSpan itemset) {
    for (const Item item : itemset) {
        for (std::size_t i = filed_begins_[item]; i < filed_begins_[item + 1]; ++i) {
            if (filed_[i] >= first_ && lies_within_selected(filed_[i])) {
                inside_.push_back(filed_[i]);
            }
        }
    }
    std::ranges::sort(inside_);
    searched_to_ = static_cast<Column>(keys_.size());
}

/// Finds the keys within the selected itemset in the next block: those that no item outside it holds.
void KeyIndex::find_more() {
    const std::size_t block_number = searched_to_ / ItemIndex::block_bits;
    const std::size_t first_word = block_number * ItemIndex::block_words;
    Block candidates;
    candidates.fill(~std::uint64_t{0});
    for (std::size_t i = 0; i < outside_bitmaps_.size(); ++i) {
        for (std::size_t word = 0; word < candidates.size(); ++word) {
            candidates[word] &= ~outside_bitmaps_[i][first_word + word];
        }
        if (i % 8 == 7 && columns_in(candidates) <= few_keys) {
            break;
        }
    }
    for (std::size_t word = 0; word < candidates.size(); ++word) {
        for (std::uint64_t bits = candidates[word]; bits != 0; bits &= bits - 1) {
            const auto key = static_cast<Column>((first_word + word) * ItemIndex::word_bits +
                                                 static_cast<std::size_t>(std::countr_zero(bits)));
            if (key >= searched_to_ && key < keys_.size() && lies_within_selected(key)) {
                inside_.push_back(key);
            }
        }
    }
    searched_to_ = static_cast<Column>((block_number + 1) * ItemIndex::block_bits);
}

}  // namespace korv
