#include "check/checked_lines.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "finding_words.h"

namespace korv::tools {
namespace {

/// The findings in a text: "LINE:COLUMN SEVERITY CODE: EFFECT".
std::vector<std::string> found_in(const std::string& text) {
    Findings findings({"a.classes"}, 0, true);
    check_lines({"a.classes", text}, findings);
    std::vector<std::string> lines;
    for (const Finding& each : findings.in_order()) {
        lines.push_back(place_and_code(each) + ": " + each.effect);
    }
    return lines;
}

using Lines = std::vector<std::string>;

TEST(CheckedLines, FindsNothingInRecordsAsTheyShouldBe) {
    EXPECT_EQ(found_in("1\t4\t 1,\n1 2 3\t5\t 2, 1 3,\n"), Lines());
}

TEST(CheckedLines, TellsTheLinesThatALineWithoutEndTakes) {
    EXPECT_EQ(found_in("1 2\t5\t 1,\r\n3\t2\t 3,\r\n4\t2\t 4,\r\n"),
              (Lines{"1:10 error carriage-return: korv reads the class 1 2 with support 5 and the essential "
                     "itemsets {1}, {2 3 3}, {2 4 4} and {}, into which it takes lines 2 to 3",
                     "2:8 error carriage-return: korv takes it into the class of line 1",
                     "3:8 error carriage-return: korv takes it into the class of line 1"}));
}

TEST(CheckedLines, GoesOnWithKorvBehindTheLinesThatWereTaken) {
    EXPECT_EQ(found_in("1 2\t5\t 1, \n3\t2\t 3,\n4\t2\t 4,x\n5\t2\t 5,\n"),
              (Lines{"1:11 error blank-at-end: korv reads the class 1 2 with support 5 and the essential "
                     "itemsets {1} and {2 3 3}, into which it takes line 2",
                     "3:8 error stray-byte: korv reads the class 4 with support 2 and the essential itemset "
                     "{2 5 5}, into which it takes line 4"}));
}

TEST(CheckedLines, TellsHowManyLinesAreIgnoredWhereKorvStops) {
    EXPECT_EQ(found_in("1\t5\t 1,\n\t4\t 3,\n3\t2\t 3,\n4\t2\t04,\n"),
              (Lines{"2:1 error no-items: korv stops reading here, and ignores this line and the 2 behind it",
                     "4:5 error digit-lost: korv ignores it, since it stops reading at line 2"}));
    EXPECT_EQ(found_in("1\t5\t 1,\n\t4\t 3,\n"),
              (Lines{"2:1 error no-items: korv stops reading here, and ignores this line"}));
}

TEST(CheckedLines, AreWarnedOfWhereKorvReadsThemAsTheyAreMeant) {
    EXPECT_EQ(found_in("2 1\t05\t 1,\n\n# end\n3  4\t7\t 3,"),
              (Lines{"1:3 warning unordered-items: korv reads it as it is meant",
                     "1:5 warning leading-zeros: korv reads it as it is meant",
                     "2:1 warning empty-line: korv skips it", "3:1 warning comment: korv skips it",
                     "4:3 warning extra-blank: korv reads it as it is meant",
                     "4:11 warning no-final-line-end: korv reads it as it is meant"}));
}

TEST(CheckedLines, AreLookedAtBehindAFaultThatCanBeTakenOut) {
    EXPECT_EQ(found_in("1  2\t5\t 1,,\n"),
              (Lines{"1:3 warning extra-blank: korv reads the class 1 2 with support 5 and the essential "
                     "itemsets {1} and {}",
                     "1:11 error doubled-comma: korv reads the class 1 2 with support 5 and the essential "
                     "itemsets {1} and {}"}));
}

TEST(CheckedLines, AreWarnedOfWhereKorvReadsAGuessTheSame) {
    EXPECT_EQ(found_in("1,2\t5 \t1,\n"), (Lines{"1:2 warning stray-byte: korv reads it as it is meant",
                                                "1:6 warning no-second-tab: korv reads it as it is meant"}));
    EXPECT_EQ(found_in("1 2\t5.0\t 1,\n"),
              (Lines{"1:6 warning no-second-tab: korv reads it as it is meant"}));
    // The point ends the support, and the first zero is lost; {0 1} is as large as the class.
    EXPECT_EQ(found_in("1 2\t5.00\t 1,\n"),
              (Lines{"1:6 error no-second-tab: korv reads the class 1 2 with support 5 and no "
                     "essential itemset"}));
}

TEST(CheckedLines, HaveARecordOfWhatKorvStoresAndOneOfWhatIsMeant) {
    Findings findings({"a.classes"}, 0, true);
    const CheckedLines checked = check_lines({"a.classes", "1 2\t5\t 1,\r\n3\t2\t 3,\n"}, findings);

    ASSERT_EQ(checked.records.size(), 3U);
    EXPECT_TRUE(checked.places[0].is_meant && !checked.places[0].is_stored);
    EXPECT_EQ(checked.records[0].second.essentials, (std::vector<Itemset>{{1}}));
    EXPECT_TRUE(!checked.places[1].is_meant && checked.places[1].is_stored);
    EXPECT_EQ(checked.records[1].second.essentials, (std::vector<Itemset>{{1}, {2, 3, 3}}));
    EXPECT_EQ(checked.places[1].line, 1U);
    EXPECT_TRUE(checked.places[2].is_meant && !checked.places[2].is_stored);
    EXPECT_EQ(checked.places[2].line, 2U);
}

}  // namespace
}  // namespace korv::tools
