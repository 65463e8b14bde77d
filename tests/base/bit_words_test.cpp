#include "base/bit_words.h"

#include <gtest/gtest.h>

namespace korv {
namespace {

TEST(BitWords, ABitmapHasAWordForEach64Numbers) {
    EXPECT_EQ(words_for(0), 0U);
    EXPECT_EQ(words_for(1), 1U);
    EXPECT_EQ(words_for(64), 1U);
    EXPECT_EQ(words_for(65), 2U);
}

TEST(BitWords, ANumberHasItsBitInItsWord) {
    EXPECT_EQ(word_of(63U), 0U);
    EXPECT_EQ(bit_of(63), BitWord{1} << 63);
    EXPECT_EQ(word_of(64U), 1U);
    EXPECT_EQ(bit_of(64), 1U);
    EXPECT_EQ(bit_of(66), 4U);
}

TEST(BitWords, TheLowestNumberIsThatOfTheLowestBit) {
    EXPECT_EQ(lowest_number(0, 1), 0U);
    EXPECT_EQ(lowest_number(0, 0b1010), 1U);
    EXPECT_EQ(lowest_number(2, BitWord{1} << 63), 191U);
}

}  // namespace
}  // namespace korv
