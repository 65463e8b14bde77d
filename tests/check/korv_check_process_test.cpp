// korv-check as a process.

#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <vector>

#include "support/program_fixture.h"

namespace korv::test {
namespace {

/// The classes of the transactions 1 3, 1 3, 2 3, 2 4, 2 4.
const std::string small_database = "1 3\n1 3\n2 3\n2 4\n2 4\n";
const std::string small_classes = "1\t2\t 1,\n4\t2\t 4,\n1 3\t3\t 3,\n2 4\t3\t 2,\n1 2 3 4\t5\t 2 3,\n";

class KorvCheck : public ProgramTest {
protected:
    Outcome check(const std::vector<std::string>& arguments) const {
        return run_here(KORV_CHECK_PROGRAM, arguments);
    }

    /// Runs a script of bash, in which "$0" is korv-check, and "$1" korv.
    Outcome shell(const std::string& script) const {
        return shell_with({KORV_CHECK_PROGRAM, KORV_PROGRAM}, script);
    }

    /// The rules of the small classes: not many, since the thresholds are high.
    void put_rules() const {
        put("a.classes", small_classes);
        put("a.dat", small_database);
        shell("\"$1\" a a.classes 1 0.5 5 >console");
    }
};

TEST_F(KorvCheck, EndsWith0WhereThereAreNotesAtMost) {
    put("a.classes", small_classes);
    const Outcome outcome = check({"a.classes", "-n", "5", "--no-notes"});

    EXPECT_EQ(outcome.ending, exited(0));
    EXPECT_EQ(outcome.out,
              "5 classes, 3 essential itemsets, 4 items; 0 errors, 0 warnings, 0 notes; the file is as it "
              "should be\n");
    EXPECT_EQ(outcome.err, "");
}

TEST_F(KorvCheck, EndsWith1WhereThereAreWarnings) {
    put("a.classes", small_classes);
    const Outcome outcome = check({"a.classes", "-n", "4", "--no-notes"});

    EXPECT_EQ(outcome.ending, exited(1));
    EXPECT_EQ(outcome.out,
              "a.classes:5:1: warning: found the support 5; expected 4 at most, the number of transactions "
              "[support-above-size]\n"
              "5 classes, 3 essential itemsets, 4 items; 0 errors, 1 warning, 0 notes\n");
}

TEST_F(KorvCheck, EndsWith2WhereThereAreErrors) {
    const Outcome outcome = shell(R"(printf '1 2\t5\t1,\n' | "$0" -)");

    EXPECT_EQ(outcome.ending, exited(2));
    EXPECT_EQ(
        outcome.out,
        "standard input:1:7: error: found \"1\"; expected a blank and an essential itemset; korv reads the "
        "class 1 2 with support 5 and the essential itemset {} [digit-lost]\n"
        "1 class, 1 essential itemset, 2 items; 1 error, 0 warnings, 0 notes\n");
}

TEST_F(KorvCheck, SaysInOneSentenceThatAFileIsOfAnotherKind) {
    put("a.dat", small_database);
    const Outcome outcome = check({"a.dat", "--fix", "b.classes"});

    EXPECT_EQ(outcome.ending, exited(2));
    EXPECT_EQ(outcome.out,
              "a.dat:1:1: error: found transactions; expected a class file (korv-mine makes one of "
              "transactions) [other-file]\n"
              "1 class, 1 essential itemset, 4 items; 1 error, 0 warnings, 0 notes\n");
    EXPECT_EQ(outcome.err,
              "korv-check: b.classes: not written, since to mend other-file 1 would be a guess\n");
}

TEST_F(KorvCheck, FindsCompressedClasses) {
    const Outcome outcome = shell(R"(printf '\357\273\2771 \t5\t 1,\n' | gzip | "$0" -)");

    EXPECT_EQ(outcome.ending, exited(2));
    EXPECT_EQ(outcome.out,
              "standard input:1:1: error: found data compressed by gzip; expected text (zcat decompresses "
              "it); korv reads the compressed bytes; all else is said of the text [compressed]\n"
              "standard input:1:1: warning: found a byte-order mark; expected text without it; korv skips "
              "it; the columns of this line are counted without it [byte-order-mark]\n"
              "standard input:1:3: warning: found a tab; expected an item number; korv reads it as it is "
              "meant [extra-blank]\n"
              "1 class, 0 essential itemsets, 1 item; 1 error, 2 warnings, 0 notes\n");
}

TEST_F(KorvCheck, EndsWith3WhereItCannotCheck) {
    const Outcome missing = check({"missing"});
    EXPECT_EQ(missing.ending, exited(3));
    EXPECT_EQ(missing.out, "");
    EXPECT_EQ(missing.err, "korv-check: missing: cannot be read: No such file or directory\n");

    const Outcome wrong = check({"--max", "some", "a.classes"});
    EXPECT_EQ(wrong.ending, exited(3));
    EXPECT_EQ(
        wrong.err,
        "korv-check: --max: found \"some\"; expected a whole number; 0 for all; see korv-check --help\n");
}

TEST_F(KorvCheck, SaysNothingWhereItIsToBeQuiet) {
    put("a.classes", small_classes);
    const Outcome outcome = check({"a.classes", "-n", "4", "-q"});

    EXPECT_EQ(outcome.ending, exited(1));
    EXPECT_EQ(outcome.out + outcome.err, "");
}

TEST_F(KorvCheck, CountsByCodeWhatItDoesNotShow) {
    const Outcome outcome = shell(R"(printf '1\t5\t 1,,\n2\t6\t 2,,\n3\t7\n' | "$0" - --max 1 --no-notes)");

    EXPECT_EQ(outcome.ending, exited(2));
    // The second comma is the byte behind the first one, so that no line end is directly behind a comma.
    EXPECT_EQ(outcome.out,
              "standard input:1:8: error: found a comma; expected a blank and another essential itemset, or "
              "the end "
              "of the line; korv reads the class 1 with support 5 and the essential itemsets {2 2 6} and {3 "
              "7}, into "
              "which it takes lines 2 to 3 [doubled-comma]\n"
              "2 findings not shown (--max 0 shows them): no-essentials 1, doubled-comma 1\n"
              "1 class, 2 essential itemsets, 1 item; 3 errors, 0 warnings, 0 notes\n");
}

TEST_F(KorvCheck, WritesJson) {
    const Outcome outcome = shell(R"(printf '1 2\t4\t 2,\n1\t4\t 1,\n' | "$0" - --json --no-notes)");

    EXPECT_EQ(outcome.ending, exited(1));
    EXPECT_EQ(
        outcome.out,
        R"({"file":"standard input","line":1,"column":1,"severity":"warning","code":"support-not-larger",)"
        R"("found":"the support 4","expected":"more than 4, the support of line 2, whose itemset \"1\" lies )"
        R"(within the closed itemset","effect":"","other_line":2})"
        "\n"
        R"({"classes":2,"essentials":1,"items":2,"errors":0,"warnings":1,"notes":0,"mendable":0,)"
        R"("by_code":{"support-not-larger":1}})"
        "\n");
}

TEST_F(KorvCheck, ShowsNotesWhereTheyAreAskedFor) {
    put("a.classes", "1 2\t5\t 1 2,\n");

    EXPECT_EQ(check({"a.classes"}).out,
              "1 note not shown (--notes shows it): own-essential 1\n"
              "1 class, 0 essential itemsets, 2 items; 0 errors, 0 warnings, 1 note; the file is as it "
              "should be\n");
    EXPECT_EQ(check({"a.classes", "--notes"}).out,
              "a.classes:1:1: note: found the closed itemset as its own essential itemset; expected smaller "
              "ones, if "
              "the class is to have rules of its own [own-essential]\n"
              "1 class, 0 essential itemsets, 2 items; 0 errors, 0 warnings, 1 note; the file is as it "
              "should be\n");
    EXPECT_EQ(check({"a.classes", "--no-notes"}).out,
              "1 class, 0 essential itemsets, 2 items; 0 errors, 0 warnings, 0 notes; the file is as it "
              "should be\n");
}

TEST_F(KorvCheck, CountsAgainInTheTransactions) {
    put("a.classes", small_classes);
    put("a.dat", small_database);
    EXPECT_EQ(check({"a.classes", "--database", "a.dat"}).ending, exited(0));

    put("a.classes", "1\t2\t 1,\n4\t2\t 4,\n1 3\t4\t 3,\n2 4\t3\t 2,\n1 2 3 4\t5\t 2 3,\n");
    const Outcome outcome = check({"a.classes", "--database", "a.dat", "--no-notes"});
    EXPECT_EQ(outcome.ending, exited(2));
    EXPECT_EQ(outcome.out,
              "a.classes:3:1: error: found the support 4; expected 3, the support of \"1 3\" in a.dat "
              "[wrong-support]\n"
              "5 classes, 3 essential itemsets, 4 items; 1 error, 0 warnings, 0 notes\n");
}

TEST_F(KorvCheck, NumbersItemsByTheNamesFileBesideTheClasses) {
    put("a.basket", "milk,bread\nmilk,bread\ntea\n");
    put("a.names", "1\tbread\n2\tmilk\n3\ttea\n");
    put("a.classes", "1 2\t2\t 1, 2,\n3\t1\t 3,\n1 2 3\t3\t 1 3, 2 3,\n");
    const std::vector<std::string> against = {"a.classes", "--database", "a.basket", "--format", "basket"};

    EXPECT_EQ(check(against).ending, exited(0)) << check(against).out;
}

TEST_F(KorvCheck, FindsNothingInTheRulesOfKorv) {
    put_rules();
    const Outcome outcome =
        shell("\"$0\" a.classes --no-notes --database a.dat --rules intra_*_a_1_0.5.txt inter_*_a_1_0.5.txt");

    EXPECT_EQ(outcome.ending, exited(0)) << outcome.out;
    EXPECT_EQ(outcome.out,
              "5 classes, 3 essential itemsets, 4 items; 0 errors, 0 warnings, 0 notes; the file is as it "
              "should be\n");
}

TEST_F(KorvCheck, NamesRulesOfOtherSupportOrConfidence) {
    put("a.classes", small_classes);
    put("a.dat", small_database);
    const std::string stars = "\t\t\t******************************************\n";
    // 3 of 5 transactions hold 2; of them 2 hold 4, and 1 holds 3.
    put("rules", stars + "\t\t\t*** Regles approximatives intra noeud  ***\n" + stars +
                     "2-->4\nsupport:2\n\nconfiance:0.666667\n---------------------------\n"
                     "2-->3\nsupport:2\n\nconfiance:0.333333\n---------------------------\n"
                     "3-->2\nsupport:1\n\nconfiance:0.5\n---------------------------\n");
    const Outcome outcome = check({"a.classes", "--no-notes", "--database", "a.dat", "--rules", "rules"});

    EXPECT_EQ(outcome.ending, exited(2)) << outcome.err;
    EXPECT_EQ(
        outcome.out,
        "rules:9:1: error: found the support 2; expected 1, as counted [wrong-rule-support]\n"
        "rules:14:1: error: found the confidence 0.5; expected the confidence 0.333333, 1 of 3 as counted "
        "[wrong-rule-confidence]\n"
        "5 classes, 3 essential itemsets, 4 items; 2 errors, 0 warnings, 0 notes\n");
}

TEST_F(KorvCheck, CountsApartTheUpperBoundThatIsNone) {
    put("a.classes", small_classes);
    put("a.dat", small_database);
    const std::string stars = "\t\t\t******************************************\n";
    // Of the 3 transactions without 4, 1 holds 2, and 2 hold 1.
    put("rules", stars + "\t\t\t*** Regles approximatives inter noeuds ***\n" + stars +
                     "not(4)-->2\n0< support <2\n0.1< confiance <0.2\n---------------------------\n"
                     "not(4)-->1\n1< support <2\n0.7< confiance <0.9\n---------------------------\n"
                     "1-->not(4)\n0< support <2\n0.5< confiance <0.7\n---------------------------\n");
    const Outcome outcome =
        check({"a.classes", "--notes", "--database", "a.dat", "--rules", "rules", "--max", "0"});

    EXPECT_EQ(outcome.ending, exited(2)) << outcome.err;
    EXPECT_EQ(
        outcome.out,
        "a.classes:1:1: note: found 3 of 8 supports of differences open; expected none, if no rule is to be "
        "bounded (korv-rules --database counts them) [open-supports]\n"
        "rules:4:1: note: found the confidence from 0.1 to 0.2; expected 0.333333, as counted: for "
        "not(D)-->B "
        "between nodes, the upper end is no bound [no-upper-bound]\n"
        "rules:8:1: error: found the confidence from 0.7 to 0.9; expected the confidence 0.666667, 2 of 3 as "
        "counted [wrong-rule-confidence]\n"
        "rules:12:1: error: found the confidence from 0.5 to 0.7; expected the confidence 1, 2 of 2 as "
        "counted "
        "[wrong-rule-confidence]\n"
        "5 classes, 3 essential itemsets, 4 items; 2 errors, 0 warnings, 2 notes\n");
}

TEST_F(KorvCheck, WritesAMendedFile) {
    put("a.classes", "2 1\t05\t 1,\r\n\r\n3\t2\t 3,\r\n3\t2\t 3,");
    const Outcome outcome = check({"a.classes", "--fix", "b.classes", "--no-notes", "--max", "1"});

    EXPECT_EQ(outcome.ending, exited(0));
    EXPECT_EQ(files()["b.classes"], "1 2\t5\t 1,\n3\t2\t 3,\n");
    EXPECT_EQ(outcome.err,
              "b.classes: 2 classes; mended: carriage-return 3, empty-line 1, no-final-line-end 1, "
              "leading-zeros 1, "
              "unordered-items 1, class-again 1\n");
    EXPECT_EQ(check({"b.classes"}).ending, exited(0));
}

TEST_F(KorvCheck, KeepsFindingsApartFromAMendedFileOnStandardOutput) {
    put("a.classes", "2 1\t5\t 1,\n");
    const Outcome outcome = check({"a.classes", "--fix", "-", "--no-notes"});

    EXPECT_EQ(outcome.ending, exited(0));
    EXPECT_EQ(outcome.out, "1 2\t5\t 1,\n");
    EXPECT_EQ(
        outcome.err,
        "a.classes:1:3: warning: found an item that is smaller than the one before it; expected ascending "
        "items; korv reads it as it is meant [unordered-items]\n"
        "1 class, 1 essential itemset, 2 items; 0 errors, 1 warning, 0 notes\n"
        "standard output: 1 class; mended: unordered-items 1\n");
}

TEST_F(KorvCheck, ReadsStandardInputOnce) {
    const Outcome outcome = check({"-", "--database", "-"});

    EXPECT_EQ(outcome.ending, exited(3));
    EXPECT_EQ(outcome.err,
              "korv-check: -: found twice among the inputs; expected standard input at most once\n");
}

TEST_F(KorvCheck, LosesNoLineWhenItMends) {
    std::string repeated = "1 2\t5\t";
    for (int i = 0; i < 60; ++i) {
        repeated += " 1,";
    }
    // Line ends of CR alone, and more faults than are looked at.
    for (const std::string& line : {std::string("1\t2\t 1,\r2\t2\t 2,"), repeated}) {
        put("a.classes", line + "\n3\t9\t 3,\n");
        const Outcome outcome = check({"a.classes", "--fix", "b.classes", "-q"});

        EXPECT_EQ(outcome.ending, exited(2)) << line;
        EXPECT_EQ(outcome.err,
                  "korv-check: b.classes: not written, since what 1 line should be would be a guess\n");
        EXPECT_EQ(files().size(), 1U);
    }
}

TEST_F(KorvCheck, MendsLineEndsThatWereConvertedTwice) {
    put("a.classes", "1\t2\t 1,\r\r\n\r\r\n3\t9\t 3,\r\r\n");
    const Outcome outcome = check({"a.classes", "--fix", "b.classes", "-q"});

    EXPECT_EQ(outcome.ending, exited(0)) << outcome.err;
    EXPECT_EQ(files()["b.classes"], "1\t2\t 1,\n3\t9\t 3,\n");
}

TEST_F(KorvCheck, DoesNotMendWhereThatWouldBeAGuess) {
    put("a.classes", "1 2\t5\t 1,\r\n3\t2\t 3\r\n");
    const Outcome outcome = check({"a.classes", "--fix", "b.classes", "-q"});

    EXPECT_EQ(outcome.ending, exited(2));
    EXPECT_EQ(outcome.err, "korv-check: b.classes: not written, since to mend no-comma 1 would be a guess\n");
    EXPECT_EQ(files().size(), 1U);
}

TEST_F(KorvCheck, SaysHowMuchWouldBeMended) {
    put("a.classes", "2 1\t5\t 1,\r\n");
    EXPECT_TRUE(check({"a.classes", "--no-notes"})
                    .out.ends_with("; 1 error, 1 warning, 0 notes; 2 of them are mended by --fix\n"));
    // A doubled comma is not mended, and so nothing is.
    put("a.classes", "2 1\t5\t 1,,\r\n");
    EXPECT_TRUE(check({"a.classes", "--no-notes"}).out.ends_with("; 2 errors, 1 warning, 0 notes\n"));
}

TEST_F(KorvCheck, DoesNotReplaceTheNamesFileBesideTheClassFile) {
    put("a.classes", "1 2\t5\t 1,\n");
    put("a.names", "1\tmilk\n");
    const Outcome outcome = check({"a.classes", "--fix", "a.names"});

    EXPECT_EQ(outcome.ending, exited(3));
    EXPECT_EQ(
        outcome.err,
        "korv-check: a.names: is both the names file beside the class file and the mended file (--fix); "
        "expected two files\n");
    EXPECT_EQ(files()["a.names"], "1\tmilk\n");
}

TEST_F(KorvCheck, SaysHowManyClassesOfASampleItCounted) {
    put("a.classes", small_classes);
    put("a.dat", small_database);
    EXPECT_EQ(
        check({"a.classes", "--database", "a.dat", "--sample", "2", "--no-notes"}).out,
        "5 classes, 3 essential itemsets, 4 items; 2 of the classes counted again; 0 errors, 0 warnings, "
        "0 notes; the file is as it should be\n");

    const Outcome none = check({"a.classes", "--database", "a.dat", "--sample", "0"});
    EXPECT_EQ(none.ending, exited(3));
    EXPECT_EQ(
        none.err,
        "korv-check: --sample: found \"0\"; expected a whole number from 1 on; see korv-check --help\n");
}

TEST_F(KorvCheck, LooksForNoNoteWhereNoneIsWanted) {
    // Each transaction with 3 holds 2, which is in no class.
    put("a.classes", "3\t3\t 3,\n");
    put("a.dat", "2 3\n2 3\n2 3\n");
    EXPECT_EQ(check({"a.classes", "--database", "a.dat"}).out,
              "1 note not shown (--notes shows it): partial-closures 1\n"
              "1 class, 0 essential itemsets, 1 item; 0 errors, 0 warnings, 1 note; the file is as it should "
              "be\n");
    EXPECT_EQ(
        check({"a.classes", "--database", "a.dat", "--no-notes"}).out,
        "1 class, 0 essential itemsets, 1 item; 0 errors, 0 warnings, 0 notes; the file is as it should "
        "be\n");
}

TEST_F(KorvCheck, TellsOfAFaultOfARuleFileBesidesThoseOfTheClasses) {
    put("a.classes", "1\t2\t 1,\n4\t2\t 4,\n1 3\t4\t 3,\n2 4\t3\t 2,\n1 2 3 4\t5\t 2 3,\n");
    put("a.dat", small_database);
    const std::string stars = "\t\t\t******************************************\n";
    // Of 4 transactions, 1 would be without 2, and 2 with 1 alone.
    put("rules", stars + "\t\t\t*** Regles approximatives inter noeuds ***\n" + stars +
                     "not(2)-->1\nsupport:2\n\nconfiance:2\n---------------------------\n");
    const Outcome outcome = check({"a.classes", "--no-notes", "--database", "a.dat", "--rules", "rules"});

    EXPECT_EQ(outcome.ending, exited(2));
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out,
              "a.classes:3:1: error: found the support 4; expected 3, the support of \"1 3\" in a.dat "
              "[wrong-support]\n"
              "rules:7:11: error: found \"2\"; expected a confidence from 0 to 1, from 4 transactions rather "
              "than the 5 of the database; the rules from here on are not counted [rule-file-fault]\n"
              "5 classes, 3 essential itemsets, 4 items; 2 errors, 0 warnings, 0 notes\n");

    // 4 of 5 transactions hold 1 or 4; of 2, it would be -2 that hold neither.
    put("rules", stars + "\t\t\t*** Regles approximatives inter noeuds ***\n" + stars +
                     "not(1)-->not(4)\nsupport:4294967294\n\n2e+06< confiance <1\n");
    EXPECT_NE(check({"a.classes", "--no-notes", "--database", "a.dat", "--rules", "rules"})
                  .out.find("rules:7:1: error: found \"2e+06\"; expected a confidence from 0 to 1, from 2 "
                            "transactions rather than the 5 of the database; "),
              std::string::npos);
}

TEST_F(KorvCheck, DoesNotReplaceTheClassFile) {
    put("a.classes", "1 2\t5\t 1,\r\n");
    const Outcome outcome = check({"a.classes", "--fix", "./a.classes"});

    EXPECT_EQ(outcome.ending, exited(3));
    EXPECT_EQ(
        outcome.err,
        "korv-check: ./a.classes: is both the class file and the mended file (--fix); expected two files\n");
    EXPECT_EQ(files()["a.classes"], "1 2\t5\t 1,\r\n");
}

TEST_F(KorvCheck, KeepsItsStatusWhereTheReaderHasHadEnough) {
    put("a.classes", "1 2\t5\t 1,x\n");
    const Outcome outcome = shell(R"({ "$0" a.classes; echo "status $?" >&2; } | true)");

    EXPECT_EQ(outcome.err, "status 2\n");
}

}  // namespace
}  // namespace korv::test
