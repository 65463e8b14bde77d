#include "check/findings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

namespace korv::tools {
namespace {

Finding finding(FindingKind kind, std::size_t line, std::size_t file = 0) {
    return {.kind = kind, .severity = description(kind).severity, .file = file, .place = {line, 1}};
}

std::vector<std::size_t> lines_of(const Findings& findings) {
    std::vector<std::size_t> lines;
    for (const Finding& each : findings.in_order()) {
        lines.push_back(each.place.line);
    }
    return lines;
}

TEST(Findings, KeepTheFirstOnesInWhateverOrderTheyCome) {
    std::vector<std::size_t> lines(100);
    std::iota(lines.begin(), lines.end(), 1);
    std::mt19937 random(1);
    std::ranges::shuffle(lines, random);
    Findings findings({"a"}, 4, false);

    for (const std::size_t line : lines) {
        findings.add(finding(FindingKind::no_tab, line));
    }

    EXPECT_EQ(lines_of(findings), (std::vector<std::size_t>{1, 2, 3, 4}));
    EXPECT_EQ(findings.count(FindingKind::no_tab), 100U);
    EXPECT_EQ(findings.count(Severity::error), 100U);
}

TEST(Findings, KeepAllWhereNoNumberIsGiven) {
    Findings findings({"a"}, 0, false);
    for (std::size_t line = 50; line > 0; --line) {
        findings.add(finding(FindingKind::no_tab, line));
    }
    EXPECT_EQ(findings.in_order().size(), 50U);
}

TEST(Findings, AreInTheOrderOfTheFiles) {
    Findings findings({"a", "b"}, 0, false);
    findings.add(finding(FindingKind::wrong_rule_support, 1, 1));
    findings.add(finding(FindingKind::no_tab, 7, 0));

    EXPECT_EQ(findings.name_of(findings.in_order()[0]), "a");
    EXPECT_EQ(findings.name_of(findings.in_order()[1]), "b");
}

TEST(Findings, CountNotesThatTheyDoNotKeep) {
    Findings counted({"a"}, 0, false);
    Findings kept({"a"}, 0, true);
    for (Findings* const each : {&counted, &kept}) {
        each->add(finding(FindingKind::large_class, 1));
        EXPECT_EQ(each->count(Severity::note), 1U);
    }
    EXPECT_TRUE(counted.in_order().empty());
    EXPECT_EQ(kept.in_order().size(), 1U);
}

}  // namespace
}  // namespace korv::tools
