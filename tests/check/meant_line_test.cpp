#include "check/meant_line.h"

#include <gtest/gtest.h>

#include <string>

#include "check/finding_catalogue.h"

namespace korv::tools {
namespace {

/// "COLUMN CODE, COLUMN CODE".
std::string faults_of(const std::string& line) {
    std::string text;
    for (const LineFault& fault : meant_line(line).faults) {
        text += (text.empty() ? "" : ", ") + std::to_string(fault.column) + " ";
        text += description(fault.kind).code;
    }
    return text;
}

/// The class that is meant: "CLOSED ITEMSET SUPPORT ESSENTIALS".
std::string meant_by(const std::string& line) {
    const MeantLine found = meant_line(line);
    return found.meant ? ::testing::PrintToString(found.meant->first) + " " +
                             std::to_string(found.meant->second.support) + " " +
                             ::testing::PrintToString(found.meant->second.essentials)
                       : "";
}

TEST(MeantLine, HasEachFaultInTheColumnsOfTheLineAsItIs) {
    EXPECT_EQ(faults_of("1  2  3\t5\t 1,,  2, \r\n"),
              "3 extra-blank, 6 extra-blank, 14 doubled-comma, 16 extra-blank, 20 carriage-return, "
              "21 blank-at-end");
}

TEST(MeantLine, IsMeantWithoutTheFaultsThatCanBeTakenOut) {
    const std::string meant = "{ 1, 2 } 5 { { 1 } }";
    EXPECT_EQ(meant_by("1 2\t5\t 1,\n"), meant);
    EXPECT_EQ(meant_by(" 1  2 \t5\t 1 ,\r\n"), meant);
    EXPECT_EQ(meant_by("1 2\t5\t\t 1,\n"), meant);
    EXPECT_EQ(meant_by("1 2\t5\t 1,,\n"), meant);
    EXPECT_EQ(meant_by("1 2\t5\t 1, \n"), meant);
    EXPECT_EQ(meant_by("1 2\t5\t 1\n"), meant);
    EXPECT_EQ(meant_by("1 2\t5\t 1"), "");
    EXPECT_EQ(meant_by("1 2\t5\t 1,"), meant);
    EXPECT_EQ(meant_by("1 2\t5\t 1, 1,\n"), meant);
    EXPECT_EQ(meant_by("1 2\t5\t 2 1, 1,\n"), meant);
    EXPECT_EQ(meant_by("02 1\t005\t 01,\n"), meant);
    EXPECT_EQ(meant_by("1 2\t0\t 1,\n"), "{ 1, 2 } 0 { { 1 } }");
}

TEST(MeantLine, HasARunOfBlanksOnce) {
    EXPECT_EQ(faults_of("1   2   \t5\t    1   ,\n"),
              "3 extra-blank, 7 extra-blank, 13 extra-blank, 18 extra-blank");
    EXPECT_EQ(faults_of("   1\t5\t 1,    \n"), "1 extra-blank, 15 blank-at-end");
    EXPECT_EQ(faults_of("1\t5\t 1 \n"), "8 no-comma");
}

TEST(MeantLine, LacksTabsRatherThanAnythingElse) {
    EXPECT_EQ(faults_of("1  2 5  1,\n"), "3 no-tab");
    EXPECT_EQ(faults_of("1;5; 1,\n"), "2 no-tab");
}

TEST(MeantLine, IsGuessedWhereASeparatorIsAnotherOne) {
    for (const std::string line : {"1,2\t5\t 1,\n", "1, 2\t5\t 1,\n", "1;2\t5\t 1,\n", "1 2\t5 \t1,\n",
                                   "1 2\t5  1,\n", "1 2\t5, 1,\n", "1 2\t5.0\t 1,\n", "1 2\t5\t,1,\n",
                                   "\xEF\xBB\xBF"
                                   "1 2\t5\t 1,\n"}) {
        EXPECT_EQ(meant_by(line), "{ 1, 2 } 5 { { 1 } }") << line;
        EXPECT_TRUE(meant_line(line).is_guess) << line;
    }
    EXPECT_EQ(meant_by("1 2\t5\t 1,\t2,\n"), "{ 1, 2 } 5 { { 1 }, { 2 } }");
    EXPECT_EQ(meant_by("1 2 3\t5\t 1\t2,\n"), "{ 1, 2, 3 } 5 { { 1, 2 } }");
    EXPECT_EQ(meant_by("1 2 3\t5\t 1;2,\n"), "");
}

TEST(MeantLine, IsNotKnownWhereItWouldBeAGuess) {
    for (const std::string line : {"1 2 5\t 1,\n", "1 2\t-5\t 1,\n", "1 2\t5\t1,\n", "1 2\t5\t 1,2,\n",
                                   "1 2\t5\t 3,\n", "1 1\t5\t 1,\n", "1\r2\t5\t 1,\n", "4294967296\t5\t 1,\n",
                                   "1 2\t5\n", "1 2\t5\t ,\n", "x1 2\t5\t 1,\n"}) {
        EXPECT_EQ(meant_by(line), "") << line;
        EXPECT_NE(faults_of(line), "") << line;
    }
}

TEST(MeantLine, IsSkippedWhereItHoldsNoNumber) {
    for (const std::string line : {"\n", "# classes\n", "  \n", "\r\n"}) {
        EXPECT_TRUE(meant_line(line).is_skipped) << line;
    }
    EXPECT_FALSE(meant_line("# 3\n").is_skipped);
    EXPECT_FALSE(meant_line("#\t\n").is_skipped);
}

TEST(MeantLine, EndsWithManyFaults) {
    EXPECT_LE(meant_line("1" + std::string(100000, ' ') + "2\t5\t 1,\n").faults.size(), 51U);
}

}  // namespace
}  // namespace korv::tools
