// Pages as the process writes them. Where korv-rules was built without zlib it says so instead; other tests
// read what is in a page.

#include "rules/korv_rules_run.h"

namespace korv::test {

namespace {

class KorvRulesPage : public KorvRules {
protected:
    void SetUp() override {
        const Outcome outcome = rules({"none.dat", "-o", "none.html"});
        if (outcome.err.find("was built without zlib") != std::string::npos) {
            GTEST_SKIP() << outcome.err;
        }
    }

    const std::vector<std::string> all_rules_ = {
        "a.dat", "-s", "1", "-c", "0.75", "--readings", "all", "--prune", "none", "--min-lift", "0"};
};

TEST_F(KorvRulesPage, IsWrittenByItsExtensionOrTheFormatItIsTold) {
    put("a.dat", two_items);
    const std::vector<std::string> arguments = std::vector<std::string>{"a.dat", "-q"} + low;
    EXPECT_EQ(rules(arguments + std::vector<std::string>{"-o", "a.html"}).ending, exited(0));
    EXPECT_EQ(rules(arguments + std::vector<std::string>{"-o", "a.htm"}).out, "");
    const Outcome standard = rules(arguments + std::vector<std::string>{"--to", "html"});
    EXPECT_EQ(files().at("a.html"), standard.out);
    EXPECT_EQ(files().at("a.htm"), standard.out);
    EXPECT_TRUE(standard.out.starts_with("<!")) << standard.out.substr(0, 100);
}

TEST_F(KorvRulesPage, IsSaidToLeaveRulesOut) {
    put("a.dat", two_items);
    const Outcome all = rules(all_rules_ + std::vector<std::string>{"-o", "a.html"});
    EXPECT_NE(all.err.find("\n4 shown, by leverage\n"), std::string::npos) << all.err;
    const Outcome some = rules(all_rules_ + std::vector<std::string>{"-o", "a.html", "--page-limit", "3"});
    EXPECT_EQ(some.ending, exited(0));
    EXPECT_NE(some.err.find("\n3 shown, by leverage     --page-limit 4 shows all 4\n"), std::string::npos)
        << some.err;
}

TEST_F(KorvRulesPage, IsThereWithoutRulesToo) {
    put("a.dat", two_items);
    const Outcome outcome = rules({"a.dat", "-s", "1", "--min-lift", "5", "-c", "0.5", "-o", "a.html"});
    EXPECT_EQ(outcome.ending, exited(1));
    EXPECT_NE(outcome.err.find("No rule is left"), std::string::npos) << outcome.err;
    EXPECT_GT(files().at("a.html").size(), 1000U);
}

TEST_F(KorvRulesPage, NeedsTheDatabaseOfRuleFiles) {
    const std::string stars = "\t\t\t******************************************\n";
    put("a.txt", stars + "\t\t\t*** Regles approximatives inter noeuds ***\n" + stars +
                     "1-->2\nsupport:3\n\nconfiance:0.75\n---------------------------\n");
    put("a.dat", two_items);
    expect_refused({"a.txt", "-n", "8", "-q", "-o", "a.html"}, 2,
                   "--to html: needs the support of conclusions, which rule files do not hold; expected "
                   "--database FILE besides, or another format");
    EXPECT_EQ(files().count("a.html"), 0U);
    EXPECT_EQ(rules({"a.txt", "--database", "a.dat", "-q", "-o", "a.html"}).ending, exited(0));
}

TEST_F(KorvRulesPage, IsRefusedWhereItCannotBeWritten) {
    put("a.dat", two_items);
    expect_refused(std::vector<std::string>{"a.dat", "-q", "-o", "/dev/full", "--to", "html"} + low, 4,
                   "/dev/full: cannot be written: No space left on device");
    expect_refused({"a.dat", "-q", "-o", "none/a.html"}, 4,
                   "none/a.html: cannot be created: No such file or directory");
    EXPECT_EQ(files().size(), 1U);
}

TEST_F(KorvRulesPage, LeavesAnEarlierFileUnlessItIsWhole) {
    put("a.dat", two_items);
    put("a.html", "earlier");
    const Outcome outcome = shell("ulimit -f 1; exec \"$0\" a.dat -s 1 -c 0.75 -q -o a.html");
    EXPECT_EQ(outcome.ending, exited(4));
    EXPECT_EQ(outcome.err, "korv-rules: a.html: cannot be written: File too large\n");
    EXPECT_EQ(files(), (Files{{"a.dat", two_items}, {"a.html", "earlier"}}));
}

TEST_F(KorvRulesPage, IsCountedLikeAnyOtherFormat) {
    put("a.dat", two_items);
    const Outcome outcome = rules(std::vector<std::string>{"a.dat", "-o", "a.html", "--count", "-q"} + low);
    EXPECT_EQ(outcome.ending, exited(0));
    EXPECT_NE(outcome.out, "");
    EXPECT_EQ(files().size(), 1U);
}

}  // namespace

}  // namespace korv::test
