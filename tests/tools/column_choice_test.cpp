#include "mine/column_choice.h"

#include <gtest/gtest.h>

#include "tools/complaint.h"

namespace korv::tools {
namespace {

using Positions = std::vector<std::size_t>;
using Names = std::vector<std::string>;

const Names header = {"age", "sex", "answer_1", "answer_2", "n"};

Positions chosen(const TableOptions& options) {
    return chosen_columns(header, options, "a.csv");
}

std::string complaint(const TableOptions& options, const Names& names = header) {
    return complaint_of([&] { chosen_columns(names, options, "a.csv"); });
}

/// c0 to c99999.
Names many_names() {
    Names names;
    for (int i = 0; i < 100'000; ++i) {
        names.push_back("c" + std::to_string(i));
    }
    return names;
}

TEST(Wildcards, StandForAnyBytesOrOneCharacter) {
    EXPECT_TRUE(matches("*", ""));
    EXPECT_TRUE(matches("*", "age"));
    EXPECT_TRUE(matches("a*e", "age"));
    EXPECT_TRUE(matches("a*e", "ae"));
    EXPECT_TRUE(matches("?g?", "age"));
    EXPECT_TRUE(matches("*ab*ab", "abxabyab"));
    EXPECT_TRUE(matches("x**", "x"));
    EXPECT_FALSE(matches("a*e", "ages"));
    EXPECT_FALSE(matches("a?", "a"));
    EXPECT_FALSE(matches("?", "ab"));
    EXPECT_FALSE(matches("*ab*ab", "abx"));
    EXPECT_FALSE(matches("", "a"));
    EXPECT_TRUE(matches("", ""));
}

TEST(Wildcards, TakeACharacterOfSeveralBytesForOne) {
    EXPECT_TRUE(matches("gr??e",
                        "gr\xC3\xB6\xC3\x9F"
                        "e"));
    EXPECT_FALSE(matches("?\?", "\xC3\xB6"));
}

TEST(Wildcards, AreTheOnlyOnes) {
    EXPECT_TRUE(matches("a[b].c", "a[b].c"));
    EXPECT_FALSE(matches("[ab]", "a"));
    EXPECT_FALSE(matches("Age", "age"));
}

TEST(ChosenColumns, AreAllByDefault) {
    EXPECT_EQ(chosen({}), (Positions{0, 1, 2, 3, 4}));
}

TEST(ChosenColumns, AreThoseThatAreNamedButNotIgnored) {
    EXPECT_EQ(chosen({.columns = {"answer_*", "age"}}), (Positions{0, 2, 3}));
    EXPECT_EQ(chosen({.ignored = {"*e*"}}), (Positions{4}));
    EXPECT_EQ(chosen({.columns = {"answer_?"}, .ignored = {"*1"}}), (Positions{3}));
}

TEST(ChosenColumns, AreWithoutTheWeightColumn) {
    EXPECT_EQ(chosen({.weight_column = "n"}), (Positions{0, 1, 2, 3}));
    EXPECT_EQ(chosen({.columns = {"age"}, .weight_column = "n"}), (Positions{0}));
}

TEST(ChosenColumns, MustExist) {
    const std::string expected = R"(; expected one of a.csv: "age", "sex", "answer_1", "answer_2", "n")";
    EXPECT_EQ(complaint({.columns = {"age", "b*"}}), "--columns: found the column \"b*\"" + expected);
    EXPECT_EQ(complaint({.ignored = {"b"}}), "--ignore: found the column \"b\"" + expected);
    EXPECT_EQ(complaint({.bins = {{"", 2}, {"b", 3}}}), "--bins: found the column \"b\"" + expected);
    EXPECT_EQ(complaint({.splits = {{"a*", ";"}}}), "--split: found the column \"a*\"" + expected);
    EXPECT_EQ(complaint({.weight_column = "b"}), "--weight: found the column \"b\"" + expected);
}

TEST(ChosenColumns, MustBeOneAtLeast) {
    EXPECT_EQ(complaint({.columns = {"age"}, .ignored = {"a*"}}),
              "a.csv: found no column that --columns, --ignore and --weight leave; expected one at least");
}

TEST(ChosenColumns, HoldTheColumnsOfAllRules) {
    const std::string expected =
        ": found the column \"age\", which --columns, --ignore or --weight leaves out; expected a column "
        "that "
        "is read";
    EXPECT_EQ(complaint({.ignored = {"age"}, .bins = {{"age", 2}}}), "--bins" + expected);
    EXPECT_EQ(complaint({.columns = {"sex"}, .splits = {{"age", ";"}}}), "--split" + expected);
}

TEST(ChosenColumns, AreNamedByTheClosestWhereThereAreMany) {
    EXPECT_EQ(
        complaint({.columns = {"C77x77"}}, many_names()),
        "--columns: found the column \"C77x77\"; expected one of the 100000 of a.csv, such as \"c7777\", "
        "\"c77077\", \"c77177\", \"c77277\", \"c77377\", \"c77477\", \"c77577\", \"c77677\", \"c77777\", "
        "\"c77877\"");
}

}  // namespace
}  // namespace korv::tools
