#include "mine/weighted_line.h"

#include <gtest/gtest.h>

#include <string>

#include "tools/complaint.h"

namespace korv::tools {
namespace {

/// The weight of a line and, behind a colon, its transaction.
std::string taken_from(const std::string& text) {
    const TextInput input = {"a.dat", text};
    std::string_view line = input.text;
    const Count weight = take_weight(line, input);
    return std::to_string(weight) + ":" + std::string(line);
}

std::string complaint(const std::string& text) {
    return complaint_of([&] { taken_from(text); });
}

TEST(WeightedLine, BeginsWithANumberAndABlank) {
    EXPECT_EQ(taken_from("      3 milk,bread"), "3:milk,bread");
    EXPECT_EQ(taken_from("3 milk"), "3:milk");
    EXPECT_EQ(taken_from("1234567 1 2"), "1234567:1 2");
    EXPECT_EQ(taken_from("3\t7"), "3:7");
}

TEST(WeightedLine, KeepsTheBlanksOfTheTransaction) {
    EXPECT_EQ(taken_from("  3  7 "), "3: 7 ");
}

TEST(WeightedLine, MayHoldAnEmptyTransaction) {
    EXPECT_EQ(taken_from("      3 "), "3:");
    EXPECT_EQ(taken_from("      3"), "3:");
}

TEST(WeightedLine, MustBeginWithAWholeNumberFrom1) {
    const std::string expected =
        "; expected how many times the transaction occurs, a number from 1 to 4294967295, and a blank";
    EXPECT_EQ(complaint("  0 milk"), "a.dat:1:3: found \"0\"" + expected);
    EXPECT_EQ(complaint("milk bread"), "a.dat:1:1: found \"milk\"" + expected);
    EXPECT_EQ(complaint("2,milk"), "a.dat:1:1: found \"2,milk\"" + expected);
    EXPECT_EQ(complaint("-1 milk"), "a.dat:1:1: found \"-1\"" + expected);
    EXPECT_EQ(complaint("1.5 milk"), "a.dat:1:1: found \"1.5\"" + expected);
    EXPECT_EQ(complaint("4294967296 7"), "a.dat:1:1: found \"4294967296\"" + expected);
    EXPECT_EQ(complaint("  "), "a.dat:1:3: found no number" + expected);
}

}  // namespace
}  // namespace korv::tools
