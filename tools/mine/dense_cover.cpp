#include "mine/dense_cover.h"

#include <algorithm>
#include <functional>

namespace korv::tools {

namespace {

/// In rows of at most so many words it takes longer to find out which words have uncovered lines than to go
/// over all.
constexpr std::size_t words_of_short_row = 128;

/// In longer ones most witnesses are found within so many words.
constexpr std::size_t near_in_long_row = 16;

}  // namespace

DenseCover::DenseCover(const RankedItems& items) : prefixes_(2) {
    rows_.reset(items.size(), items.lines);
    rows_.set_weights({items.weights.begin(), items.weights.end()});
    Prefix& empty = prefixes_.front();
    for (Rank rank = 0; rank < items.size(); ++rank) {
        for (const Transaction line : items.transactions[rank]) {
            rows_.insert(rank, line);
        }
        if (!items.transactions[rank].empty()) {
            empty.outside.push_back({rank, items.transactions[rank].front()});
        }
    }
    near_ = rows_.words() <= words_of_short_row ? rows_.words() : near_in_long_row;
    empty.any = {std::vector<BitWord>(rows_.words()), true};
    empty.all = {std::vector<BitWord>(rows_.words(), ~BitWord{0}), true};
}

void DenseCover::pairs_of(Rank rank, Count least, std::vector<Candidate>& candidates) const {
    candidates.clear();
    for (Rank below = 0; below < rank; ++below) {
        const Count count = rows_.both(rows_[rank], rows_[below]);
        if (count >= least) {
            candidates.push_back({below, count});
        }
    }
}

void DenseCover::enter_to_count(Rank rank) {
    itemset_.push_back(rank);
    if (prefixes_.size() == itemset_.size() + 1) {
        prefixes_.emplace_back();
    }
    prefixes_[itemset_.size()].any.is_made = false;
    prefixes_[itemset_.size()].all.is_made = false;
    prefixes_[itemset_.size()].uncovered.is_made = false;
}

const std::vector<Rank>& DenseCover::enter(Rank rank) {
    const std::size_t size = itemset_.size();
    enter_to_count(rank);
    Prefix& longer = prefixes_[size + 1];
    longer.outside.clear();
    gained_.clear();
    for (Outside outside : prefixes_[size].outside) {
        if (stays_outside(outside, size, rank)) {
            longer.outside.push_back(outside);
        } else {
            gained_.push_back(outside.rank);
        }
    }
    return gained_;
}

void DenseCover::leave() {
    itemset_.pop_back();
}

const std::vector<Rank>& DenseCover::gain(Rank rank) {
    const std::size_t size = itemset_.size();
    gained_.clear();
    for (Outside outside : prefixes_[size].outside) {
        if (!stays_outside(outside, size, rank)) {
            gained_.push_back(outside.rank);
        }
    }
    return gained_;
}

void DenseCover::keep_frequent(Count least, std::vector<Candidate>& candidates) {
    const BitWord* const together = all(itemset_.size());
    std::size_t kept = 0;
    for (Candidate candidate : candidates) {
        candidate.joint = rows_.both(rows_[candidate.rank], together);
        if (candidate.joint >= least) {
            candidates[kept++] = candidate;
        }
    }
    candidates.resize(kept);
}

Count DenseCover::own(Rank rank) {
    return rows_.without(rows_[rank], any(itemset_.size()));
}

/// A bit vector of the prefix of this size, combined from that of the shorter one and its last item.
template <typename Combine>
const BitWord* DenseCover::made(LazyBits Prefix::*which, std::size_t size, Combine combine) {
    LazyBits& lazy = prefixes_[size].*which;
    if (!lazy.is_made) {
        const BitWord* const shorter = made(which, size - 1, combine);
        const BitWord* const added = rows_[itemset_[size - 1]];
        lazy.bits.resize(rows_.words());
        std::transform(shorter, shorter + rows_.words(), added, lazy.bits.begin(), combine);
        lazy.is_made = true;
    }
    return lazy.bits.data();
}

const BitWord* DenseCover::any(std::size_t size) {
    return made(&Prefix::any, size, std::bit_or<>());
}

const BitWord* DenseCover::all(std::size_t size) {
    return made(&Prefix::all, size, std::bit_and<>());
}

/// The lines that hold no item of the prefix of this size.
const std::vector<DenseCover::Word>& DenseCover::uncovered(std::size_t size) {
    LazyWords& lazy = prefixes_[size].uncovered;
    if (!lazy.is_made) {
        const BitWord* const covered = any(size);
        lazy.words.clear();
        for (std::size_t word = 0; word < rows_.words(); ++word) {
            if (covered[word] != ~BitWord{0}) {
                lazy.words.push_back({word, ~covered[word]});
            }
        }
        lazy.is_made = true;
    }
    return lazy.words;
}

/// Whether an item stays outside the closure when `added` extends the prefix of this size. Then it gets a new
/// witness, the next line that is in neither, if the old one holds the added item.
bool DenseCover::stays_outside(Outside& outside, std::size_t size, Rank added) {
    const BitWord* const of_added = rows_[added];
    if ((of_added[word_of(outside.witness)] & bit_of(outside.witness)) == 0) {
        return true;
    }
    if (outside.rank == added) {
        return false;
    }
    const BitWord* const held = rows_[outside.rank];
    const BitWord* const covered = any(size);
    const std::size_t end = std::min(word_of(outside.witness) + near_, rows_.words());
    for (std::size_t i = word_of(outside.witness); i < end; ++i) {
        const BitWord left = held[i] & ~(covered[i] | of_added[i]);
        if (left != 0) {
            outside.witness = static_cast<Transaction>(lowest_number(i, left));
            return true;
        }
    }
    return end < rows_.words() && has_witness_from(end, outside, size, added);
}

/// Looks for a witness from a word on. Words of covered lines alone are passed over.
bool DenseCover::has_witness_from(std::size_t word, Outside& outside, std::size_t size, Rank added) {
    const BitWord* const held = rows_[outside.rank];
    const BitWord* const of_added = rows_[added];
    const std::vector<Word>& words = uncovered(size);
    for (auto each = std::ranges::lower_bound(words, word, {}, &Word::number); each != words.end(); ++each) {
        const BitWord left = held[each->number] & each->bits & ~of_added[each->number];
        if (left != 0) {
            outside.witness = static_cast<Transaction>(lowest_number(each->number, left));
            return true;
        }
    }
    return false;
}

}  // namespace korv::tools
