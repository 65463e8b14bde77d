#include "mine/column_dictionary.h"

#include <gtest/gtest.h>

#include <random>
#include <unordered_map>

namespace korv::tools {
namespace {

TEST(ColumnDictionary, NumbersTextsFrom0AsTheyComeUp) {
    ColumnDictionary dictionary;
    EXPECT_EQ(dictionary.number_of("b").number, 0U);
    EXPECT_EQ(dictionary.number_of("").number, 1U);
    EXPECT_EQ(dictionary.number_of("b").number, 0U);
    EXPECT_EQ(dictionary.number_of("a").number, 2U);
    EXPECT_EQ(dictionary.size(), 3U);
}

TEST(ColumnDictionary, SaysWhichTextsAreNew) {
    ColumnDictionary dictionary;
    EXPECT_TRUE(dictionary.number_of("a").is_new);
    EXPECT_FALSE(dictionary.number_of("a").is_new);
    EXPECT_TRUE(dictionary.number_of("b").is_new);
    EXPECT_FALSE(dictionary.number_of("a").is_new);
}

TEST(ColumnDictionary, TellsTextsOfAnyBytesApart) {
    ColumnDictionary dictionary;
    const std::vector<std::string> texts = {
        std::string("a\0", 2), "a", "aa", std::string(100'000, 'a'), std::string(100'000, 'a') + 'b',
        std::string(1, '\0')};
    for (const std::string& text : texts) {
        EXPECT_TRUE(dictionary.number_of(text).is_new);
    }
    for (std::uint32_t number = 0; number < texts.size(); ++number) {
        EXPECT_TRUE(dictionary.text(number) == texts[number]);
        EXPECT_EQ(dictionary.number_of(texts[number]).number, number);
    }
}

TEST(ColumnDictionary, KnowsWhatAMapKnows) {
    std::mt19937 random(1);
    ColumnDictionary dictionary;
    std::unordered_map<std::string, std::uint32_t> numbers;
    for (int i = 0; i < 200'000; ++i) {
        const std::string text = std::to_string(random() % 50'000);
        const auto [known, is_new] = numbers.try_emplace(text, numbers.size());
        const auto entry = dictionary.number_of(text);
        ASSERT_EQ(entry.number, known->second) << text;
        ASSERT_EQ(entry.is_new, is_new) << text;
        ASSERT_EQ(dictionary.text(entry.number), text);
    }
    EXPECT_EQ(dictionary.size(), numbers.size());
}

}  // namespace
}  // namespace korv::tools
