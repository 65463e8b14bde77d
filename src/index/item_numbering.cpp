#include "index/item_numbering.h"

#include <algorithm>
#include <array>
#include <map>

#include "base/bit_words.h"

namespace korv {

namespace {

/// Items below this are looked up in a table, which then takes 4 MiB at most.
constexpr Item direct_items = 1 << 20;

/// Up to so many numbers, they are sorted by way of a bitmap: several times as fast.
constexpr std::size_t few_numbers = 512;

/// Sorts distinct numbers below few_numbers.
void sort_few(Itemset& numbers) {
    std::array<BitWord, words_for(few_numbers)> bitmap = {};
    for (const Item number : numbers) {
        bitmap[word_of(number)] |= bit_of(number);
    }
    auto next = numbers.begin();
    for (std::size_t word = 0; word < bitmap.size(); ++word) {
        for (BitWord bits = bitmap[word]; bits != 0; bits &= bits - 1) {
            *next++ = static_cast<Item>(lowest_number(word, bits));
        }
    }
}

/// Calls `visit` with each item of an itemset and how often it occurred before.
template <typename Visit>
void for_each_occurrence(const Itemset& itemset, Visit visit) {
    Item repetition = 0;
    for (std::size_t i = 0; i < itemset.size(); ++i) {
        repetition = i > 0 && itemset[i] == itemset[i - 1] ? repetition + 1 : 0;
        visit(itemset[i], repetition);
    }
}

}  // namespace

ItemNumbering::ItemNumbering(const std::vector<const Itemset*>& family) {
    std::vector<std::size_t> direct_frequencies;
    std::map<Occurrence, std::size_t> other_frequencies;
    for (const Itemset* const itemset : family) {
        for_each_occurrence(*itemset, [&](Item item, Item repetition) {
            if (repetition > 0 || item >= direct_items) {
                ++other_frequencies[{item, repetition}];
                return;
            }
            if (item >= direct_frequencies.size()) {
                direct_frequencies.resize(item + 1);
            }
            ++direct_frequencies[item];
        });
    }

    std::vector<std::pair<std::size_t, Occurrence>> by_frequency;
    for (Item item = 0; item < direct_frequencies.size(); ++item) {
        if (direct_frequencies[item] > 0) {
            by_frequency.push_back({direct_frequencies[item], {item, 0}});
        }
    }
    for (const auto& [occurrence, frequency] : other_frequencies) {
        by_frequency.emplace_back(frequency, occurrence);
    }
    std::ranges::sort(by_frequency);

    size_ = by_frequency.size();
    direct_.resize(direct_frequencies.size());
    for (std::size_t number = 0; number < size_; ++number) {
        const Occurrence& occurrence = by_frequency[number].second;
        if (occurrence.repetition == 0 && occurrence.item < direct_items) {
            direct_[occurrence.item] = static_cast<Item>(number);
        } else {
            searched_.emplace_back(occurrence, static_cast<Item>(number));
        }
    }
    std::ranges::sort(searched_);
}

void ItemNumbering::translate(const Itemset& itemset, Itemset& numbers) const {
    numbers.clear();
    for_each_occurrence(itemset, [&](Item item, Item repetition) {
        numbers.push_back(number_of({item, repetition}));
    });
    if (size_ <= few_numbers) {
        sort_few(numbers);
    } else {
        std::ranges::sort(numbers);
    }
}

Item ItemNumbering::number_of(const Occurrence& occurrence) const {
    if (occurrence.repetition == 0 && occurrence.item < direct_.size()) {
        return direct_[occurrence.item];
    }
    return std::ranges::lower_bound(searched_, occurrence, {}, &std::pair<Occurrence, Item>::first)->second;
}

}  // namespace korv
