#include "mine/bit_search.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace korv::tools {
namespace {

TEST(WordSearches, FindTheFirstWordWithABitOfNeither) {
    const std::vector<BitWord> set = {0b1111, 0b1100, 0b0110, 0b1000, 0b0001, 0b0001};
    const std::vector<BitWord> first = {0b1010, 0b1100, 0b0100, 0b1000, 0b0000, 0b1111};
    const std::vector<BitWord> second = {0b0101, 0b0000, 0b0010, 0b0000, 0b1110, 0b0000};
    for (const FindWord find : word_searches()) {
        const auto found_from = [&](std::size_t begin, std::size_t words) {
            return find(set.data() + begin, first.data() + begin, second.data() + begin, words);
        };
        EXPECT_EQ(found_from(0, 6), 4U);
        EXPECT_EQ(found_from(0, 4), 4U) << "none";
        EXPECT_EQ(found_from(4, 2), 0U);
        EXPECT_EQ(found_from(5, 1), 1U) << "none";
        EXPECT_EQ(found_from(0, 0), 0U);
    }
}

TEST(WordSearches, AgreeOnVectorsOfAnyLength) {
    std::mt19937_64 random(5);
    const std::vector<FindWord> searches = word_searches();
    EXPECT_EQ(searches.back(), &find_word_anywhere);
    for (std::size_t words = 0; words < 70; ++words) {
        for (std::size_t only = 0; only <= words; ++only) {
            std::vector<BitWord> set(words);
            std::vector<BitWord> first(words);
            std::vector<BitWord> second(words);
            for (std::size_t i = 0; i < words; ++i) {
                const BitWord not_covered = i < only ? 0 : random();
                first[i] = random() & ~not_covered;
                second[i] = ~first[i] & ~not_covered;
                set[i] = i < only ? random() : random() | not_covered;
            }
            if (only < words) {
                first[only] = second[only] = ~BitWord{1};
                set[only] = 1;
            }
            for (const FindWord find : searches) {
                ASSERT_EQ(find(set.data(), first.data(), second.data(), words), only);
            }
        }
    }
}

}  // namespace
}  // namespace korv::tools
