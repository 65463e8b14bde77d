#include "check/class_mending.h"

#include <gtest/gtest.h>

#include <string>

namespace korv::tools {
namespace {

/// What becomes of a text.
struct Mended {
    std::string text;
    std::string left;
    std::string report;
    CheckStatus status;
};

Mended mended(const std::string& text) {
    Findings findings({"a.classes"}, 0, true);
    const CheckedClasses checked = check_class_file({"a.classes", text}, findings);
    return {mended_text(checked), what_is_not_mended(findings),
            mending_report(findings, checked, "b.classes"), status_of_mended(findings)};
}

TEST(ClassMending, LeavesAFileThatIsAsItShouldBe) {
    const std::string text = "2\t4\t 2,\n1 2\t7\t 1,\n1\t3\t 1,\n";
    const Mended result = mended(text);

    EXPECT_EQ(result.text, text);
    EXPECT_EQ(result.left, "");
    EXPECT_EQ(result.report, "b.classes: 3 classes; there was nothing to mend\n");
    EXPECT_EQ(result.status, CheckStatus::clean);
}

TEST(ClassMending, PutsItemsInOrderAndLeavesOutWhatIsThereTwice) {
    const Mended result = mended("03 1 2\t5\t 3 2, 1, 2 3, 1 2 3,\r\n\r\n# end\n1 2 3\t5\t 2 3, 1,");

    EXPECT_EQ(result.text, "1 2 3\t5\t 2 3, 1,\n");
    EXPECT_EQ(result.left, "");
    EXPECT_EQ(result.status, CheckStatus::clean);
}

TEST(ClassMending, IsRefusedForWhatMayHaveBeenSomethingElse) {
    EXPECT_EQ(mended("1  2\t5\t 1,,\n").left, "extra-blank 1, doubled-comma 1");
    EXPECT_EQ(mended("1\t5\t 1,\n1\t6\t 1,\n").left, "class-differs 1");
    EXPECT_EQ(mended("1\t5\t 1, \n2\t5\t 2,\n2\t6\t 2,\n").left, "blank-at-end 1, class-differs 1");
    EXPECT_EQ(mended("").left, "no-classes 1");
}

TEST(ClassMending, LeavesWhatCannotBeAndSaysSoByItsStatus) {
    const Mended result = mended("1\t0\t 1,\r\n");

    EXPECT_EQ(result.text, "1\t0\t 1,\n");
    EXPECT_EQ(result.left, "");
    EXPECT_EQ(result.status, CheckStatus::warnings);
}

}  // namespace
}  // namespace korv::tools
