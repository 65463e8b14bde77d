#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

#include "base/bit_words.h"
#include "mine/ranked_items.h"

namespace korv::tools {

/// The lines that hold an item of an itemset, marked. What consecutive itemsets have in common at their
/// beginnings stays marked.
class CoveredLines {
public:
    /// Of no itemset. `items` must outlive them.
    explicit CoveredLines(const RankedItems& items) : items_(items), marks_(words_for(items.lines)) {}

    /// Marks the lines of an itemset, and no others.
    void cover(std::span<const Rank> itemset) {
        const auto common = std::ranges::mismatch(itemset_, itemset).in1 - itemset_.begin();
        shrink(static_cast<std::size_t>(common));
        for (const Rank rank : itemset.subspan(itemset_.size())) {
            add(rank);
        }
    }

    bool holds(Transaction line) const { return (marks_[word_of(line)] & bit_of(line)) != 0; }

    /// The marked lines: those of the first item, those that the second one adds, and so on.
    std::span<const Transaction> lines() const { return lines_; }

    /// The marked lines that the last item of the itemset added, which has at least one.
    std::span<const Transaction> added_last() const {
        return lines().subspan(ends_.size() == 1 ? 0 : ends_[ends_.size() - 2]);
    }

private:
    void add(Rank rank) {
        itemset_.push_back(rank);
        for (const Transaction line : items_.transactions[rank]) {
            if (!holds(line)) {
                marks_[word_of(line)] |= bit_of(line);
                lines_.push_back(line);
            }
        }
        ends_.push_back(lines_.size());
    }

    void shrink(std::size_t size) {
        itemset_.resize(size);
        ends_.resize(size);
        const std::size_t left = size == 0 ? 0 : ends_.back();
        for (; lines_.size() > left; lines_.pop_back()) {
            marks_[word_of(lines_.back())] &= ~bit_of(lines_.back());
        }
    }

    const RankedItems& items_;
    std::vector<BitWord> marks_;      ///< by line
    std::vector<Transaction> lines_;  ///< that are marked
    std::vector<Rank> itemset_;
    std::vector<std::size_t> ends_;  ///< by position in the itemset: how many lines came so far
};

}  // namespace korv::tools
