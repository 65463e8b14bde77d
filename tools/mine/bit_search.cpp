#include "mine/bit_search.h"

#include <cstring>

#ifdef __x86_64__
#include <immintrin.h>
#endif

namespace korv::tools {

namespace {

#ifdef __x86_64__

[[gnu::target("avx2")]] __m256i four_words(const BitWord* words) {
    __m256i four;
    std::memcpy(&four, words, sizeof four);
    return four;
}

[[gnu::target("avx2")]] std::size_t find_word_with_avx2(const BitWord* set, const BitWord* first,
                                                        const BitWord* second, std::size_t words) {
    std::size_t i = 0;
    // The test is whether its second argument has no bit outside the first one.
    while (i + 4 <= words &&
           _mm256_testc_si256(_mm256_or_si256(four_words(first + i), four_words(second + i)),
                              four_words(set + i)) != 0) {
        i += 4;
    }
    return i + find_word_anywhere(set + i, first + i, second + i, words - i);
}

#endif

}  // namespace

std::size_t find_word_anywhere(const BitWord* set, const BitWord* first, const BitWord* second,
                               std::size_t words) {
    std::size_t i = 0;
    while (i < words && (set[i] & ~(first[i] | second[i])) == 0) {
        ++i;
    }
    return i;
}

std::vector<FindWord> word_searches() {
    std::vector<FindWord> searches;
#ifdef __x86_64__
    if (static_cast<bool>(__builtin_cpu_supports("avx2"))) {
        searches.push_back(find_word_with_avx2);
    }
#endif
    searches.push_back(find_word_anywhere);
    return searches;
}

}  // namespace korv::tools
