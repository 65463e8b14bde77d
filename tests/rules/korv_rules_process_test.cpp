// korv-rules as a process: inputs, outputs, streams, exit statuses, signals.

#include <fcntl.h>
#include <sys/inotify.h>

#include <csignal>

#include "rules/korv_rules_run.h"

namespace korv::test {
namespace {

const std::string titanic = TITANIC;

TEST_F(KorvRules, TellsTheRulesOfTransactions) {
    put("a.dat", two_items);
    const Outcome outcome = rules({"a.dat", "-s", "1", "-c", "0.75"});
    EXPECT_EQ(outcome.ending, exited(0));
    EXPECT_EQ(outcome.out, rule_in_words);
    EXPECT_EQ(outcome.err,
              "input               fimi (guessed from whole numbers with blanks between them)\n"
              "transactions        8\n"
              "empty transactions  3\n"
              "items               2\n"
              "classes             3\n" +
                  summary_of_the_rules);
}

TEST_F(KorvRules, TellsTheRulesOfAClassFile) {
    put("a.classes", two_items_classes);
    const Outcome outcome = rules({"a.classes", "-n", "8", "-s", "1", "-c", "0.75"});
    EXPECT_EQ(outcome.ending, exited(0));
    EXPECT_EQ(outcome.out, rule_in_words);
    EXPECT_EQ(outcome.err,
              "class file          a.classes (seen from its first lines)\n"
              "classes             3\n"
              "transactions        8\n" +
                  summary_of_the_rules);
}

TEST_F(KorvRules, TakesWhatKorvMineWrites) {
    put("a.dat", two_items);
    put("a.names", "1\tbread\n2\tbutter\n");
    const Outcome outcome =
        shell(R"("$1" a.dat -s 1 -q -o - | "$0" - -n 8 --names a.names -s 1 -c 75% -q -o rules.csv)");
    EXPECT_EQ(outcome.ending, exited(0));
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(
        files().at("rules.csv"),
        csv_header + "1,R131,approximative,bread,butter,3,3,0.75,0.75,1.5,1.5,0.125,0.125,4,4,4,4,8,2,1\n");
}

TEST_F(KorvRules, IsQuietWhenAskedTo) {
    put("a.dat", two_items);
    const Outcome outcome = rules(std::vector<std::string>{"a.dat", "-q"} + low);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, rule_in_words);
}

TEST_F(KorvRules, ReadsTablesBasketsCompressedFilesAndSeveralOnes) {
    put("a.dat", two_items);
    EXPECT_EQ(shell("gzip -k a.dat; exec \"$0\" a.dat.gz -s 1 -c 0.75 -q").out, rule_in_words);
    EXPECT_EQ(shell("gzip a.dat.gz -c > b; mv a.dat.gz x; exec \"$0\" - -s 1 -c 0.75 -q < x").out,
              rule_in_words);
    put("first", "1 2\n1 2\n1 2\n1\n");
    put("second", "2\n\n\n\n");
    EXPECT_EQ(rules(std::vector<std::string>{"first", "second", "-q"} + low).out, rule_in_words);
    EXPECT_EQ(shell("exec \"$0\" first - -s 1 -c 0.75 -q < second").out, rule_in_words);
    put("a.csv", "kind;colour\nx;red\nx;red\nx;red\nx;\ny;red\ny;\ny;\ny;\n");
    // The other one: not colour=red => kind=y.
    EXPECT_EQ(rules({"a.csv", "-s", "3", "-c", "0.75", "-q", "--if", "colour=red"}).out,
              "1. If colour=red, then in 75 % of cases: kind=x\n"
              "   3 of 4, against 4 of all 8 (50 %): 1.50 times as often as in general\n"
              "   the same association in 1 more reading\n");
    put("b.csv", "bread,butter\nbread,butter\nbread,butter\nbread\nbutter\n\n\n\n");
    EXPECT_TRUE(rules({"b.csv", "--format", "basket", "-s", "1", "-c", "0.75", "-q"})
                    .out.starts_with("1. If bread, then in 75 % of cases: butter\n"));
}

TEST_F(KorvRules, CutsColumnsOfManyNumbersUnlessItIsTold) {
    put("a.csv", "n,k\n1,a\n2,a\n3,a\n4,a\n5,b\n6,b\n7,b\n8,b\n9,c\n10,c\n");
    const std::string cut = rules({"a.csv", "-s", "2", "--to", "csv"}).out;
    EXPECT_NE(cut.find("n=1..3"), std::string::npos) << cut;
    const Outcome left = rules({"a.csv", "-s", "1", "--to", "csv", "--bins", "none"});
    EXPECT_EQ(left.out.find("n=1..3"), std::string::npos) << left.out;
    EXPECT_NE(left.out.find("n in {9, 10}"), std::string::npos) << left.out;
}

TEST_F(KorvRules, TakesNamesBesideTheClassFileOrThoseItIsTold) {
    put("a.classes", two_items_classes);
    put("a.names", "1\tbread\n2\tbutter\n");
    const std::vector<std::string> arguments = {"a.classes", "-n", "8", "-s", "1", "-c", "0.75", "-q"};
    EXPECT_TRUE(rules(arguments).out.starts_with("1. If bread, then in 75 % of cases: butter\n"));
    put("b.names", "1\ttea\n");
    EXPECT_TRUE(rules(arguments + std::vector<std::string>{"--names", "b.names"})
                    .out.starts_with("1. If tea, then in 75 % of cases: 2\n"));
    put("b.names", "1\ttea\n1\tcoffee\n");
    expect_refused(arguments + std::vector<std::string>{"--names", "b.names"}, 3,
                   "b.names:2:1: found the item 1 again; expected each item once");
    expect_refused(arguments + std::vector<std::string>{"--names", "c.names"}, 3,
                   "c.names: cannot be read: No such file or directory");
}

TEST_F(KorvRules, NeedsTheNumberOfTransactionsOfAClassFile) {
    put("a.classes", two_items_classes);
    const std::string message =
        "a.classes: found a class file, which does not say how many transactions there are; expected "
        "--database-size N (-n N), or --database FILE";
    expect_refused({"a.classes"}, 2, message);
    put("a.dat", two_items);
    expect_refused({"a.classes"}, 2, message + ", such as --database a.dat");
}

TEST_F(KorvRules, TakesNAndAllSupportsFromTheDatabaseOfAClassFile) {
    put("a.classes", two_items_classes);
    put("a.dat", two_items);
    const Outcome outcome = rules(std::vector<std::string>{"a.classes", "--database", "a.dat"} + low);
    EXPECT_EQ(outcome.ending, exited(0));
    EXPECT_EQ(outcome.out, rule_in_words);
    EXPECT_EQ(outcome.err,
              "class file          a.classes (seen from its first lines)\n"
              "classes             3\n"
              "database            a.dat, which has all supports of the classes\n"
              "input               fimi (guessed from whole numbers with blanks between them)\n"
              "transactions        8\n"
              "empty transactions  3\n"
              "items               2\n" +
                  summary_of_the_rules);
    put("a.classes", "1\t4\t 1,\n2\t3\t 2,\n1 2\t5\t 1 2,\n");
    expect_refused({"a.classes", "--database", "a.dat"}, 3,
                   "a.classes:2:1: found the support 3; expected 4, the support of \"2\" in a.dat");
    expect_refused(
        {"-", "--database", "-"}, 2,
        "-: found as the input and the database (--database); expected standard input at most once");
}

TEST_F(KorvRules, KnowsTheItemsOfTheDatabaseByTheirNames) {
    const Outcome outcome = rules({titanic + "/titanic.classes", "--database", titanic + "/titanic.csv",
                                   "--verify", "-q", "--to", "csv", "--if", "sex=female|age=child"});
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.ending, exited(0));
    EXPECT_NE(outcome.out.find(",sex=female or age=child,class=3rd or survived=yes,514,514,"),
              std::string::npos)
        << outcome.out;
}

TEST_F(KorvRules, SettlesOpenSupportsByTheDatabase) {
    // Without the class of item 1 the support of what 2 leaves of 1 2 is open.
    put("a.classes", "2\t4\t 2,\n1 2\t5\t 1 2,\n");
    put("a.dat", two_items);
    const std::vector<std::string> all = {"-s", "1",       "-c",   "0.75", "--readings", "all", "--min-lift",
                                          "0",  "--prune", "none", "--to", "csv",        "-q"};
    EXPECT_EQ(rules(std::vector<std::string>{"a.classes", "--database", "a.dat", "--kinds", "bounded"} + all)
                  .ending,
              exited(1));
    EXPECT_NE(rules(std::vector<std::string>{"a.classes", "--database", "a.dat"} + all)
                  .out.find(",1,2,3,3,0.75,0.75,"),
              std::string::npos);
    EXPECT_EQ(rules(std::vector<std::string>{"a.classes", "-n", "8"} + all).out.find(",1,2,3,3,0.75,0.75,"),
              std::string::npos);
}

TEST_F(KorvRules, RefusesOptionsThatDoNotGoWithTheInput) {
    put("a.classes", two_items_classes);
    put("a.dat", two_items);
    expect_refused({"a.classes", "-n", "8", "--bins", "3"}, 2,
                   "--bins: goes with transactions only; a.classes is a class file");
    expect_refused({"a.classes", "-n", "8", "--max-seconds", "3"}, 2,
                   "--max-seconds: goes with transactions only; a.classes is a class file");
    expect_refused(
        {"a.dat", "-n", "8"}, 2,
        "--database-size: goes with a class file only; a.dat holds transactions, as far as its first "
        "lines tell (--format classes says that it is a class file)");
    expect_refused(
        {"a.dat", "--verify", "--max-size", "0"}, 2,
        "--max-size: found \"0\"; expected a whole number from 1 to 1000000000; see korv-rules --help");
    expect_refused({"a.classes", "-n", "8", "--verify"}, 2,
                   "--verify: needs the transactions; expected them as the input, or --database FILE");
    expect_refused({"a.dat", "--columns", "x"}, 2,
                   "a.dat: found fimi (items as numbers), guessed from whole numbers with blanks between "
                   "them; expected a table, since "
                   "--columns is given: leave --columns out, or say --format table if that is what it is");
    expect_refused({"a.dat", "-s", "9"}, 2,
                   "--min-support: found 9 transactions; expected at least 1 and at most 8, the number of "
                   "transactions in the input");
    expect_refused(
        {"-", "-n", "8", "--names", "-"}, 2,
        "-: found as the input and the names file (--names); expected standard input at most once");
    expect_refused({""}, 2, "INPUT: found \"\"; expected the name of a file; see korv-rules --help");
    expect_refused({"-", "-"}, 2, "-: found twice among the inputs; expected standard input at most once");
    expect_refused(
        {"a.classes", "a.dat", "-n", "8"}, 2,
        "a.dat: found a second input behind the class file a.classes; expected one class file, or files "
        "of transactions alone");
}

TEST_F(KorvRules, RefusesDamagedClassFiles) {
    const std::vector<std::string> arguments = {"a", "-n", "8", "-q"};
    put("a", "1\t4\t 1,\n2\t4 2,\n1 2\t5\t 1 2,\n");
    expect_refused(arguments, 3, "a:2:4: found a blank; expected a digit, or a tab");
    put("a", "1\t4\t 1,\n1\t4\t 1,\n");
    const Outcome twice = rules(arguments);
    EXPECT_EQ(twice.ending, exited(3));
    EXPECT_TRUE(twice.err.starts_with("korv-rules: a:2:1: found ")) << twice.err;
    put("a", "1\t9\t 1,\n");
    expect_refused(arguments, 3,
                   "a:1:1: found the support 9; expected 8 at most, the number of transactions");
    // One of 1 and 2 is in fewer transactions than 1 alone.
    put("a", "2\t3\t 2,\n1\t5\t 1,\n1 2\t4\t 1 2,\n");
    expect_refused(
        arguments, 3,
        "a:3:1: found the support 4; expected more than 5, the support of line 2, whose itemset \"1\" lies "
        "within the closed itemset");
}

TEST_F(KorvRules, ReportsInputsThatCannotBeRead) {
    expect_refused({"missing.dat"}, 3, "missing.dat: cannot be read: No such file or directory");
    put("a.dat", "1 2\nx\n");
    expect_refused({"a.dat", "--format", "fimi"}, 3, "a.dat:2:1: found \"x\"; expected an item number");
    put("a.dat", "\n");
    EXPECT_EQ(rules({"a.dat"}).ending, exited(3));
    put("a.dat", "");
    EXPECT_EQ(rules({"a.dat"}).ending, exited(3));
    EXPECT_EQ(rules({"."}).ending, exited(3));
}

TEST_F(KorvRules, EndsWithOneWhereNoRuleIsLeftAndSaysWhy) {
    put("a.dat", two_items);
    const Outcome weak = rules({"a.dat", "-s", "1", "--to", "csv"});
    EXPECT_EQ(weak.ending, exited(1));
    EXPECT_EQ(weak.out, csv_header);
    EXPECT_TRUE(
        weak.err.ends_with("0 rules from 3 classes, 8 transactions\n"
                           "No rule reaches the minimum support of 1 and the minimum confidence of 0.8: a "
                           "lower --min-confidence or --min-support brings more.\n"))
        << weak.err;
    const Outcome lift = rules(std::vector<std::string>{"a.dat", "--min-lift", "2"} + low);
    EXPECT_EQ(lift.ending, exited(1));
    EXPECT_TRUE(
        lift.err.ends_with("No rule is left: the last 4 were of a lift below 2; --min-lift 0 keeps them.\n"))
        << lift.err;
    const Outcome where = rules(std::vector<std::string>{"a.dat", "--where", "lift > 7"} + low);
    EXPECT_EQ(where.ending, exited(1));
    EXPECT_TRUE(where.err.ends_with("were not as --where asks; they are kept without --where.\n"))
        << where.err;
}

TEST_F(KorvRules, EndsWithOneWhereNoItemIsFrequentEnough) {
    put("a.dat", two_items);
    const Outcome outcome = rules({"a.dat", "-s", "7", "--with", "1", "-o", "a.csv"});
    EXPECT_EQ(outcome.ending, exited(1));
    EXPECT_NE(
        outcome.err.find("\n--min-support: no item is in 7 transactions; the most frequent one is in 4\n"),
        std::string::npos)
        << outcome.err;
    EXPECT_EQ(files().at("a.csv"), csv_header);
}

TEST_F(KorvRules, WritesTheFormatOfTheExtensionOrTheOneItIsTold) {
    put("a.dat", two_items);
    const std::vector<std::string> arguments = std::vector<std::string>{"a.dat", "-q"} + low;
    EXPECT_EQ(rules(arguments + std::vector<std::string>{"-o", "a.csv"}).out, "");
    EXPECT_EQ(files().at("a.csv"), csv_rule);
    EXPECT_EQ(rules(arguments + std::vector<std::string>{"-o", "a.txt"}).ending, exited(0));
    EXPECT_EQ(files().at("a.txt"), rule_in_words);
    EXPECT_EQ(rules(arguments + std::vector<std::string>{"-o", "b.txt", "--to", "csv"}).ending, exited(0));
    EXPECT_EQ(files().at("b.txt"), csv_rule);
    EXPECT_EQ(
        rules(arguments + std::vector<std::string>{"--to", "jsonl"}).out,
        "{\"id\":1,\"form\":\"R131\",\"kind\":\"approximative\",\"premise\":{\"any\":[\"1\"],\"items\":[1]},"
        "\"conclusion\":{\"any\":[\"2\"],\"items\":[2]},\"support\":3,\"support_max\":3,\"confidence\":0.75,"
        "\"confidence_max\":0.75,\"lift\":1.5,\"lift_max\":1.5,\"leverage\":0.125,\"leverage_max\":0.125,"
        "\"premise_count\":4,\"premise_count_max\":4,\"conclusion_count\":4,\"conclusion_count_max\":4,"
        "\"transactions\":8,\"items\":2,\"wordings\":1}\n");
    EXPECT_EQ(rules(arguments + std::vector<std::string>{"--to", "tsv"}).out.find(','), std::string::npos);
    EXPECT_TRUE(rules(arguments + std::vector<std::string>{"--to", "table"}).out.starts_with("#  rule"));
    expect_refused(
        arguments + std::vector<std::string>{"-o", "a.xml"}, 2,
        "-o: found \"a.xml\"; expected a name that ends with .txt, .csv, .tsv, .jsonl, .db, .sqlite, "
        ".sqlite3, .dot, .gv, .html or .htm, or --to FORMAT");
}

TEST_F(KorvRules, RefusesToReplaceItsInputs) {
    put("a.dat", two_items);
    put("a.classes", two_items_classes);
    put("a.names", "1\tx\n");
    const std::string ending = "; expected two files";
    expect_refused({"a.dat", "-o", "./a.dat", "--to", "csv"}, 2,
                   "./a.dat: is both the input and the output (-o)" + ending);
    expect_refused({"a.classes", "--database", "a.dat", "-o", "a.dat", "--to", "csv"}, 2,
                   "a.dat: is both the database (--database) and the output (-o)" + ending);
    expect_refused({"a.dat", "--names", "a.names", "-o", "a.names", "--to", "csv"}, 2,
                   "a.names: is both the names file and the output (-o)" + ending);
    // Even those that were found beside the class file.
    expect_refused({"a.classes", "-n", "8", "-o", "a.names", "--to", "csv"}, 2,
                   "a.names: is both the names file and the output (-o)" + ending);
    EXPECT_EQ(shell("exec \"$0\" a.dat -q >> a.dat").ending, exited(2));
    EXPECT_EQ(files(),
              (Files{{"a.dat", two_items}, {"a.classes", two_items_classes}, {"a.names", "1\tx\n"}}));
}

TEST_F(KorvRules, ReportsAnOutputThatCannotBeWritten) {
    put("a.dat", two_items);
    expect_refused({"a.dat", "-q", "-o", "/dev/full", "--to", "csv"}, 4,
                   "/dev/full: cannot be written: No space left on device");
    expect_refused({"a.dat", "-q", "-o", "none/a.csv"}, 4,
                   "none/a.csv: cannot be created: No such file or directory");
    const Outcome full = shell("exec \"$0\" a.dat -s 1 -c 0.75 > /dev/full");
    EXPECT_EQ(full.ending, exited(4));
    EXPECT_EQ(full.err, "korv-rules: standard output: cannot be written: No space left on device\n");
    const Outcome closed = shell("exec \"$0\" a.dat -q >&-");
    EXPECT_EQ(closed.ending, exited(4));
    EXPECT_EQ(closed.err, "korv-rules: standard output: is closed or not open for writing\n");
    EXPECT_EQ(files().size(), 1U);
}

TEST_F(KorvRules, KeepsAnEarlierFileUnlessThereIsAWholeOne) {
    put("a.dat", "1 2\nx\n");
    put("a.csv", "earlier");
    EXPECT_EQ(rules({"a.dat", "--format", "fimi", "-o", "a.csv"}).ending, exited(3));
    EXPECT_EQ(files(), (Files{{"a.dat", "1 2\nx\n"}, {"a.csv", "earlier"}}));
    put("a.dat", random_database(1, 8, 100));
    const Outcome too_large = shell("ulimit -f 1; exec \"$0\" a.dat -s 1 -c 0.1 --top 0 -q -o a.csv");
    EXPECT_EQ(too_large.ending, exited(4));
    EXPECT_EQ(too_large.err, "korv-rules: a.csv: cannot be written: File too large\n");
    EXPECT_EQ(files().at("a.csv"), "earlier");
    EXPECT_EQ(files().size(), 2U);
}

TEST_F(KorvRules, EndsWellWhereNobodyReadsAllRules) {
    put("a.dat", random_database(1, 9, 200));
    const std::string all = "\"$0\" a.dat -s 1 -c 0 --min-lift 0 --readings all --prune none --to csv";
    const Outcome outcome = shell(all + " | head -1; exit ${PIPESTATUS[0]}");
    EXPECT_EQ(outcome.ending, exited(0));
    EXPECT_EQ(outcome.out, csv_header);
    EXPECT_EQ(outcome.err, "");
    // The file is what was asked for, even where nobody reads the summary.
    const Outcome summary = shell(all + " -o a.csv 2>&1 | true; exit ${PIPESTATUS[0]}");
    EXPECT_EQ(summary.ending, exited(0));
    EXPECT_TRUE(files().at("a.csv").starts_with(csv_header));
}

TEST_F(KorvRules, WorksWhereStandardErrorIsClosed) {
    put("a.dat", two_items);
    EXPECT_EQ(shell("exec \"$0\" a.dat -s 1 -c 0.75 -o a.csv <&- >&- 2>&-").ending, exited(0));
    EXPECT_EQ(files().at("a.csv"), csv_rule);
}

TEST_F(KorvRules, EndsWhereTheTimeForMiningIsOver) {
    put("a.dat", large_database());
    const Outcome outcome =
        rules(std::vector<std::string>{"a.dat", "--max-seconds", "0.1", "-o", "a.csv"} + endless);
    EXPECT_EQ(outcome.ending, exited(3));
    EXPECT_TRUE(outcome.err.starts_with("korv-rules: stopped after 0.10 s (--max-seconds), with "))
        << outcome.err;
    EXPECT_TRUE(
        outcome.err.ends_with("; a higher --min-support or a lower --max-size brings fewer, a higher "
                              "--max-seconds lets it go on\n"))
        << outcome.err;
    EXPECT_EQ(files().size(), 1U);
}

TEST_F(KorvRules, SaysThatTheMemoryIsExhausted) {
    const std::string limit = "ulimit -v 90000; ";  // KiB
    if (shell(limit + "exec \"$0\" --version").ending != exited(0)) {
        GTEST_SKIP() << "Sanitizers need more memory than this test has.";
    }
    put("a.dat", large_database());
    const Outcome mined =
        shell(limit + "exec \"$0\" a.dat -s 1 --max-items 0 --max-classes 4000000000 -q -o a.csv");
    EXPECT_EQ(mined.ending, exited(4));
    EXPECT_EQ(mined.err, "korv-rules: out of memory while mining a.dat\n");
    std::string empty_lines;
    empty_lines.resize(60'000'000, '\n');
    put("a.dat", empty_lines);
    const Outcome read = shell(limit + "exec \"$0\" a.dat -q -o a.csv");
    EXPECT_EQ(read.ending, exited(4));
    EXPECT_EQ(read.err, "korv-rules: out of memory while reading a.dat\n");
    EXPECT_EQ(files().size(), 1U);
}

TEST_F(KorvRules, LowersTheSizeOfItemsetsWhereThereAreTooManyClasses) {
    put("a.dat", random_database(1, 10, 200));
    const Outcome outcome = rules({"a.dat", "-s", "1", "-c", "0.1", "--max-classes", "60"});
    EXPECT_EQ(outcome.ending, exited(0));
    // 10 items and their 45 pairs.
    EXPECT_NE(
        outcome.err.find("\nclasses             55\n"
                         "Itemsets of more than 2 items are left out, since with them there are more than 60 "
                         "classes: --max-classes allows more, a higher --min-support brings fewer\n"),
        std::string::npos)
        << outcome.err;
    const Outcome refused = rules({"a.dat", "-s", "1", "--max-classes", "5"});
    EXPECT_EQ(refused.ending, exited(3));
    EXPECT_TRUE(
        refused.err.starts_with("korv-rules: --min-support: with 1 there are more than 5 classes, even of "
                                "itemsets of at most 2 items; expected --min-support "))
        << refused.err;
}

TEST_F(KorvRules, ReportsWrongArguments) {
    put("a.dat", two_items);
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{},
                                               {"a.dat", "-s", "many"},
                                               {"a.dat", "-s", "1%,2%"},
                                               {"a.dat", "-c", "2"},
                                               {"a.dat", "--unknown"},
                                               {"a.dat", "--format", "xml"},
                                               {"a.dat", "--forms", "R123"},
                                               {"a.dat", "--kinds", "some"},
                                               {"a.dat", "--measures", "lif"},
                                               {"a.dat", "--sort", "lif"},
                                               {"a.dat", "--where", "lif > 2"},
                                               {"a.dat", "--where", "lift >"},
                                               {"a.dat", "--with", "/(/"},
                                               {"a.dat", "--with", "#7"},
                                               {"a.dat", "--with", "milk"},
                                               {"a.dat", "-o", ""}}) {
        const Outcome outcome = rules(arguments);
        EXPECT_EQ(outcome.ending, exited(2)) << testing::PrintToString(arguments);
        EXPECT_TRUE(outcome.err.starts_with("korv-rules: ")) << outcome.err;
        EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << outcome.err;
        EXPECT_EQ(outcome.out, "");
    }
}

TEST_F(KorvRules, TellsItsVersionItsOptionsAndTheMeasures) {
    const Outcome version = rules({"--version"});
    EXPECT_EQ(version.ending, exited(0));
    EXPECT_TRUE(version.out.starts_with("korv-rules ")) << version.out;
    const Outcome help = rules({"--help"});
    EXPECT_EQ(help.ending, exited(0));
    EXPECT_NE(help.out.find("--per-conclusion"), std::string::npos);
    const Outcome measures = rules({"--help-measures"});
    EXPECT_EQ(measures.ending, exited(0));
    EXPECT_NE(measures.out.find("leverage"), std::string::npos);
    EXPECT_NE(measures.out.find("imbalance"), std::string::npos);
}

/// korv-rules while it runs, started by a shell that becomes it and so tells its number beforehand.
class RunningRules {
public:
    RunningRules(const std::vector<std::string>& arguments, const std::filesystem::path& directory)
        : process_(command(arguments, directory), open_file("/dev/null", O_RDONLY), out_.write, err_.write),
          id_(std::stoi(read_until(out_.read, "\n"))) {
        err_.write.close();
    }

    void send(int signal) const { ASSERT_EQ(kill(id_, signal), 0); }
    std::string next_line() const { return read_until(err_.read, "\n"); }
    std::string rest() const { return read_to_end(err_.read); }
    Ending wait() { return process_.wait(); }

private:
    static Command command(const std::vector<std::string>& arguments,
                           const std::filesystem::path& directory) {
        return {"/bin/bash",
                std::vector<std::string>{"-c", R"(echo $$; ulimit -c 0; exec env --default-signal "$@")",
                                         "bash", KORV_RULES_PROGRAM} +
                    arguments,
                directory};
    }

    Channel out_ = make_pipe();
    Channel err_ = make_pipe();
    Process process_;
    pid_t id_;
};

/// Tells when a file is created in a directory.
class Watch {
public:
    explicit Watch(const std::filesystem::path& directory) {
        EXPECT_GE(inotify_add_watch(events_.number(), directory.c_str(), IN_CREATE), 0);
    }

    void wait_for_a_file() const { read_some(events_); }

private:
    Descriptor events_{inotify_init1(IN_CLOEXEC)};
};

TEST_F(KorvRules, TellsHowFarItIsAndRemovesWhatItWroteWhenItIsInterrupted) {
    put("a.dat", large_database());
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        SCOPED_TRACE(signal);
        const Watch watch(directory_.path());
        RunningRules running(std::vector<std::string>{"a.dat", "-o", "a.csv"} + endless, directory_.path());
        watch.wait_for_a_file();
        ASSERT_EQ(files().size(), 2U);
        running.send(SIGUSR1);
        const std::string told = running.next_line();
        EXPECT_TRUE(told.starts_with("korv-rules: reading; ") || told.starts_with("korv-rules: mining; "))
            << told;
        EXPECT_TRUE(told.ends_with(" MiB\n")) << told;
        running.send(signal);
        EXPECT_EQ(running.wait(), ended_by_signal(signal));
        const std::string last = running.rest();
        EXPECT_TRUE(last.starts_with("korv-rules: ") && last.ends_with(" MiB\n")) << last;
        EXPECT_EQ(files().size(), 1U);
    }
}

/// Runs a command line on a terminal of 70 columns; standard error is the terminal, too.
std::string on_a_terminal(const std::filesystem::path& directory, const std::string& options) {
    const std::string command = "stty cols 70; " + std::string(KORV_RULES_PROGRAM) + " " + options;
    return run({"/usr/bin/script", {"-qec", command, "/dev/null"}, directory}).out;
}

TEST_F(KorvRules, TellsTwentyRulesInATableOnATerminalAndThenTheSummary) {
    if (!std::filesystem::exists("/usr/bin/script")) {
        GTEST_SKIP() << "This test needs script(1).";
    }
    put("a.dat", random_database(1, 8, 100));
    const std::string text = on_a_terminal(directory_.path(), "a.dat -s 1 -c 0.3 --color never");
    const std::size_t table = text.find(" #  rule");
    const std::size_t summary = text.find("\ninput  ");
    ASSERT_NE(table, std::string::npos) << text;
    ASSERT_NE(summary, std::string::npos) << text;
    EXPECT_LT(table, summary);
    EXPECT_NE(text.find("\n20  "), std::string::npos) << text;
    EXPECT_EQ(text.find("\n21  "), std::string::npos) << text;
    EXPECT_NE(text.find(" 20 shown, by leverage"), std::string::npos) << text;
    EXPECT_NE(text.find("--top 0 shows all "), std::string::npos) << text;
}

}  // namespace
}  // namespace korv::test
