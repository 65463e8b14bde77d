#include "check/finding_report.h"

#include <gtest/gtest.h>

#include <string>

namespace korv::tools {
namespace {

constexpr ReportTotals totals = {.stored = {.classes = 1, .essentials = 2000, .items = 3}};

Findings two_findings(std::size_t most) {
    Findings findings({"a\n.classes"}, most, false);
    findings.add({.kind = FindingKind::no_tab,
                  .severity = Severity::error,
                  .place = {7, 3},
                  .found = "\"x\x01\"",
                  .expected = "a tab",
                  .effect = "korv skips it"});
    findings.add({.kind = FindingKind::class_again,
                  .severity = Severity::warning,
                  .place = {9, 1},
                  .found = "it again",
                  .other_line = 2,
                  .more_lines = {3, 5}});
    return findings;
}

TEST(FindingReport, HasALineForEachFindingAndOneOfTotals) {
    EXPECT_EQ(finding_report(two_findings(0), totals, FindingFormat::text),
              "a\\x0A.classes:7:3: error: found \"x\\x01\"; expected a tab; korv skips it [no-tab]\n"
              "a\\x0A.classes:9:1: warning: found it again [class-again]\n"
              "1 class, 2,000 essential itemsets, 3 items; 1 error, 1 warning, 0 notes\n");
}

TEST(FindingReport, CountsByCodeWhatIsNotShown) {
    EXPECT_EQ(finding_report(two_findings(1), totals, FindingFormat::text),
              "a\\x0A.classes:7:3: error: found \"x\\x01\"; expected a tab; korv skips it [no-tab]\n"
              "1 finding not shown (--max 0 shows it): class-again 1\n"
              "1 class, 2,000 essential itemsets, 3 items; 1 error, 1 warning, 0 notes\n");
}

TEST(FindingReport, IsAnObjectALineInJson) {
    EXPECT_EQ(finding_report(two_findings(0), totals, FindingFormat::json),
              R"({"file":"a\\x0A.classes","line":7,"column":3,"severity":"error","code":"no-tab",)"
              R"("found":"\"x\\x01\"","expected":"a tab","effect":"korv skips it"})"
              "\n"
              R"({"file":"a\\x0A.classes","line":9,"column":1,"severity":"warning","code":"class-again",)"
              R"("found":"it again","expected":"","effect":"","other_line":2,"more_lines":[3,5]})"
              "\n"
              R"({"classes":1,"essentials":2000,"items":3,"errors":1,"warnings":1,"notes":0,"mendable":0,)"
              R"("by_code":{"no-tab":1,"class-again":1}})"
              "\n");
}

}  // namespace
}  // namespace korv::tools
