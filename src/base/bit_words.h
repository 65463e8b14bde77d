#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace korv {

// Sets of small numbers as bitmaps: bit b of word w stands for the number 64 * w + b.

using BitWord = std::uint64_t;

inline constexpr std::size_t word_bits = 64;

/// How many words a bitmap of the numbers below `bound` has.
constexpr std::size_t words_for(std::size_t bound) {
    return (bound + word_bits - 1) / word_bits;
}

/// The position of the word in which a number has its bit.
template <typename Number>
constexpr Number word_of(Number number) {
    return static_cast<Number>(number / word_bits);
}

/// The bit of a number in its word.
constexpr BitWord bit_of(std::size_t number) {
    return BitWord{1} << number % word_bits;
}

/// The smallest number of a word that is not 0. `word`: its position in the bitmap.
constexpr std::size_t lowest_number(std::size_t word, BitWord bits) {
    return word * word_bits + static_cast<std::size_t>(std::countr_zero(bits));
}

}  // namespace korv
