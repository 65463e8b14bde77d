#pragma once

#include <cstddef>
#include <vector>

#include "base/bit_words.h"

namespace korv::tools {

/// Finds the first of so many words that has a bit of `set` that is in neither of two other bit vectors.
/// Returns `words` where there is none.
using FindWord = std::size_t (*)(const BitWord* set, const BitWord* first, const BitWord* second,
                                 std::size_t words);

/// A FindWord in the instructions that every processor has.
std::size_t find_word_anywhere(const BitWord* set, const BitWord* first, const BitWord* second,
                               std::size_t words);

/// Those for the processor on which the program runs, the fastest first; the one above is the last.
std::vector<FindWord> word_searches();

}  // namespace korv::tools
