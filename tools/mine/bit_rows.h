#pragma once

#include <cstddef>
#include <vector>

#include "base/bit_words.h"
#include "mine/bit_counting.h"

namespace korv::tools {

/// Sets of lines as bit vectors of the same number of words, and the weights of the lines.
class BitRows {
public:
    /// Becomes so many empty sets of lines numbered below `lines`, which all have the weight 1. Keeps memory.
    void reset(std::size_t rows, std::size_t lines);

    /// Sets the weights of the lines, by line.
    void set_weights(const std::vector<Count>& weights);

    void insert(std::size_t row, std::size_t line) { bits_[row * words_ + word_of(line)] |= bit_of(line); }

    std::size_t words() const { return words_; }
    /// What the sets and the weights take in memory.
    std::size_t bytes() const { return (bits_.capacity() + weight_bits_.capacity()) * sizeof(BitWord); }
    /// How often a count goes over a set: once for each bit of the weights.
    std::size_t passes() const { return weight_bits_.empty() ? 1 : weight_bits_.size() / words_; }
    const BitWord* operator[](std::size_t row) const { return bits_.data() + row * words_; }

    /// The weight of the lines in both sets.
    Count both(const BitWord* a, const BitWord* b) const;
    /// The weight of the lines in `a` that are not in `b`.
    Count without(const BitWord* a, const BitWord* b) const;

private:
    Count count(Combination combination, const BitWord* a, const BitWord* b) const;

    CountBits count_bits_ = bit_counters().front();
    std::size_t words_ = 0;
    std::vector<BitWord> bits_;  ///< row by row
    /// The lines whose weight has the bit 1, those whose weight has the bit 2, and so on, as bit vectors one
    /// behind the other; empty when all weights are 1.
    std::vector<BitWord> weight_bits_;
};

}  // namespace korv::tools
