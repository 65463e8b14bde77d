// korv-rules as a process: rule files of korv as the input.

#include <array>
#include <cstdio>

#include "rules/korv_rules_run.h"

namespace korv::test {
namespace {

const std::string stars = "\t\t\t******************************************\n";
const std::string header = stars + "\t\t\t*** Regles approximatives inter noeuds ***\n" + stars;
const std::string separator = "---------------------------\n";
const std::string note_on_conclusions =
    "conclusions         not counted, so there is no lift; --database FILE counts them\n";

/// The record of a rule that holds for 3 of 4 transactions.
std::string three_of_four(const std::string& rule) {
    return rule + "\nsupport:3\n\nconfiance:0.75\n" + separator;
}

/// The four rules that korv writes of the two items.
const std::string rules_of_two_items = header + three_of_four("2-->1") + three_of_four("1-->2") +
                                       three_of_four("not(1)-->not(2)") + three_of_four("not(2)-->not(1)");

TEST_F(KorvRules, TellsTheRulesOfARuleFileByWhatItHolds) {
    put("a.classes", two_items_classes);
    const Outcome outcome =
        shell(R"("$2" two a.classes 1 0.5 8 >stdout; exec "$0" inter_approx_two_1_0.5.txt --top 2)");
    EXPECT_EQ(files().at("inter_approx_two_1_0.5.txt"), rules_of_two_items);
    EXPECT_EQ(outcome.ending, exited(0));
    EXPECT_EQ(outcome.out,
              "1. If 1, then in 75 % of cases: 2\n"
              "   3 of 4\n"
              "\n"
              "2. If not 1, then in 75 % of cases: not 2\n"
              "   3 of 4\n");
    EXPECT_EQ(outcome.err, "rule file           inter_approx_two_1_0.5.txt (seen from the first lines)\n" +
                               note_on_conclusions +
                               "4 rules from 1 rule file\n"
                               "2 shown, by confidence     --top 0 shows all 4\n");
}

TEST_F(KorvRules, LeavesCellsEmptyThatRuleFilesDoNotTell) {
    put("a.txt", rules_of_two_items);
    EXPECT_EQ(
        rules({"a.txt", "--to", "csv", "--top", "1", "-q", "--measures", "laplace,recall"}).out,
        csv_header.substr(0, csv_header.size() - 1) + ",recall,recall_max,laplace,laplace_max\n" +
            "1,,approximative,1,2,3,3,0.75,0.75,,,,,4,4,,,,2,1,,,0.6666666666666666,0.6666666666666666\n");
    EXPECT_EQ(
        rules({"a.txt", "--to", "jsonl", "--top", "1", "-q", "-n", "8"}).out,
        R"({"id":1,"form":null,"kind":"approximative","premise":{"any":["1"],"items":[1]},)"
        R"("conclusion":{"any":["2"],"items":[2]},"support":3,"support_max":3,"confidence":0.75,)"
        R"("confidence_max":0.75,"lift":null,"lift_max":null,"leverage":null,"leverage_max":null,)"
        R"("premise_count":4,"premise_count_max":4,"conclusion_count":null,"conclusion_count_max":null,)"
        R"("transactions":8,"items":2,"wordings":1})"
        "\n");
    EXPECT_EQ(rules({"a.txt", "--to", "table", "--top", "1", "-q"}).out,
              "#  rule    confidence  support\n"
              "1  1 => 2       0.750        3\n");
}

TEST_F(KorvRules, CountsTheRulesOfRuleFilesInTheTransactions) {
    put("a.txt", rules_of_two_items);
    put("a.dat", two_items);
    const Outcome outcome = rules({"a.txt", "--database", "a.dat", "--verify", "--to", "csv"});
    EXPECT_EQ(outcome.out,
              csv_header + "1,,approximative,1,2,3,3,0.75,0.75,1.5,1.5,0.125,0.125,4,4,4,4,8,2,1\n");
    EXPECT_EQ(outcome.err,
              "rule file           a.txt (seen from the first lines)\n"
              "database            a.dat\n"
              "input               fimi (guessed from whole numbers with blanks between them)\n"
              "transactions        8\n"
              "empty transactions  3\n"
              "items               2\n"
              "4 rules from 1 rule file, 8 transactions\n"
              "3 another reading of an association     --readings all\n"
              "1 shown, by leverage\n");
}

TEST_F(KorvRules, SettlesTheBoundsOfRuleFilesInTheTransactions) {
    put("a.txt", header + "not(1)-->not(2)\nsupport:3\n\n0.6< confiance <1\n" + separator);
    put("a.dat", two_items);
    EXPECT_EQ(rules({"a.txt", "--to", "csv", "-q"}).out,
              csv_header + "1,,bounded,not 1,not 2,3,3,0.6,1,,,,,3,5,,,,2,1\n");
    EXPECT_EQ(rules({"a.txt", "--database", "a.dat", "--to", "csv", "-q"}).out,
              csv_header + "1,,approximative,not 1,not 2,3,3,0.75,0.75,1.5,1.5,0.125,0.125,4,4,4,4,8,2,1\n");
}

TEST_F(KorvRules, RefusesRuleFilesOfOtherTransactions) {
    put("a.dat", two_items);
    put("support.txt", header + three_of_four("1-->2") + "2-->1\nsupport:2\n\nconfiance:0.5\n" + separator);
    expect_refused(
        {"support.txt", "--database", "a.dat", "-q"}, 3,
        "support.txt:9:1: found a rule that holds for 2 transactions; expected 3 as in the database");
    put("confidence.txt", header + "1-->2\nsupport:3\n\nconfiance:0.6\n" + separator);
    expect_refused(
        {"confidence.txt", "--database", "a.dat", "-q"}, 3,
        "confidence.txt:4:1: found a rule whose confidence is of a premise of 5 transactions; expected "
        "4 as in the database");
    put("bounds.txt", header + "not(1)-->2\n2< support <3\n0.4< confiance <0.5\n" + separator);
    expect_refused({"bounds.txt", "--database", "a.dat", "-q"}, 3,
                   "bounds.txt:4:1: found a rule that holds for 2 to 3 transactions; expected 1 as in the "
                   "database");
}

TEST_F(KorvRules, MakesOneListOfSeveralRuleFiles) {
    put("a.txt", header + three_of_four("1-->2"));
    put("b.txt", header + "1-->3\nsupport:4\n\nconfiance:0.8\n" + separator + three_of_four("1-->2"));
    const Outcome outcome = rules({"a.txt", "b.txt"});
    EXPECT_EQ(outcome.out,
              "1. If 1, then in 80 % of cases: 3\n"
              "   4 of 5\n"
              "\n"
              "2. If 1, then in 75 % of cases: 2\n"
              "   3 of 4\n"
              "   the same fact in 1 more wording\n");
    EXPECT_EQ(outcome.err, "rule files          a.txt and 1 more (seen from the first lines)\n" +
                               note_on_conclusions +
                               "3 rules from 2 rule files\n"
                               "1 the same rule again\n"
                               "2 shown, by confidence\n");
    EXPECT_EQ(shell("gzip b.txt; cat a.txt | \"$0\" - b.txt.gz -q").out, outcome.out);
}

TEST_F(KorvRules, KeepsTheBestOfMoreRulesThanItRemembers) {
    std::string text = header;
    for (int item = 1; item <= 30'000; ++item) {  // item 17: 17 of 20,000
        std::array<char, 16> confidence;
        std::snprintf(confidence.data(), confidence.size(), "%g", (item % 20'000) / 20'000.0);
        text += "0-->" + std::to_string(item) + "\nsupport:" + std::to_string(item % 20'000) +
                "\n\nconfiance:" + confidence.data() + "\n" + separator;
    }
    put("a.txt", text + three_of_four("5-->6"));
    EXPECT_EQ(rules({"a.txt", "--to", "table", "--top", "2", "-q"}).out,
              "#  rule        confidence  support\n"
              "1  0 => 19999      >0.999   19,999\n"
              "2  0 => 19998      >0.999   19,998\n");
    EXPECT_EQ(rules({"a.txt", "--to", "table", "--top", "1", "-q", "--where",
                     "support <= 3 and confidence > 0.5", "--sort", "support"})
                  .out,
              "#  rule    confidence  support\n"
              "1  5 => 6       0.750        3\n");
}

TEST_F(KorvRules, TakesTheNamesFromTheLabelOfRuleFiles) {
    put("intra_exact_two_1_0.5.txt",
        stars + "\t\t\t***   Regles exaxtes intra noeud      ***\n" + stars + "1-->2\nsupport:3\n\n");
    put("two.names", "1\tbread\n2\tbutter\n");
    const std::string words = "1. If bread, then always: butter\n   in all 3 cases\n";
    EXPECT_EQ(rules({"intra_exact_two_1_0.5.txt", "-q"}).out, words);
    EXPECT_EQ(rules({"intra_exact_two_1_0.5.txt", "-q", "--then", "but*"}).out, words);
    EXPECT_EQ(rules({"intra_exact_two_1_0.5.txt", "-q", "--if", "but*"}).ending, exited(1));
}

TEST_F(KorvRules, RefusesOptionsThatNeedMoreThanRuleFilesHold) {
    put("a.txt", rules_of_two_items);
    const std::string needs_database =
        ", which rule files do not hold; expected --database FILE besides, or no such option";
    expect_refused({"a.txt", "--min-lift", "1.2"}, 2,
                   "--min-lift: needs the support of conclusions" + needs_database);
    expect_refused({"a.txt", "--where", "confidence > 0.5 and lift > 1"}, 2,
                   "--where: needs lift" + needs_database);
    expect_refused({"a.txt", "--sort", "leverage"}, 2, "--sort: needs leverage" + needs_database);
    expect_refused({"a.txt", "--prune", "productive"}, 2,
                   "--prune: needs the leverage of rules" + needs_database);
    expect_refused({"a.txt", "--readings", "one"}, 2,
                   "--readings: needs the support of conclusions" + needs_database);
    expect_refused(
        {"a.txt", "--forms", "R121"}, 2,
        "--forms: found labels, which rule files do not hold; expected or-or, none-none, or-none or "
        "none-or");
    expect_refused(
        {"a.txt", "-s", "5%"}, 2,
        "--min-support: found 5%, a share of transactions whose number rule files do not hold; expected "
        "a count, or --database-size N (-n N) or --database FILE besides");
    expect_refused(
        {"a.txt", "--wording", "shortest"}, 2,
        "--wording: found shortest, for which classes are needed; expected full, as the rule files have "
        "it, or no such option");
    expect_refused({"a.txt", "--count"}, 2,
                   "--count: counts forms, which rule files do not hold; expected classes or transactions");
    expect_refused({"a.txt", "--test"}, 2,
                   "--test: counts the items that rules could have been made of, which rule files do not "
                   "hold; expected classes or transactions");
    expect_refused({"a.txt", "--holdout", "b.dat"}, 2,
                   "--holdout: does not go with rule files, whose rules --database FILE counts; expected "
                   "classes or transactions");
    expect_refused({"a.txt", "--verify"}, 2,
                   "--verify: needs the transactions; expected them as the input, or --database FILE");
    expect_refused({"a.txt", "--bins", "4"}, 2, "--bins: goes with transactions only; a.txt is a rule file");
}

TEST_F(KorvRules, RefusesWhatNeedsTheClassesBehindRuleFiles) {
    put("a.txt", rules_of_two_items);
    put("a.dat", two_items);
    expect_refused({"a.txt", "--database", "a.dat", "-o", "a.db"}, 2,
                   "--to sqlite: needs the classes behind the rules, which rule files do not hold; expected "
                   "another format, or classes or transactions");
    expect_refused({"a.txt", "--database", "a.dat", "--to", "dot"}, 2,
                   "--graph lattice: needs the classes behind the rules, which rule files do not hold; "
                   "expected --graph rules, or classes or transactions");
    expect_refused({"a.txt", "--database", "a.dat", "--exclusions"}, 2,
                   "--exclusions: found the rule file a.txt; expected transactions as the input, or a "
                   "class file and --database FILE");
    EXPECT_FALSE(files().contains("a.db"));
}

TEST_F(KorvRules, DrawsTheRulesOfRuleFilesWhereTheTransactionsAreAtHand) {
    put("a.txt", rules_of_two_items);
    put("a.dat", two_items);
    const std::vector<std::string> drawing = {"--to", "dot", "--graph", "rules", "-q"};
    expect_refused(std::vector<std::string>{"a.txt", "-n", "8"} + drawing, 2,
                   "--graph rules: needs the support of conclusions, which rule files do not hold; expected "
                   "--database FILE besides, or another format");
    const std::string drawn = rules(std::vector<std::string>{"a.txt", "--database", "a.dat"} + drawing).out;
    EXPECT_NE(drawn.find("1 rule of 8 transactions"), std::string::npos) << drawn;
    EXPECT_NE(drawn.find("1 => 2: support 3, confidence 75 %, lift 1.50"), std::string::npos) << drawn;
}

TEST_F(KorvRules, WeighsRulesOfRuleFilesByWhatTheyHold) {
    put("a.txt", header + "1 v 2-->3\nsupport:3\n\nconfiance:0.75\n" + separator +
                     "1-->3\nsupport:3\n\nconfiance:1\n" + separator + three_of_four("1-->not(4)"));
    const auto told = [this](const std::vector<std::string>& options) {
        return rules(std::vector<std::string>{"a.txt", "-q", "--to", "table"} + options).out;
    };
    EXPECT_EQ(told({"--forms", "or-none"}),
              "#  rule        confidence  support\n"
              "1  1 => not 4       0.750        3\n");
    EXPECT_EQ(told({"-c", "0.9"}),
              "#  rule    confidence  support\n"
              "1  1 => 3       1.000        3\n");
    // 1 => 3 is about fewer transactions.
    EXPECT_EQ(told({"--prune", "same", "--forms", "or-or"}),
              "#  rule         confidence  support\n"
              "1  1 => 3            1.000        3\n"
              "2  1 or 2 => 3       0.750        3\n");
    EXPECT_EQ(rules({"a.txt", "-q", "--kinds", "bounded"}).ending, exited(1));
}

TEST_F(KorvRules, NamesThePlaceOfADamagedRecord) {
    put("a.txt", header + three_of_four("1-->2") + "1 v 2-->3\nsupport:3\n");
    expect_refused({"a.txt", "-q", "-o", "out.csv"}, 3,
                   "a.txt:11:1: found the end of the file; expected an empty line");
    EXPECT_FALSE(files().contains("out.csv"));
    put("b.txt", header + "1-->2\nsupport:3\n\nconfiance:0.77\n" + separator);
    expect_refused(
        {"b.txt", "-q"}, 3,
        "b.txt:4:1: found a rule whose confidence is not that of any premise; expected a confidence that "
        "goes with the support, and at most N transactions");
    put("c.txt", two_items);
    expect_refused({"c.txt", "--format", "rules"}, 3,
                   "c.txt:1:1: found \"1 2\"; expected the header of a rule file");
}

}  // namespace
}  // namespace korv::test
