// korv-rules --exclusions as a process.

#include "rules/korv_rules_run.h"

namespace korv::test {
namespace {

/// Items 1 and 2, each in five of ten transactions, never together: 1 of the 252 ways to choose five of ten.
const std::string five_and_five = "1\n1\n1\n1\n1\n2\n2\n2\n2\n2\n";
const std::string five_and_five_classes = "1\t5\t 1,\n2\t5\t 2,\n1 2\t10\t 1 2,\n";
const std::string in_words =
    "1. 1 and 2 exclude each other: together in no transaction, 2.50 expected; one of them is in 100 %\n"
    "   1 => not 2 (1.000), 2 => not 1 (1.000), not 1 => 2 (1.000), not 2 => 1 (1.000)\n";

TEST_F(KorvRules, TellsTheExclusionsOfTransactions) {
    put("a.dat", five_and_five);
    const Outcome outcome = rules({"a.dat", "--exclusions"});
    EXPECT_EQ(outcome.ending, exited(0));
    EXPECT_EQ(outcome.out, in_words);
    EXPECT_EQ(outcome.err,
              "input               fimi (guessed from whole numbers with blanks between them)\n"
              "transactions        10\n"
              "items               2\n"
              "1 pair of 2 items, 10 transactions\n"
              "1 shown, by how surprising they are\n");
}

TEST_F(KorvRules, TellsTheExclusionsOfTheDatabaseOfAClassFile) {
    put("a.classes", five_and_five_classes);
    put("a.dat", five_and_five);
    put("a.names", "1\tbeer\n2\tdiapers\n");
    const Outcome outcome =
        rules({"a.classes", "--database", "a.dat", "--exclusions", "-q", "--to", "table"});
    EXPECT_EQ(outcome.ending, exited(0));
    EXPECT_EQ(outcome.out,
              "#  seldom together   together  expected  covered     p\n"
              "1  beer and diapers         0      2.50    1.000  2.40\n");
    EXPECT_EQ(outcome.err, "");
}

TEST_F(KorvRules, NeedsTransactionsForExclusions) {
    put("a.classes", five_and_five_classes);
    expect_refused({"a.classes", "--exclusions"}, 2,
                   "--exclusions: found the class file a.classes; expected transactions as the input, or "
                   "--database FILE besides the class file");
}

TEST_F(KorvRules, WritesExclusionsToAFile) {
    put("a.dat", five_and_five);
    EXPECT_EQ(rules({"a.dat", "--exclusions", "-q", "-o", "a.txt"}).ending, exited(0));
    EXPECT_EQ(files().at("a.txt"), in_words);
}

TEST_F(KorvRules, EndsWithOneWhereNothingExcludes) {
    put("a.dat", "1 2\n1\n2\n\n");
    const Outcome outcome = rules({"a.dat", "-s", "1", "--exclusions", "-o", "a.jsonl"});
    EXPECT_EQ(outcome.ending, exited(1));
    EXPECT_EQ(files().at("a.jsonl"), "");
    EXPECT_TRUE(
        outcome.err.ends_with("No exclusion is left: the last one was together as often as by chance.\n"))
        << outcome.err;
}

TEST_F(KorvRules, RefusesWhatDoesNotGoWithExclusions) {
    put("a.dat", five_and_five);
    expect_refused({"a.dat", "--exclusions", "--then", "1"}, 2, "--then: does not go with --exclusions");
    expect_refused({"a.dat", "--exclusions", "--with", "beer"}, 2,
                   R"(--with: found "beer"; expected an item, such as "1", "2")");
    expect_refused({"a.dat", "--exclusions", "-s", "11"}, 2,
                   "--min-support: found 11 transactions; expected at least 1 and at most 10, the number of "
                   "transactions in the input");
}

TEST_F(KorvRules, FindsExclusionsWhereClassesWouldTakeForEver) {
    put("a.dat", large_database());
    const Outcome outcome = rules({"a.dat", "-s", "1", "--exclusions", "--alpha", "1", "--top", "3", "-q"});
    EXPECT_EQ(outcome.ending, exited(0));
    EXPECT_NE(outcome.out.find("\n3. "), std::string::npos) << outcome.out;
}

}  // namespace
}  // namespace korv::test
