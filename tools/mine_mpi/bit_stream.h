#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/bit_words.h"

namespace korv::tools {

/// Bits one behind the other, as processes tell them each other.
class BitStream {
public:
    void push_back(bool bit) {
        if (words_.size() == word_of(bits_)) {
            words_.push_back(0);
        }
        words_.back() |= bit ? bit_of(bits_) : 0;
        ++bits_;
    }

    void append_zeros(std::size_t size) {
        bits_ += size;
        words_.resize(words_for(bits_));
    }

    /// Appends whole words, behind the end of the last one.
    void append(const std::vector<BitWord>& words) {
        words_.insert(words_.end(), words.begin(), words.end());
        bits_ = words_.size() * word_bits;
    }

    const std::vector<BitWord>& words() const { return words_; }

private:
    std::vector<BitWord> words_;
    std::size_t bits_ = 0;
};

}  // namespace korv::tools
