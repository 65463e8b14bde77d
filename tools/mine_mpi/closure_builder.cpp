#include "mine_mpi/closure_builder.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

namespace korv::tools {

ClosureBuilder::ClosureBuilder(const RankedItems& items, const RankOrder& order, Count least_frequent)
    : order_(order) {
    for (const Rank rank : order.ranks) {
        const auto part_of = [&](Item item) {
            const auto bytes = static_cast<std::uint32_t>(text_bytes_of(item));
            return Part{item, bytes, items.supports[rank] < least_frequent ? bytes : 0};
        };
        const Itemset& itemset = items.items[rank];
        const std::size_t begin = others_.size();
        std::transform(itemset.begin() + 1, itemset.end(), std::back_inserter(others_), part_of);
        of_places_.push_back({part_of(itemset.front()), itemset.size() > 1, begin, others_.size()});
    }
    closure_.resize(of_places_.size() + others_.size());
}

EncodedClosure ClosureBuilder::finish() {
    std::ranges::sort(added_);
    for (const Rank place : added_) {
        put_rank(place);
    }
    added_.clear();
    return encoded();
}

EncodedClosure ClosureBuilder::without(std::span<const BitWord> outside) {
    for (std::size_t word = 0; word < outside.size(); ++word) {
        const std::size_t left = of_places_.size() - word * word_bits;
        const BitWord all = left >= word_bits ? ~BitWord{0} : bit_of(left) - 1;
        for (BitWord inside = ~outside[word] & all; inside != 0; inside &= inside - 1) {
            put_rank(static_cast<Rank>(lowest_number(word, inside)));
        }
    }
    return encoded();
}

EncodedClosure ClosureBuilder::decoded(std::string_view bytes) {
    Itemset closure;
    decode(bytes, closure);
    const auto first_item = [](const OfRank& of) { return of.first.item; };
    auto next = of_places_.begin();
    for (const Item item : closure) {
        next = std::ranges::lower_bound(next, of_places_.end(), item, {}, first_item);
        if (next != of_places_.end() && first_item(*next) == item) {
            put_rank(static_cast<Rank>(next - of_places_.begin()));
            ++next;
        }
    }
    return encoded();
}

void ClosureBuilder::put_rank(Rank place) {
    const OfRank& of = of_places_[place];
    if (!waiting_.empty()) {
        put_others_before(of.first.item);
    }
    put(of.first);
    for (std::size_t i = of.others_begin; of.has_others && i < of.others_end; ++i) {
        waiting_.push_back(others_[i]);
        std::ranges::push_heap(waiting_, std::greater(), &Part::item);
    }
}

/// Puts the items that wait and are less than this one.
void ClosureBuilder::put_others_before(Item item) {
    while (!waiting_.empty() && waiting_.front().item < item) {
        put(waiting_.front());
        std::ranges::pop_heap(waiting_, std::greater(), &Part::item);
        waiting_.pop_back();
    }
}

/// Ends a closure.
EncodedClosure ClosureBuilder::encoded() {
    std::ranges::sort(waiting_, {}, &Part::item);
    std::ranges::for_each(waiting_, [this](const Part& part) { put(part); });
    waiting_.clear();
    const std::size_t items = std::exchange(size_, 0);
    bytes_.clear();
    append_encoded(std::span(closure_).first(items), bytes_);
    return {bytes_, hash_of_closure(bytes_), items, std::exchange(text_bytes_, 0),
            std::exchange(rare_bytes_, 0)};
}

}  // namespace korv::tools
