#include "check/support_bounds_check.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "finding_words.h"

namespace korv::tools {
namespace {

using Lines = std::vector<std::string>;

Lines found_in(const std::string& text) {
    Findings findings({"a.classes"}, 0, true);
    const CheckedClasses checked = check_class_file({"a.classes", text}, findings);
    EXPECT_EQ(findings.count(Severity::error) + findings.count(Severity::warning), 0U);
    check_support_bounds(KnownSupports(checked), findings);
    Lines lines;
    for (const Finding& each : findings.in_order()) {
        lines.push_back(place_and_code(each) + ": found " + each.found + "; expected " + each.expected);
    }
    return lines;
}

const std::string three_items = "1\t10\t 1,\n2\t20\t 2,\n3\t30\t 3,\n";

TEST(SupportBoundsCheck, LeavesSupportsAloneThatPartsAllow) {
    EXPECT_EQ(found_in(three_items + "1 2\t30\t 1 2,\n1 3\t40\t 1 3,\n2 3\t50\t 2 3,\n1 2 3\t60\t 1 2 3,\n"),
              Lines());
}

TEST(SupportBoundsCheck, NamesAUnionAboveTheSumOfItsParts) {
    EXPECT_EQ(
        found_in(three_items + "1 2\t31\t 1 2,\n"),
        (Lines{"4:1 warning union-above-sum: found the support 31 of \"1 2\"; expected at most 30, the sum "
               "of the supports of lines 2 and 1"}));
}

TEST(SupportBoundsCheck, NamesAUnionAboveWhatTwoPartsLeave) {
    // 2 adds 15 to 1, so that it adds 15 at most to 1 3.
    EXPECT_EQ(
        found_in(three_items + "1 2\t25\t 1 2,\n1 3\t35\t 1 3,\n2 3\t50\t 2 3,\n1 2 3\t51\t 1 2 3,\n"),
        (Lines{"7:1 warning outside-pair-bounds: found the support 51 of \"1 2 3\"; expected at most 50, by "
               "the supports of lines 5, 4 and 1"}));
}

TEST(SupportBoundsCheck, NamesAUnionBelowWhatPairsLeave) {
    // No two items meet in more than one transaction: 10 + 20 + 30 - 3.
    EXPECT_EQ(
        found_in(three_items + "1 2\t29\t 1 2,\n1 3\t39\t 1 3,\n2 3\t49\t 2 3,\n1 2 3\t56\t 1 2 3,\n"),
        (Lines{"7:1 warning outside-pair-bounds: found the support 56 of \"1 2 3\"; expected at least 57, by "
               "the supports of its items and of their pairs, the first in line 1"}));
}

TEST(SupportBoundsCheck, NamesAUnionOfTwoClassesWhereTheirEssentialItemsetsDoNotTell) {
    EXPECT_EQ(
        found_in("1 2\t5\t 1 2,\n3 4\t6\t 3 4,\n1 2 3 4\t12\t 1 2 3 4,\n"),
        (Lines{
            "3:1 warning union-above-sum: found the support 12 of \"1 2 3 4\"; expected at most 11, the sum "
            "of the supports of lines 1 and 2"}));
    EXPECT_EQ(found_in("1 2\t5\t 2,\n3 4\t6\t 4,\n1 2 3 4 5\t12\t 1 3,\n").size(), 1U);
    EXPECT_EQ(found_in("1 2\t5\t 1 2,\n3 4\t6\t 3 4,\n1 2 3 4\t11\t 1 2 3 4,\n"), Lines());
    // The union may have another closure, which is not there.
    EXPECT_EQ(found_in("1 2\t5\t 1 2,\n3 4\t6\t 3 4,\n1 2 3 4 5\t12\t 1 2 3 4 5,\n"), Lines());
}

TEST(SupportBoundsCheck, SaysNothingOfPartsThatAreNotThere) {
    EXPECT_EQ(found_in("1\t1\t 1,\n1 2 3\t56\t 1 2 3,\n"), Lines());
}

}  // namespace
}  // namespace korv::tools
