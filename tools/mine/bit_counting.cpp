#include "mine/bit_counting.h"

#include <bit>

namespace korv::tools {

namespace {

/// Sums up the bits of combine(i), for each word i. It must be compiled into its caller, so that it uses the
/// instructions that the caller may use.
template <typename Combine>
[[gnu::always_inline]] inline Count sum_of_bits(std::size_t words, Combine combine) {
    std::size_t bits = 0;
    for (std::size_t i = 0; i < words; ++i) {
        bits += static_cast<std::size_t>(std::popcount(combine(i)));
    }
    return static_cast<Count>(bits);
}

Count both(const BitWord* a, const BitWord* b, std::size_t words) {
    return sum_of_bits(words, [=](std::size_t i) { return a[i] & b[i]; });
}

Count without(const BitWord* a, const BitWord* b, std::size_t words) {
    return sum_of_bits(words, [=](std::size_t i) { return a[i] & ~b[i]; });
}

Count both_within(const BitWord* a, const BitWord* b, const BitWord* mask, std::size_t words) {
    return sum_of_bits(words, [=](std::size_t i) { return a[i] & b[i] & mask[i]; });
}

Count without_within(const BitWord* a, const BitWord* b, const BitWord* mask, std::size_t words) {
    return sum_of_bits(words, [=](std::size_t i) { return a[i] & ~b[i] & mask[i]; });
}

constexpr BitCounting portable = {both, without, both_within, without_within};

#ifdef __x86_64__

[[gnu::target("popcnt")]] Count fast_both(const BitWord* a, const BitWord* b, std::size_t words) {
    return sum_of_bits(words, [=](std::size_t i) { return a[i] & b[i]; });
}

[[gnu::target("popcnt")]] Count fast_without(const BitWord* a, const BitWord* b, std::size_t words) {
    return sum_of_bits(words, [=](std::size_t i) { return a[i] & ~b[i]; });
}

[[gnu::target("popcnt")]] Count fast_both_within(const BitWord* a, const BitWord* b, const BitWord* mask,
                                                 std::size_t words) {
    return sum_of_bits(words, [=](std::size_t i) { return a[i] & b[i] & mask[i]; });
}

[[gnu::target("popcnt")]] Count fast_without_within(const BitWord* a, const BitWord* b, const BitWord* mask,
                                                    std::size_t words) {
    return sum_of_bits(words, [=](std::size_t i) { return a[i] & ~b[i] & mask[i]; });
}

constexpr BitCounting with_popcnt = {fast_both, fast_without, fast_both_within, fast_without_within};

#endif

}  // namespace

const BitCounting& portable_bit_counting() {
    return portable;
}

const BitCounting& bit_counting() {
#ifdef __x86_64__
    if (__builtin_cpu_supports("popcnt") != 0) {
        return with_popcnt;
    }
#endif
    return portable;
}

}  // namespace korv::tools
