#pragma once

#include <cstddef>

#include "base/bit_words.h"
#include "base/itemset.h"

namespace korv::tools {

/// Loops over bit vectors of the same number of words. They count bits.
struct BitCounting {
    /// In both `a` and `b`.
    Count (*both)(const BitWord* a, const BitWord* b, std::size_t words);
    /// In `a` and not in `b`.
    Count (*without)(const BitWord* a, const BitWord* b, std::size_t words);
    /// In `a`, `b` and `mask`.
    Count (*both_within)(const BitWord* a, const BitWord* b, const BitWord* mask, std::size_t words);
    /// In `a` and `mask`, and not in `b`.
    Count (*without_within)(const BitWord* a, const BitWord* b, const BitWord* mask, std::size_t words);
};

/// The loops in the instructions that every processor has.
const BitCounting& portable_bit_counting();

/// The fastest loops for the processor on which the program runs.
const BitCounting& bit_counting();

}  // namespace korv::tools
