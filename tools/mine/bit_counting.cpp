#include "mine/bit_counting.h"

#include <bit>

namespace korv::tools {

namespace {

/// Sums up the bits of combine(i), for each word i.
template <typename Combine>
[[gnu::always_inline]] inline Count sum_of_bits(std::size_t words, Combine combine) {
    std::size_t bits = 0;
    for (std::size_t i = 0; i < words; ++i) {
        bits += static_cast<std::size_t>(std::popcount(combine(i)));
    }
    return static_cast<Count>(bits);
}

/// This must be compiled into its caller, so that it uses the instructions that the caller may use.
[[gnu::always_inline]] inline Count count(Combination combination, const BitWord* first,
                                          const BitWord* second, const BitWord* mask, std::size_t words) {
    if (combination == Combination::both) {
        return mask == nullptr
                   ? sum_of_bits(words, [=](std::size_t i) { return first[i] & second[i]; })
                   : sum_of_bits(words, [=](std::size_t i) { return first[i] & second[i] & mask[i]; });
    }
    return mask == nullptr
               ? sum_of_bits(words, [=](std::size_t i) { return first[i] & ~second[i]; })
               : sum_of_bits(words, [=](std::size_t i) { return first[i] & ~second[i] & mask[i]; });
}

#ifdef __x86_64__

[[gnu::target("popcnt")]] Count count_with_popcnt(Combination combination, const BitWord* first,
                                                  const BitWord* second, const BitWord* mask,
                                                  std::size_t words) {
    return count(combination, first, second, mask, words);
}

[[gnu::target("popcnt,avx512f,avx512vl,avx512vpopcntdq")]] Count count_with_avx512(Combination combination,
                                                                                   const BitWord* first,
                                                                                   const BitWord* second,
                                                                                   const BitWord* mask,
                                                                                   std::size_t words) {
    return count(combination, first, second, mask, words);
}

#endif

}  // namespace

Count count_bits_anywhere(Combination combination, const BitWord* first, const BitWord* second,
                          const BitWord* mask, std::size_t words) {
    return count(combination, first, second, mask, words);
}

std::vector<CountBits> bit_counters() {
    std::vector<CountBits> counters;
#ifdef __x86_64__
    // An int for some compilers, a bool for others.
    if (static_cast<bool>(__builtin_cpu_supports("avx512vpopcntdq")) &&
        static_cast<bool>(__builtin_cpu_supports("avx512vl"))) {
        counters.push_back(count_with_avx512);
    }
    if (static_cast<bool>(__builtin_cpu_supports("popcnt"))) {
        counters.push_back(count_with_popcnt);
    }
#endif
    counters.push_back(count_bits_anywhere);
    return counters;
}

}  // namespace korv::tools
