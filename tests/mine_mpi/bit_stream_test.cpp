#include "mine_mpi/bit_stream.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

TEST(BitStream, HoldsBitsOneBehindTheOther) {
    BitStream bits;
    for (std::size_t i = 0; i < 130; ++i) {
        bits.push_back(i % 64 == 1);
    }
    EXPECT_EQ(bits.words(), (std::vector<BitWord>{2, 2, 2}));
}

TEST(BitStream, AppendsWholeWords) {
    BitStream bits;
    bits.push_back(true);
    bits.append({2});
    bits.push_back(true);
    EXPECT_EQ(bits.words(), (std::vector<BitWord>{1, 2, 1}));
}

TEST(BitStream, AppendsZeros) {
    BitStream bits;
    bits.append_zeros(0);
    EXPECT_EQ(bits.words(), (std::vector<BitWord>{}));
    bits.push_back(true);
    bits.append_zeros(62);
    bits.push_back(true);
    bits.append_zeros(1);
    bits.push_back(true);
    EXPECT_EQ(bits.words(), (std::vector<BitWord>{0x8000000000000001, 2}));
}

}  // namespace
}  // namespace korv::tools
