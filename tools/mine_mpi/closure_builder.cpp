#include "mine_mpi/closure_builder.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <utility>

namespace korv::tools {

ClosureBuilder::ClosureBuilder(const RankedItems& items, const RankOrder& order, Count least_frequent)
    : items_(items), order_(order) {
    std::size_t size = 0;
    for (const Rank rank : order.ranks) {
        const Itemset& itemset = items.items[rank];
        std::uint32_t bytes = 0;
        for (const Item item : itemset) {
            bytes += static_cast<std::uint32_t>(text_bytes_of(item));
        }
        const bool is_rare = items.supports[rank] < least_frequent;
        of_places_.push_back({itemset.front(), bytes, is_rare ? bytes : 0, itemset.size() > 1});
        size += itemset.size();
    }
    closure_.resize(size);
}

EncodedClosure ClosureBuilder::finish() {
    std::ranges::sort(added_);
    for (const Rank place : added_) {
        put(place);
    }
    added_.clear();
    return encoded();
}

EncodedClosure ClosureBuilder::without(std::span<const BitWord> outside) {
    for (std::size_t word = 0; word < outside.size(); ++word) {
        const std::size_t left = of_places_.size() - word * word_bits;
        const BitWord all = left >= word_bits ? ~BitWord{0} : bit_of(left) - 1;
        for (BitWord inside = ~outside[word] & all; inside != 0; inside &= inside - 1) {
            put(lowest_number(word, inside));
        }
    }
    return encoded();
}

EncodedClosure ClosureBuilder::decoded(std::string_view bytes) {
    Itemset closure;
    decode(bytes, closure);
    auto next = of_places_.begin();
    for (const Item item : closure) {
        next = std::ranges::lower_bound(next, of_places_.end(), item, {}, &OfRank::first);
        if (next != of_places_.end() && next->first == item) {
            put(static_cast<std::size_t>(next - of_places_.begin()));
            ++next;
        }
    }
    return encoded();
}

void ClosureBuilder::put_others(std::size_t place) {
    const Itemset& itemset = items_.items[order_.ranks[place]];
    others_.insert(others_.end(), itemset.begin() + 1, itemset.end());
}

/// Puts the other items among the first ones: from the back, so that each is moved once.
void ClosureBuilder::insert_others() {
    std::ranges::sort(others_, std::greater());
    auto end = closure_.begin() + static_cast<std::ptrdiff_t>(size_);
    size_ += others_.size();
    auto to = closure_.begin() + static_cast<std::ptrdiff_t>(size_);
    for (const Item other : others_) {
        const auto behind = std::upper_bound(closure_.begin(), end, other);
        to = std::move_backward(behind, end, to);
        *--to = other;
        end = behind;
    }
    others_.clear();
}

/// Ends a closure.
EncodedClosure ClosureBuilder::encoded() {
    if (!others_.empty()) {
        insert_others();
    }
    const std::size_t items = std::exchange(size_, 0);
    bytes_.clear();
    append_encoded(std::span(closure_).first(items), bytes_);
    return {bytes_, hash_of_closure(bytes_), items, std::exchange(text_bytes_, 0),
            std::exchange(rare_bytes_, 0)};
}

}  // namespace korv::tools
