#include "mine_mpi/bit_stream.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

TEST(BitStream, HoldsBitsOneBehindTheOther) {
    BitStream bits;
    for (std::size_t i = 0; i < 130; ++i) {
        bits.push_back(i % 3 == 0);
    }
    EXPECT_EQ(bits.size(), 130U);
    EXPECT_EQ(bits.words().size(), 3U);
    EXPECT_TRUE(bits[129]);
    EXPECT_FALSE(bits[128]);
}

TEST(BitStream, AppendsWholeWords) {
    BitStream bits;
    bits.push_back(true);
    EXPECT_EQ(BitStream::next_word(bits.size()), 64U);
    bits.append({2});
    bits.push_back(true);
    EXPECT_EQ(bits.words(), (std::vector<BitWord>{1, 2, 1}));
    EXPECT_EQ(bits.size(), 129U);
    EXPECT_EQ(BitStream::next_word(128), 128U);
}

}  // namespace
}  // namespace korv::tools
