#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/bit_words.h"

namespace korv::tools {

/// Bits one behind the other, as processes tell them each other.
class BitStream {
public:
    void clear() {
        words_.clear();
        bits_ = 0;
    }

    void push_back(bool bit) {
        if (words_.size() == word_of(bits_)) {
            words_.push_back(0);
        }
        words_.back() |= bit ? bit_of(bits_) : 0;
        ++bits_;
    }

    /// Appends whole words, behind the end of the last one.
    void append(const std::vector<BitWord>& words) {
        words_.insert(words_.end(), words.begin(), words.end());
        bits_ = words_.size() * word_bits;
    }

    bool operator[](std::size_t bit) const { return (words_[word_of(bit)] & bit_of(bit)) != 0; }

    /// Where the next bit goes that push_back adds, and the first one that append does.
    std::size_t size() const { return bits_; }
    static std::size_t next_word(std::size_t bit) { return words_for(bit) * word_bits; }

    std::vector<BitWord>& words() { return words_; }
    const std::vector<BitWord>& words() const { return words_; }

private:
    std::vector<BitWord> words_;
    std::size_t bits_ = 0;
};

}  // namespace korv::tools
