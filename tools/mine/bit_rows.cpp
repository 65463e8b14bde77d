#include "mine/bit_rows.h"

#include <algorithm>
#include <bit>

namespace korv::tools {

void BitRows::reset(std::size_t rows, std::size_t lines) {
    words_ = words_for(lines);
    bits_.assign(rows * words_, 0);
    weight_bits_.clear();
}

void BitRows::set_weights(const std::vector<Count>& weights) {
    weight_bits_.clear();
    for (std::size_t line = 0; line < weights.size(); ++line) {
        const auto width = static_cast<std::size_t>(std::bit_width(weights[line]));
        weight_bits_.resize(std::max(weight_bits_.size(), width * words_));
        for (std::size_t bit = 0; bit < width; ++bit) {
            if ((weights[line] >> bit & 1U) != 0) {
                weight_bits_[bit * words_ + word_of(line)] |= bit_of(line);
            }
        }
    }
}

Count BitRows::both(const BitWord* a, const BitWord* b) const {
    return count(Combination::both, a, b);
}

Count BitRows::without(const BitWord* a, const BitWord* b) const {
    return count(Combination::without, a, b);
}

Count BitRows::count(Combination combination, const BitWord* a, const BitWord* b) const {
    if (weight_bits_.empty()) {
        return count_bits_(combination, a, b, nullptr, words_);
    }
    Count sum = 0;
    for (std::size_t bit = 0; bit * words_ < weight_bits_.size(); ++bit) {
        sum += count_bits_(combination, a, b, &weight_bits_[bit * words_], words_) << bit;
    }
    return sum;
}

}  // namespace korv::tools
