#include "rules/base64.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace korv::tools {

namespace {

std::string base64(const std::vector<std::string>& pieces) {
    std::string text;
    Base64Text base64([&text](std::string_view piece) { text += piece; });
    for (const std::string& piece : pieces) {
        base64.add(piece);
    }
    base64.finish();
    return text;
}

TEST(Base64Text, HasFourCharactersForThreeBytes) {
    EXPECT_EQ(base64({""}), "");
    EXPECT_EQ(base64({"foo"}), "Zm9v");
    EXPECT_EQ(base64({"foobar"}), "Zm9vYmFy");
}

TEST(Base64Text, IsFilledUpAtTheEnd) {
    EXPECT_EQ(base64({"f"}), "Zg==");
    EXPECT_EQ(base64({"fo"}), "Zm8=");
    EXPECT_EQ(base64({"foob"}), "Zm9vYg==");
}

TEST(Base64Text, HasAllBytes) {
    EXPECT_EQ(base64({{"\x00\xFF\xFE", 3}}), "AP/+");
    EXPECT_EQ(base64({{"\xFB\xEF\xBE", 3}}), "++++");
}

TEST(Base64Text, IsTheSameHoweverTheBytesCome) {
    EXPECT_EQ(base64({"f", "o", "", "o", "ba", "r"}), "Zm9vYmFy");
    EXPECT_EQ(base64({"fo", "obarf"}), "Zm9vYmFyZg==");
}

TEST(Base64Text, PassesLongTextsOnInPieces) {
    std::size_t longest = 0;
    std::size_t length = 0;
    Base64Text text([&](std::string_view piece) {
        longest = std::max(longest, piece.size());
        length += piece.size();
    });
    text.add(std::string(3'000'000, 'x'));
    text.finish();
    EXPECT_EQ(length, 4'000'000U);
    EXPECT_LT(longest, 100'000U);
}

}  // namespace

}  // namespace korv::tools
