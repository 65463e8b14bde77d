#include "mine/bit_counting.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace korv::tools {
namespace {

TEST(BitCounters, CountBitsOfWords) {
    const std::vector<BitWord> first = {0b1111, ~BitWord{0}};
    const std::vector<BitWord> second = {0b0101, 1};
    const std::vector<BitWord> mask = {0b0001, 3};
    for (const CountBits count : bit_counters()) {
        const auto counted = [&](Combination combination, const BitWord* within, std::size_t words) {
            return count(combination, first.data(), second.data(), within, words);
        };
        EXPECT_EQ(counted(Combination::both, nullptr, 2), 3U);
        EXPECT_EQ(counted(Combination::without, nullptr, 2), 2U + 63U);
        EXPECT_EQ(counted(Combination::both, mask.data(), 2), 2U);
        EXPECT_EQ(counted(Combination::without, mask.data(), 2), 1U);
        EXPECT_EQ(counted(Combination::both, nullptr, 0), 0U);
    }
}

TEST(BitCounters, AgreeOnVectorsOfAnyLength) {
    std::mt19937_64 random(3);
    const std::vector<CountBits> counters = bit_counters();
    EXPECT_EQ(counters.back(), &count_bits_anywhere);
    for (std::size_t words = 0; words < 70; ++words) {
        std::vector<BitWord> first(words);
        std::vector<BitWord> second(words);
        std::vector<BitWord> mask(words);
        for (std::size_t i = 0; i < words; ++i) {
            first[i] = random();
            second[i] = random();
            mask[i] = random();
        }
        for (const BitWord* const within : std::initializer_list<const BitWord*>{nullptr, mask.data()}) {
            for (const Combination combination : {Combination::both, Combination::without}) {
                const Count expected =
                    count_bits_anywhere(combination, first.data(), second.data(), within, words);
                for (const CountBits count : counters) {
                    ASSERT_EQ(count(combination, first.data(), second.data(), within, words), expected);
                }
            }
        }
    }
}

}  // namespace
}  // namespace korv::tools
