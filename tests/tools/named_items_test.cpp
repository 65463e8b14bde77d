#include "mine/named_items.h"

#include <gtest/gtest.h>

#include "tools/complaint.h"

namespace korv::tools {
namespace {

TEST(NamedItems, AreNumberedFrom1AsTheyComeUp) {
    NamedItems items;
    EXPECT_EQ(items.number_of("milk"), 1U);
    EXPECT_EQ(items.number_of("bread"), 2U);
    EXPECT_EQ(items.number_of("milk"), 1U);
    EXPECT_EQ(items.names(), (std::vector<std::string>{"milk", "bread"}));
}

TEST(NamedItems, StayDistinctAmongMany) {
    NamedItems items;
    for (int i = 1; i <= 10'000; ++i) {
        ASSERT_EQ(items.number_of("item " + std::to_string(i)), static_cast<Item>(i));
    }
    for (int i = 1; i <= 10'000; ++i) {
        ASSERT_EQ(items.number_of("item " + std::to_string(i)), static_cast<Item>(i));
    }
    EXPECT_EQ(items.size(), 10'000U);
    EXPECT_EQ(items.names().at(9'998), "item 9999");
}

/// What is said of a cell that is everything behind "x\ny,".
std::string complaint(const std::string& cell, const std::string& name) {
    return complaint_of([&] { check_name(name, 4, {"a.csv", "x\ny," + cell}); });
}

/// The place in what is said of a cell without quotes, from its first byte; "" where nothing is said.
std::string place(const std::string& name) {
    const std::string said = complaint(name, name);
    return said.substr(0, said.find(": found"));
}

TEST(CheckName, AcceptsEveryOtherCharacter) {
    for (const char* const name :
         {"milk", "", " ", "a=b", "caf\xC3\xA9", "\xC2\xA0", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF",
          "\xEE\x80\x80", "\xEF\xBF\xBD", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF", "~"}) {
        EXPECT_EQ(complaint(name, name), "") << name;
    }
}

TEST(CheckName, RefusesControlCharactersAtTheirPlace) {
    EXPECT_EQ(complaint("ab\tc", "ab\tc"),
              "a.csv:2:5: found \"ab\\x09c\"; expected a name without control characters, such as tabs and "
              "line ends");
    for (const std::string& control :
         {std::string(1, '\0'), std::string("\x01"), std::string("\n"), std::string("\r"),
          std::string("\x1B"), std::string("\x1F"), std::string("\x7F"), std::string("\xC2\x80"),
          std::string("\xC2\x9F")}) {
        EXPECT_EQ(place("a" + control + "b"), "a.csv:2:4") << testing::PrintToString(control);
    }
}

TEST(CheckName, SaysWhatConvertsOtherEncodings) {
    EXPECT_EQ(complaint("K\xF6ln", "K\xF6ln"),
              "a.csv:2:4: found \"K\\xF6ln\"; expected a name in UTF-8 (iconv converts other encodings)");
}

TEST(CheckName, RefusesWhatIsNotUtf8AtItsPlace) {
    for (const char* const bytes : {
             "\x80",
             "\xBF",
             "\xFF",
             "\xFE",
             "\xF8\x88\x80\x80\x80",  // never first
             "\xC3",
             "\xE2\x82",
             "\xF0\x9F\x98",  // cut off
             "\xC3\x28",
             "\xE2\x28\xA1",
             "\xE2\x82\x28",
             "\xC3\xC3",  // goes on otherwise
             "\xC0\x80",
             "\xC1\xBF",
             "\xE0\x9F\xBF",
             "\xF0\x8F\xBF\xBF",  // longer than need be
             "\xED\xA0\x80",
             "\xED\xBF\xBF",  // surrogates
             "\xF4\x90\x80\x80",
             "\xF7\xBF\xBF\xBF",  // above U+10FFFF
         }) {
        EXPECT_EQ(place(std::string("ab") + bytes), "a.csv:2:5") << testing::PrintToString(bytes);
        EXPECT_EQ(place(std::string("\xC3\xA9") + bytes + "z"), "a.csv:2:5") << testing::PrintToString(bytes);
    }
}

TEST(CheckName, FindsThePlaceWithinQuotes) {
    EXPECT_TRUE(complaint("\"a,\tb\"", "a,\tb").starts_with("a.csv:2:6: found"));
}

TEST(CheckName, FindsTheCellWhereQuotesWithinItAreDoubled) {
    EXPECT_TRUE(complaint("\"a\"\"\tb\"", "a\"\tb").starts_with("a.csv:2:3: found"));
}

TEST(NamesFile, HasALineForEachItem) {
    EXPECT_EQ(names_file({"milk", "rye bread"}), "1\tmilk\n2\trye bread\n");
}

}  // namespace
}  // namespace korv::tools
