#include "mine_mpi/closure_builder.h"

#include <algorithm>
#include <utility>

namespace korv::tools {

ClosureBuilder::ClosureBuilder(const RankedItems& items, const ItemOrder& order, Count least_frequent)
    : order_(order), closure_(order.size()) {
    for (ItemOrder::Place place = 0; place < order.size(); ++place) {
        const Item item = order.items()[place];
        const auto bytes = static_cast<std::uint32_t>(text_bytes_of(item));
        const bool is_rare = items.supports[order.rank(place)] < least_frequent;
        of_places_.push_back({item, bytes, is_rare ? bytes : 0});
    }
}

void ClosureBuilder::add(Rank rank) {
    const std::span<const ItemOrder::Place> places = order_.places(rank);
    added_.insert(added_.end(), places.begin(), places.end());
}

EncodedClosure ClosureBuilder::finish() {
    std::ranges::sort(added_);
    for (const ItemOrder::Place place : added_) {
        put(place);
    }
    added_.clear();
    return encoded();
}

EncodedClosure ClosureBuilder::without(std::span<const BitWord> outside) {
    for (std::size_t word = 0; word < outside.size(); ++word) {
        const std::size_t left = order_.size() - word * word_bits;
        const BitWord all = left >= word_bits ? ~BitWord{0} : bit_of(left) - 1;
        for (BitWord inside = ~outside[word] & all; inside != 0; inside &= inside - 1) {
            put(static_cast<ItemOrder::Place>(lowest_number(word, inside)));
        }
    }
    return encoded();
}

EncodedClosure ClosureBuilder::decoded(std::string_view bytes) {
    Itemset closure;
    decode(bytes, closure);
    auto next = order_.items().begin();
    for (const Item item : closure) {
        next = std::ranges::lower_bound(next, order_.items().end(), item);
        if (next != order_.items().end() && *next == item) {
            put(static_cast<ItemOrder::Place>(next - order_.items().begin()));
        }
    }
    return encoded();
}

/// Ends a closure.
EncodedClosure ClosureBuilder::encoded() {
    const std::size_t items = std::exchange(size_, 0);
    bytes_.clear();
    append_encoded(std::span(closure_).first(items), bytes_);
    return {bytes_, hash_of_closure(bytes_), items, std::exchange(text_bytes_, 0),
            std::exchange(rare_bytes_, 0)};
}

}  // namespace korv::tools
