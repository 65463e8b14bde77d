// korv-rules as a process: what it writes does not depend on the number of threads.

#include <random>
#include <string>

#include "rules/korv_rules_run.h"

namespace korv::test {
namespace {

const std::string titanic = TITANIC;

using Words = std::vector<std::string>;

/// Twelve columns of up to four values, most of them what the first one suggests, and a few thousand lines:
/// many classes, of which some are large.
std::string many_classes() {
    std::mt19937 random(63);
    std::string csv = "c0";
    for (int column = 1; column < 12; ++column) {
        csv += ",c" + std::to_string(column);
    }
    for (int line = 0; line < 2000; ++line) {
        const auto first = random() % 4;
        csv += "\nv" + std::to_string(first);
        for (unsigned column = 1; column < 12; ++column) {
            csv += ",v" + std::to_string(random() % 5 == 0 ? random() % 3 : (first + column) % 4);
        }
    }
    return csv + '\n';
}

class KorvRulesOnThreads : public KorvRules {
protected:
    /// Expects that output and messages are the same with 2 and 5 threads as with one, and as without -j.
    void expect_the_same(const Words& arguments) const {
        const Outcome of_one = rules(arguments + Words{"-j", "1"});
        EXPECT_NE(of_one.out, "");
        for (const Words& threads : {Words{"-j", "2"}, Words{"--threads", "5"}, Words{}}) {
            const Outcome of_several = rules(arguments + threads);
            EXPECT_EQ(of_several.out, of_one.out);
            EXPECT_EQ(of_several.err, of_one.err);
            EXPECT_EQ(of_several.ending, of_one.ending);
        }
    }
};

TEST_F(KorvRulesOnThreads, WritesTheSameOfTheSample) {
    expect_the_same({titanic + "/titanic.csv"});
    expect_the_same({titanic + "/titanic.classes", "-n", "2201", "--to", "jsonl", "--prune", "none"});
    expect_the_same({titanic + "/titanic.classes", "--database", titanic + "/titanic.dat", "--count"});
}

TEST_F(KorvRulesOnThreads, WritesTheSameOfManyClasses) {
    put("many.csv", many_classes());
    expect_the_same({"many.csv", "-s", "20%", "--to", "csv", "--measures", "all"});
    expect_the_same({"many.csv", "-s", "20%", "--to", "jsonl", "--readings", "all", "--prune", "none"});
    expect_the_same({"many.csv", "-s", "20%", "--wording", "full", "--top", "50"});
    expect_the_same({"many.csv", "-s", "20%", "--count"});
}

TEST_F(KorvRulesOnThreads, RefusesANumberThatIsNone) {
    for (const char* const number : {"0", "257", "-1", "two", ""}) {
        const Outcome outcome = rules({titanic + "/titanic.csv", "-j", number});
        EXPECT_EQ(outcome.ending, exited(2)) << number;
        EXPECT_NE(outcome.err.find("expected a whole number from 1 to 256"), std::string::npos)
            << outcome.err;
    }
}

}  // namespace
}  // namespace korv::test
