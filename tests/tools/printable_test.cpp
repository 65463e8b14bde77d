#include "common/printable.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

TEST(Printable, LeavesTextAsItIs) {
    const std::string text = "a b\\~ caf\xC3\xA9 \xE4\xB8\xAD \xF0\x9F\x98\x80";
    EXPECT_EQ(printable(text), text);
    EXPECT_EQ(printable(""), "");
}

TEST(Printable, SpellsControlCharacters) {
    EXPECT_EQ(printable("a\tb\nc\x1B[31m\x7F"), "a\\x09b\\x0Ac\\x1B[31m\\x7F");
    EXPECT_EQ(printable(std::string("a\0b", 3)), "a\\x00b");
}

TEST(Printable, SpellsControlCharactersOfTwoBytes) {
    EXPECT_EQ(printable("\xC2\x80\xC2\x9F"), "\\xC2\\x80\\xC2\\x9F");
    EXPECT_EQ(printable("\xC2\xA0"), "\xC2\xA0");
}

TEST(Printable, SpellsWhatChangesTheDirectionOfWriting) {
    EXPECT_EQ(printable("\xD8\x9C"), "\\xD8\\x9C");
    EXPECT_EQ(printable("\xE2\x80\x8E\xE2\x80\x8F"), "\\xE2\\x80\\x8E\\xE2\\x80\\x8F");
    EXPECT_EQ(printable("\xE2\x80\xAA\xE2\x80\xAC"), "\\xE2\\x80\\xAA\\xE2\\x80\\xAC");
    EXPECT_EQ(printable("\xE2\x80\xAE\xE2\x80\xAC"), "\\xE2\\x80\\xAE\\xE2\\x80\\xAC");
    EXPECT_EQ(printable("\xE2\x81\xA6\xE2\x81\xA9"), "\\xE2\\x81\\xA6\\xE2\\x81\\xA9");
}

TEST(Printable, SpellsLineSeparators) {
    EXPECT_EQ(printable("\xE2\x80\xA8\xE2\x80\xA9"), "\\xE2\\x80\\xA8\\xE2\\x80\\xA9");
}

TEST(Printable, SpellsWhatHasNoWidth) {
    EXPECT_EQ(printable("\xEF\xBB\xBF"
                        "2"),
              "\\xEF\\xBB\\xBF"
              "2");
    EXPECT_EQ(printable("\xE2\x80\x8B\xE2\x81\xA0"), "\\xE2\\x80\\x8B\\xE2\\x81\\xA0");
}

TEST(Printable, SpellsBytesThatAreNoCharacter) {
    EXPECT_EQ(printable("a\x9B\x62\xFF"), "a\\x9Bb\\xFF");
    // Cut short, at the end and by another character.
    EXPECT_EQ(printable("\xC3"), "\\xC3");
    EXPECT_EQ(printable("\xE4\xB8x"), "\\xE4\\xB8x");
    // Longer than need be, a surrogate, and beyond the last code point.
    EXPECT_EQ(printable("\xC1\x81"), "\\xC1\\x81");
    EXPECT_EQ(printable("\xE0\x82\x9B"), "\\xE0\\x82\\x9B");
    EXPECT_EQ(printable("\xED\xA0\x80"), "\\xED\\xA0\\x80");
    EXPECT_EQ(printable("\xF4\x90\x80\x80"), "\\xF4\\x90\\x80\\x80");
}

TEST(Printable, StaysAsItIsOnceItIsPrintable) {
    const std::string once = printable("\x1B\\x1B\xFF");
    EXPECT_EQ(printable(once), once);
}

}  // namespace
}  // namespace korv::tools
