#include "rules/rule_output.h"

#include <gtest/gtest.h>

#include "made_rules.h"
#include "support/files.h"
#include "support/process.h"
#include "tools/complaint.h"

namespace korv::tools {

namespace {

class RuleOutputTest : public testing::Test {
protected:
    std::string path(const std::string& name) const { return (directory_.path() / name).string(); }
    test::Files files() const { return test::read_files(directory_.path()); }

    test::TemporaryDirectory directory_;
    MadeRules rules_{titanic_names};
    std::vector<FoundRule> women_survived_ = {known_rule(rules_.any({6}), rules_.any({10}), {470, 711, 344})};
};

TEST_F(RuleOutputTest, HoldsTheRulesInTheirFormat) {
    RuleOutput output(path("a.csv"), RuleFormat::csv, {});
    output.write_rules(women_survived_, rules_.book(2201));
    EXPECT_EQ(files().at("a.csv"), written(RuleFormat::csv, rules_.book(2201), women_survived_));
}

TEST_F(RuleOutputTest, HoldsAReportAsItIs) {
    RuleOutput output(path("a.csv"), RuleFormat::csv, {});
    output.write_report("none\n");
    EXPECT_EQ(files().at("a.csv"), "none\n");
}

TEST_F(RuleOutputTest, IsNoFileUntilItIsWritten) {
    { const RuleOutput output(path("a.csv"), RuleFormat::csv, {}); }
    EXPECT_TRUE(files().empty());
}

TEST_F(RuleOutputTest, IsRefusedAtOnceWhereItCannotBeWritten) {
    EXPECT_NE(complaint_of([&] { const RuleOutput output(path("none/a.csv"), RuleFormat::csv, {}); }), "");
}

}  // namespace

}  // namespace korv::tools
