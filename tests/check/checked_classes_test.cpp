#include "check/checked_classes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "finding_words.h"

namespace korv::tools {
namespace {

using Lines = std::vector<std::string>;

Lines found_in(const std::string& text) {
    Findings findings({"a.classes"}, 0, true);
    check_class_file({"a.classes", text}, findings);
    Lines lines;
    for (const Finding& each : findings.in_order()) {
        lines.push_back(place_and_code(each) + ": " + each.found + "; " + each.effect);
    }
    return lines;
}

TEST(CheckedClasses, HaveTheirLinesInTheOrderOfTheMap) {
    Findings findings({"a.classes"}, 0, true);
    const CheckedClasses checked =
        check_class_file({"a.classes", "2\t4\t 2,\n1 2\t7\t 1,\n1\t3\t 1,\n"}, findings);

    EXPECT_EQ(checked.lines, (std::vector<std::uint32_t>{3, 2, 1}));
    EXPECT_EQ(checked.classes.begin()->first, (Itemset{1}));
    EXPECT_EQ(checked.stored.classes, 3U);
    EXPECT_EQ(checked.stored.essentials, 1U);
    EXPECT_EQ(checked.stored.items, 2U);
}

TEST(CheckedClasses, AreToldTwiceAndAlike) {
    EXPECT_EQ(
        found_in("1 2\t7\t 1,\n2 1\t7\t 1,\n"),
        (Lines{"2:1 warning class-again: the closed itemset of line 1 again; korv keeps one of them",
               "2:3 warning unordered-items: an item that is smaller than the one before it; korv reads "
               "it as it is meant"}));
}

TEST(CheckedClasses, AreToldTwiceWithTheLineThatWins) {
    EXPECT_EQ(
        found_in("1 2\t7\t 1,\n1 2\t8\t 1,\n1 2\t8\t 2,\n"),
        (Lines{"2:1 error class-differs: the closed itemset of line 1 again; korv keeps the support and "
               "the essential itemsets of line 3",
               "3:1 error class-differs: the closed itemset of line 2 again; korv keeps the support and "
               "the essential itemsets of line 3"}));
}

TEST(CheckedClasses, AreToldTwiceWhereKorvTakesTheirLinesIntoAnotherClass) {
    EXPECT_EQ(
        found_in("1\t7\t 1, \n2\t8\t 2,\n2\t8\t 2,\n"),
        (Lines{"1:9 error blank-at-end: the end of the line; korv reads the class 1 with support 7 and the "
               "essential itemset {2 2 8}, into which it takes line 2",
               "3:1 warning class-again: the closed itemset of line 2 again; "}));
}

TEST(CheckedClasses, MustBeThere) {
    EXPECT_EQ(found_in(""), (Lines{"1:1 error no-classes: an empty file; korv ends with status 2"}));
    EXPECT_EQ(found_in("# end\n"),
              (Lines{"1:1 warning comment: \"#\"; korv skips it",
                     "1:1 error no-classes: no class that korv reads; korv ends with status 2"}));
    EXPECT_EQ(found_in("\n"),
              (Lines{"1:1 warning empty-line: the end of the line; korv skips it",
                     "1:1 error no-classes: nothing but empty lines; korv ends with status 2"}));
}

TEST(CheckedClasses, MayBeCompressedAndBehindAByteOrderMark) {
    Findings findings({"a.classes"}, 0, true);
    check_class_file({"a.classes", "1\t4 1,\n", true, true}, findings);
    Lines lines;
    for (const Finding& each : findings.in_order()) {
        lines.push_back(place_and_code(each) + ": " + each.found + "; " + each.expected);
    }

    EXPECT_EQ(lines, (Lines{"1:1 error compressed: data compressed by gzip; text (zcat decompresses it)",
                            "1:1 warning byte-order-mark: a byte-order mark; text without it",
                            "1:4 error no-second-tab: a blank; a digit, or a tab"}));
}

}  // namespace
}  // namespace korv::tools
