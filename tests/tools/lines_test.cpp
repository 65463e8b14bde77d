#include "common/lines.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace korv::tools {
namespace {

using Lines = std::vector<std::string>;

Lines lines_of(std::string_view text) {
    Lines lines;
    for_each_line(text, [&lines](std::string_view line) { lines.emplace_back(line); });
    return lines;
}

TEST(Lines, OfAnEmptyTextAreNone) {
    EXPECT_EQ(lines_of(""), Lines{});
}

TEST(Lines, EndWithLfOrCrLf) {
    EXPECT_EQ(lines_of("a\nb\r\nc\n"), (Lines{"a", "b", "c"}));
}

TEST(Lines, TheLastNeedsNoEnd) {
    EXPECT_EQ(lines_of("a\nb"), (Lines{"a", "b"}));
}

TEST(Lines, MayBeEmpty) {
    EXPECT_EQ(lines_of("\na\n\r\n\n"), (Lines{"", "a", "", ""}));
}

TEST(Lines, KeepACrThatIsNotAtTheEnd) {
    EXPECT_EQ(lines_of("a\rb\n"), Lines{"a\rb"});
}

}  // namespace
}  // namespace korv::tools
