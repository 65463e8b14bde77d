#include "rules/display_text.h"

#include <gtest/gtest.h>

namespace korv::tools {

namespace {

using Lines = std::vector<std::string>;

TEST(DisplayWidth, CountsColumnsNotBytes) {
    EXPECT_EQ(display_width(""), 0U);
    EXPECT_EQ(display_width("bread"), 5U);
    EXPECT_EQ(display_width("Käse"), 4U);
    EXPECT_EQ(display_width("パン"), 4U);
    EXPECT_EQ(display_width("לחם"), 3U);
}

TEST(DisplayWidth, OfALetterWithItsMarksIsOne) {
    EXPECT_EQ(display_width("e\u0301"), 1U);  // e, and an accent that is set on it
}

TEST(DisplayWidth, OfAnEmojiOfSeveralPartsIsTwo) {
    EXPECT_EQ(display_width("🍞"), 2U);
    EXPECT_EQ(display_width("👩‍👩‍👧"), 2U);  // three persons, joined
    EXPECT_EQ(display_width("🇫🇷"), 2U);                  // two letters of a flag
}

TEST(DisplayWidth, OfABytesThatIsNoCharacterIsOne) {
    EXPECT_EQ(display_width("a\xFF"), 2U);
}

TEST(Shortened, LeavesWhatFits) {
    EXPECT_EQ(shortened("bread", 5), "bread");
}

TEST(Shortened, EndsWithAnEllipsis) {
    EXPECT_EQ(shortened("butter", 5), "butt…");
    EXPECT_EQ(shortened("butter", 1), "…");
}

TEST(Shortened, NeverPartsACharacter) {
    EXPECT_EQ(shortened("パンと", 4), "パ…");  // a second one would need a fifth column
    EXPECT_EQ(shortened("e\u0301e\u0301e\u0301", 2), "e\u0301…");
    EXPECT_EQ(shortened("👩‍👩‍👧👩‍👩‍👧", 3), "👩‍👩‍👧…");
}

TEST(Wrapped, PartsAtBlanks) {
    EXPECT_EQ(wrapped("bread or butter or milk", 10), (Lines{"bread or", "butter or", "milk"}));
}

TEST(Wrapped, FillsALineToItsLastColumn) {
    EXPECT_EQ(wrapped("bread or butter", 8), (Lines{"bread or", "butter"}));
    EXPECT_EQ(wrapped("bread or butter", 15), (Lines{"bread or butter"}));
}

TEST(Wrapped, PartsALongWordBetweenCharacters) {
    EXPECT_EQ(wrapped("a butterscotch", 6), (Lines{"a", "butter", "scotch"}));
    EXPECT_EQ(wrapped("パンと", 5), (Lines{"パン", "と"}));
}

TEST(Wrapped, GivesACharacterThatIsTooWideALineOfItsOwn) {
    EXPECT_EQ(wrapped("パン", 1), (Lines{"パ", "ン"}));
}

TEST(Wrapped, HasOneLineForNothing) {
    EXPECT_EQ(wrapped("", 5), Lines{""});
    EXPECT_EQ(wrapped("  ", 5), Lines{""});
}

TEST(Wrapped, KeepsBlanksAtTheBeginning) {
    EXPECT_EQ(wrapped("  bread butter", 8), (Lines{"  bread", "butter"}));
}

TEST(AppendParagraph, PutsLinesBehindTheIndent) {
    std::string text = "before\n";
    append_paragraph("1. ", "   ", "bread and butter and milk", 23, text);
    EXPECT_EQ(text, "before\n1. bread and butter and\n   milk\n");
    append_paragraph("1. ", "   ", "", 23, text);
    EXPECT_EQ(text, "before\n1. bread and butter and\n   milk\n");
}

TEST(AppendParagraph, LeavesRoomForTwentyColumns) {
    std::string text;
    append_paragraph("1. ", "   ", "twenty columns of it and more", 5, text);
    EXPECT_EQ(text, "1. twenty columns of it\n   and more\n");
}

TEST(Aligned, FillsUpWithBlanks) {
    EXPECT_EQ(right_aligned("パ", 4), "  パ");
    EXPECT_EQ(left_aligned("パ", 4), "パ  ");
    EXPECT_EQ(right_aligned("bread", 4), "bread");
    EXPECT_EQ(left_aligned("bread", 4), "bread");
}

}  // namespace

}  // namespace korv::tools
