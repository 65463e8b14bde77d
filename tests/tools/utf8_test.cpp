#include "common/utf8.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

TEST(Utf8, HasCharactersOfOneToFourBytes) {
    const auto expect = [](std::string_view text, std::size_t bytes, char32_t code) {
        EXPECT_EQ(first_character(text).bytes, bytes) << text;
        EXPECT_EQ(first_character(text).code, code) << text;
    };
    expect("ab", 1, U'a');
    expect("\xC3\xA9x", 2, 0xE9);
    expect("\xE4\xB8\xADx", 3, 0x4E2D);
    expect("\xF0\x9F\x98\x80x", 4, 0x1F600);
    expect(std::string_view("\0", 1), 1, 0);
    expect("\xF4\x8F\xBF\xBF", 4, 0x10FFFF);
}

TEST(Utf8, HasNoCharacterInOtherBytes) {
    for (const std::string_view text :
         {"", "\xA9x", "\xC3", "\xC3x", "\xE4\xB8", "\xF0\x9F\x98", "\xFF", "\xF8\x88\x80\x80\x80"}) {
        EXPECT_EQ(first_character(text).bytes, 0U) << text;
    }
}

TEST(Utf8, HasNoCharacterWithMoreBytesThanItNeeds) {
    for (const std::string_view text : {"\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF"}) {
        EXPECT_EQ(first_character(text).bytes, 0U);
    }
}

TEST(Utf8, HasNoSurrogateAndNothingBeyondTheLastCharacter) {
    for (const std::string_view text : {"\xED\xA0\x80", "\xED\xBF\xBF", "\xF4\x90\x80\x80"}) {
        EXPECT_EQ(first_character(text).bytes, 0U);
    }
    EXPECT_EQ(first_character("\xED\x9F\xBF").bytes, 3U);
    EXPECT_EQ(first_character("\xEE\x80\x80").bytes, 3U);
}

TEST(ValidUtf8, LeavesCharactersAndReplacesOtherBytes) {
    EXPECT_EQ(valid_utf8("Käse \xF0\x9F\x8D\x9E"), "Käse \xF0\x9F\x8D\x9E");
    EXPECT_EQ(valid_utf8("\xC3"), "\xEF\xBF\xBD");
    EXPECT_EQ(valid_utf8("a\xC3(\xFF"), "a\xEF\xBF\xBD(\xEF\xBF\xBD");
}

}  // namespace
}  // namespace korv::tools
