#pragma once

#include <cstddef>
#include <vector>

#include "base/bit_words.h"
#include "base/itemset.h"

namespace korv::tools {

/// Which bits of two bit vectors are counted.
enum class Combination {
    both,     ///< those in the first and in the second
    without,  ///< those in the first and not in the second
};

/// Counts bits of two bit vectors of so many words, all of them or only those that are in `mask`, too, where
/// that is not null.
using CountBits = Count (*)(Combination combination, const BitWord* first, const BitWord* second,
                            const BitWord* mask, std::size_t words);

/// In the instructions that every processor has.
Count count_bits_anywhere(Combination combination, const BitWord* first, const BitWord* second,
                          const BitWord* mask, std::size_t words);

/// Counters for the processor on which the program runs, the fastest first; the one above is the last.
std::vector<CountBits> bit_counters();

}  // namespace korv::tools
