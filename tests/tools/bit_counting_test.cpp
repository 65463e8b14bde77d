#include "mine/bit_counting.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace korv::tools {
namespace {

TEST(BitCounting, CountsBitsOfWords) {
    const std::vector<BitWord> a = {0b1111, ~BitWord{0}};
    const std::vector<BitWord> b = {0b0101, 1};
    const std::vector<BitWord> mask = {0b0001, 3};
    for (const BitCounting* counting : {&portable_bit_counting(), &bit_counting()}) {
        EXPECT_EQ(counting->both(a.data(), b.data(), 2), 3U);
        EXPECT_EQ(counting->without(a.data(), b.data(), 2), 2U + 63U);
        EXPECT_EQ(counting->both_within(a.data(), b.data(), mask.data(), 2), 2U);
        EXPECT_EQ(counting->without_within(a.data(), b.data(), mask.data(), 2), 1U);
        EXPECT_EQ(counting->both(a.data(), b.data(), 0), 0U);
    }
}

TEST(BitCounting, IsTheSameInAllInstructions) {
    std::mt19937_64 random(3);
    for (std::size_t words = 0; words < 70; ++words) {
        std::vector<BitWord> a(words);
        std::vector<BitWord> b(words);
        std::vector<BitWord> mask(words);
        for (std::size_t i = 0; i < words; ++i) {
            a[i] = random();
            b[i] = random();
            mask[i] = random();
        }
        const BitCounting& portable = portable_bit_counting();
        const BitCounting& fast = bit_counting();
        EXPECT_EQ(fast.both(a.data(), b.data(), words), portable.both(a.data(), b.data(), words));
        EXPECT_EQ(fast.without(a.data(), b.data(), words), portable.without(a.data(), b.data(), words));
        EXPECT_EQ(fast.both_within(a.data(), b.data(), mask.data(), words),
                  portable.both_within(a.data(), b.data(), mask.data(), words));
        EXPECT_EQ(fast.without_within(a.data(), b.data(), mask.data(), words),
                  portable.without_within(a.data(), b.data(), mask.data(), words));
    }
}

}  // namespace
}  // namespace korv::tools
