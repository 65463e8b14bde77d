#include "mine_mpi/rank_items.h"

#include <algorithm>
#include <cstdint>

namespace korv::tools {

RankItems::RankItems(const std::vector<Itemset>& items) : items_(items) {
    for (const Itemset& each : items) {
        sorted_.insert(sorted_.end(), each.begin(), each.end());
    }
    std::ranges::sort(sorted_);
    for (const Itemset& each : items) {
        std::vector<std::size_t>& positions = positions_.emplace_back();
        for (const Item item : each) {
            positions.push_back(
                static_cast<std::size_t>(std::ranges::lower_bound(sorted_, item) - sorted_.begin()));
        }
    }
    marked_.resize(words_for(sorted_.size()));
}

const Itemset& RankItems::of(std::span<const Rank> ranks) {
    // To sort an item takes about as long as to look at so many words of marks.
    constexpr std::size_t words_of_item = 4;
    together_.clear();
    if (ranks.size() * words_of_item < marked_.size()) {
        sort_items(ranks);
    } else {
        mark_items(ranks);
    }
    return together_;
}

void RankItems::sort_items(std::span<const Rank> ranks) {
    for (const Rank rank : ranks) {
        together_.insert(together_.end(), items_[rank].begin(), items_[rank].end());
    }
    std::ranges::sort(together_);
}

void RankItems::mark_items(std::span<const Rank> ranks) {
    for (const Rank rank : ranks) {
        for (const std::size_t position : positions_[rank]) {
            marked_[word_of(position)] |= bit_of(position);
        }
    }
    for (std::size_t word = 0; word < marked_.size(); ++word) {
        for (BitWord left = marked_[word]; left != 0; left &= left - 1) {
            together_.push_back(sorted_[lowest_number(word, left)]);
        }
        marked_[word] = 0;
    }
}

}  // namespace korv::tools
