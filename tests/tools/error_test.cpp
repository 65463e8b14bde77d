#include "common/error.h"

#include <gtest/gtest.h>

#include "tools/complaint.h"

namespace korv::tools {
namespace {

TEST(InputError, NamesFilePlaceFoundAndExpected) {
    EXPECT_STREQ(input_error("a.dat", {3, 7}, "\"x\"", "an item number").what(),
                 "a.dat:3:7: found \"x\"; expected an item number");
}

void expect_place(std::string_view text, std::size_t position, std::size_t line, std::size_t column) {
    const Place place = place_of(text, position);
    EXPECT_EQ(place.line, line);
    EXPECT_EQ(place.column, column);
}

TEST(PlaceOf, CountsFromOne) {
    expect_place("abc", 0, 1, 1);
    expect_place("abc", 2, 1, 3);
}

TEST(PlaceOf, CountsLineEnds) {
    expect_place("ab\ncd\n\nef", 3, 2, 1);
    expect_place("ab\ncd\n\nef", 8, 4, 2);
}

TEST(PlaceOf, ALineEndBelongsToTheLineThatItEnds) {
    expect_place("ab\ncd", 2, 1, 3);
}

TEST(Shown, PutsTextInQuotes) {
    EXPECT_EQ(shown("12a"), "\"12a\"");
    EXPECT_EQ(shown(""), "\"\"");
    EXPECT_EQ(shown("caf\xC3\xA9"), "\"caf\xC3\xA9\"");
}

TEST(Shown, SpellsControlCharacters) {
    EXPECT_EQ(shown("a\rb\x7F"), "\"a\\x0Db\\x7F\"");
}

TEST(Shown, ShortensLongText) {
    EXPECT_EQ(shown(std::string(40, 'a')), '"' + std::string(40, 'a') + '"');
    EXPECT_EQ(shown(std::string(41, 'a')), '"' + std::string(40, 'a') + "...\"");
}

TEST(Shown, IsNotCutWithinACharacter) {
    const std::string thirty_nine(39, 'a');
    EXPECT_EQ(shown(thirty_nine + "\xC3\xA9"), '"' + thirty_nine + "...\"");
    EXPECT_EQ(shown(thirty_nine.substr(1) + "\xC3\xA9z"), '"' + thirty_nine.substr(1) + "\xC3\xA9...\"");
}

TEST(Shown, CountsBytesThatAreNoCharacterOneByOne) {
    std::string spelt;
    for (int i = 0; i < 40; ++i) {
        spelt += "\\xFF";
    }
    EXPECT_EQ(shown(std::string(41, '\xFF')), '"' + spelt + "...\"");
}

TEST(Error, SpellsWhatATerminalWouldObey) {
    EXPECT_STREQ(Error("a\x1B[2J\n: cannot be read").what(), "a\\x1B[2J\\x0A: cannot be read");
}

TEST(WithinMemory, ReturnsWhatTheWorkReturns) {
    EXPECT_EQ(within_memory([] { return 7; }, [] { return std::string("never"); }), 7);
}

TEST(WithinMemory, SaysWhenTheMemoryWasExhausted) {
    int classes = 0;
    const auto work = [&classes] {
        classes = 12;
        throw std::bad_alloc();
    };
    EXPECT_EQ(complaint_of([&] {
                  within_memory(work, [&classes] { return "after " + std::to_string(classes) + " classes"; });
              }),
              "out of memory after 12 classes");
}

TEST(WithinMemory, ThrowsAnErrorOfItsOwn) {
    EXPECT_THROW(within_memory([] { throw std::bad_alloc(); }, [] { return std::string("while idle"); }),
                 OutOfMemory);
}

}  // namespace
}  // namespace korv::tools
