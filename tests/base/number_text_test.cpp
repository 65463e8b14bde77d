#include "base/number_text.h"

#include <gtest/gtest.h>

#include <array>

namespace korv {
namespace {

std::string appended(Count number) {
    std::string text = "before ";
    append_number(number, text);
    return text;
}

TEST(NumberText, IsDecimal) {
    EXPECT_EQ(appended(0), "before 0");
    EXPECT_EQ(appended(1207), "before 1207");
}

TEST(NumberText, TheLargestNumberHasAsManyDigitsAsThereIsRoomFor) {
    std::array<char, most_digits> digits{};
    EXPECT_EQ(write_number(4294967295U, digits.data()), digits.data() + digits.size());
    EXPECT_EQ(std::string(digits.begin(), digits.end()), "4294967295");
}

TEST(NumberText, ItemsHaveOneBlankBetweenThem) {
    std::string text = "before ";
    append_items({3, 3, 17}, text);
    EXPECT_EQ(text, "before 3 3 17");
}

TEST(NumberText, NoItemsHaveNoText) {
    std::string text = "before ";
    append_items({}, text);
    EXPECT_EQ(text, "before ");
}

TEST(ParseNumber, TakesTheWholeText) {
    EXPECT_EQ(parse_number<Count>("1207"), 1207U);
    EXPECT_EQ(parse_number<Count>("007"), 7U);
    EXPECT_EQ(parse_number<double>("-2.5e1"), -25.0);
}

TEST(ParseNumber, RefusesWhatIsNoNumber) {
    for (const char* const text : {"", "-1", "+1", " 1", "1 ", "1x", "1.5", "x"}) {
        EXPECT_EQ(parse_number<Count>(text), std::nullopt) << text;
    }
}

TEST(ParseNumber, RefusesWhatIsTooLarge) {
    EXPECT_EQ(parse_number<Count>("4294967295"), 4294967295U);
    EXPECT_EQ(parse_number<Count>("4294967296"), std::nullopt);
}

}  // namespace
}  // namespace korv
