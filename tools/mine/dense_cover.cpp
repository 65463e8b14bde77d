#include "mine/dense_cover.h"

#include <algorithm>
#include <bit>

namespace korv::tools {

DenseCover::DenseCover(const RankedItems& items) : prefixes_(2) {
    rows_.reset(items.size(), items.lines);
    rows_.set_weights({items.weights.begin(), items.weights.end()});
    Prefix& empty = prefixes_.front();
    for (Rank rank = 0; rank < items.size(); ++rank) {
        for (const Transaction line : items.transactions[rank]) {
            rows_.insert(rank, line);
        }
        empty.outside.push_back({rank, items.transactions[rank].front()});
    }
    empty.any.resize(rows_.words());
    empty.all.assign(rows_.words(), ~BitWord{0});
    empty.has_any = true;
    empty.has_all = true;
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

const std::vector<Rank>& DenseCover::enter(Rank rank) {
    const std::size_t size = itemset_.size();
    itemset_.push_back(rank);
    if (prefixes_.size() == size + 2) {
        prefixes_.emplace_back();
    }
    Prefix& longer = prefixes_[size + 1];
    longer.has_any = false;
    longer.has_all = false;
    longer.outside.clear();
    covered_.clear();
    const BitWord* const added = rows_[rank];
    for (Outside outside : prefixes_[size].outside) {
        if (is_hit(outside, added) && !find_witness(outside, any(size).data(), added)) {
            covered_.push_back(outside.rank);
            continue;
        }
        longer.outside.push_back(outside);
    }
    return covered_;
}

void DenseCover::leave() {
    itemset_.pop_back();
}

const std::vector<Rank>& DenseCover::gain(Rank rank) {
    const std::size_t size = itemset_.size();
    covered_.clear();
    const BitWord* const added = rows_[rank];
    for (Outside outside : prefixes_[size].outside) {
        if (is_hit(outside, added) && !find_witness(outside, any(size).data(), added)) {
            covered_.push_back(outside.rank);
        }
    }
    return covered_;
}

void DenseCover::keep_frequent(Count least, std::vector<Candidate>& candidates) {
    const BitWord* const together = all(itemset_.size()).data();
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
    return rows_.without(rows_[rank], any(itemset_.size()).data());
}

/// The lines that hold an item of the prefix of this size.
const std::vector<BitWord>& DenseCover::any(std::size_t size) {
    Prefix& prefix = prefixes_[size];
    if (!prefix.has_any) {
        const std::vector<BitWord>& shorter = any(size - 1);
        const BitWord* const added = rows_[itemset_[size - 1]];
        prefix.any.resize(rows_.words());
        for (std::size_t i = 0; i < rows_.words(); ++i) {
            prefix.any[i] = shorter[i] | added[i];
        }
        prefix.has_any = true;
    }
    return prefix.any;
}

/// The lines that hold all items of the prefix of this size.
const std::vector<BitWord>& DenseCover::all(std::size_t size) {
    Prefix& prefix = prefixes_[size];
    if (!prefix.has_all) {
        const std::vector<BitWord>& shorter = all(size - 1);
        const BitWord* const added = rows_[itemset_[size - 1]];
        prefix.all.resize(rows_.words());
        for (std::size_t i = 0; i < rows_.words(); ++i) {
            prefix.all[i] = shorter[i] & added[i];
        }
        prefix.has_all = true;
    }
    return prefix.all;
}

/// Looks, from the old witness on, for the next line of the item that is in neither vector. Returns false
/// when there is none.
bool DenseCover::find_witness(Outside& outside, const BitWord* any, const BitWord* added) const {
    const BitWord* const held = rows_[outside.rank];
    for (std::size_t i = word_of(outside.witness); i < rows_.words(); ++i) {
        const BitWord left = held[i] & ~(any[i] | added[i]);
        if (left != 0) {
            outside.witness = static_cast<Transaction>(lowest_number(i, left));
            return true;
        }
    }
    return false;
}

}  // namespace korv::tools
