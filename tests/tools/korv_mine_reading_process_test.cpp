// korv-mine as a process: what it reads, and the classes and names that it makes of it.

#include "tools/korv_mine_run.h"

namespace korv::test {
namespace {

/// The first line of a summary.
std::string first_line(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

TEST_F(KorvMine, SaysWhichFormatItSaw) {
    for (const auto& [text, format] : std::vector<std::pair<std::string, std::string>>{
             {"1 2\n3\n", "fimi (guessed from whole numbers with blanks between them)"},
             {"tea,milk\nmilk\nmilk,tea,bread\n", "basket with \",\" (guessed from lines of 1 to 3 cells)"},
             {"kind;age\nx;1\ny;2\n",
              "table with \";\" (guessed from rows of 2 cells under a first line of distinct names)"},
             {"kind\tage\nx\t1\ny\t2\n",
              "table with tab (guessed from rows of 2 cells under a first line of distinct names)"}}) {
        put("input", text);
        const Outcome outcome = mine({"input", "-s", "1"});
        EXPECT_EQ(outcome.ending, exited(0)) << text;
        EXPECT_EQ(first_line(outcome.err), "input               " + format);
    }
}

TEST_F(KorvMine, SaysThatItSawTheSeparatorAlone) {
    put("a.csv", "kind;age\nx;1\ny;2\n");
    EXPECT_EQ(first_line(mine({"a.csv", "-s", "1", "--format", "table"}).err),
              "input               table with \";\" (its separator was guessed)");
    EXPECT_EQ(first_line(mine({"a.csv", "-s", "1", "--format", "table", "--separator", ";"}).err),
              "input               table with \";\"");
}

TEST_F(KorvMine, ReadsCompressedFilesAmongOthers) {
    put("a.dat", "1 3\n1 3\n2 3\n");
    put("b.dat", "2 4\n2 4\n");
    const Outcome outcome = shell("gzip a.dat && mv a.dat.gz a && exec \"$0\" a b.dat -s 1 -q");
    if (outcome.err.find("without zlib") != std::string::npos) {
        GTEST_SKIP() << "korv-mine was built without zlib.";
    }
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, small_classes);
}

TEST_F(KorvMine, ReadsWeightedLinesAsIfTheyWereWrittenOut) {
    put("a.dat", "2 1 3\n1 2 3\n2 2 4\n");
    EXPECT_EQ(mine({"a.dat", "-s", "1", "-q", "--weighted"}).out, small_classes);
    EXPECT_EQ(mine({"a.dat", "-s", "60%", "-q", "--weighted"}).out, "2\t3\t 2,\n3\t3\t 3,\n");
    put("a.csv", "      2 first,survived\n      1 third,survived\n      2 third,died\n");
    const Outcome baskets =
        mine({"a.csv", "-s", "1", "-q", "--weighted", "--format", "basket", "--names", "a.names"});
    EXPECT_EQ(baskets.out, small_basket_classes);
    EXPECT_EQ(files().at("a.names"), small_names);
}

TEST_F(KorvMine, ReadsWhatUniqCounts) {
    put("a.dat", "2 4\n1 3\n2 3\n1 3\n2 4\n");
    EXPECT_EQ(shell("sort a.dat | uniq -c | \"$0\" - --weighted -s 1 -q").out, small_classes);
}

TEST_F(KorvMine, ReadsAWeightedTableAsIfItWereWrittenOut) {
    put("a.csv", "class,n,alive\n1st,2,yes\n2nd,0,no\n3rd,1,yes\n3rd,2,no\n");
    const Outcome outcome = mine({"a.csv", "-s", "1", "--weight", "n", "-o", "a.classes"});
    EXPECT_EQ(files().at("a.names"), "1\tclass=1st\n2\tclass=3rd\n3\talive=yes\n4\talive=no\n");
    EXPECT_EQ(files().at("a.classes"), small_classes);
    EXPECT_NE(outcome.err.find("\ntransactions        5\n"), std::string::npos) << outcome.err;
    EXPECT_NE(outcome.err.find("\n1 line with the weight 0 is left out\n"), std::string::npos) << outcome.err;
}

TEST_F(KorvMine, ReadsTheColumnsOfATableThatItIsTold) {
    put("a.csv", "id,age,town,agent\n1,17,Bonn,x\n2,18,Ulm,x\n");
    EXPECT_EQ(mine({"a.csv", "-s", "1", "-q", "--columns", "a*,id", "--ignore", "i?", "-o", "a.classes"}).err,
              "");
    EXPECT_EQ(files().at("a.names"), "1\tage=17\n2\tage=18\n3\tagent=x\n");
    EXPECT_EQ(files().at("a.classes"), "1\t1\t 1,\n2\t1\t 2,\n1 2 3\t2\t 3,\n");
}

TEST_F(KorvMine, CutsColumnsAtPointsSplitsCellsAndLeavesOutMissingOnes) {
    put("a.csv", "age,town,speaks\n17,-,de;en\n18,Bonn,en\n64,NA,\n65,-,fr; de\n");
    EXPECT_EQ(mine({"a.csv", "-s", "1", "-q", "--max-size", "1", "--bins", "age=18,65", "--split", "speaks=;",
                    "--missing", "-,x", "-o", "a.classes"})
                  .err,
              "");
    EXPECT_EQ(files().at("a.names"),
              "1\tage=..<18\n2\tage=18..<65\n3\tage=65..\n4\ttown=Bonn\n5\ttown=NA\n6\tspeaks=de\n"
              "7\tspeaks=en\n8\tspeaks=fr\n");
    // Item 2 is in the lines 2 and 3, 6 in 1 and 4, 7 in 1 and 2; each other one in a single line.
    EXPECT_EQ(files().at("a.classes"),
              "1\t1\t 1,\n4\t1\t 4,\n5\t1\t 5,\n3 8\t1\t 3, 8,\n1 4 7\t2\t 7,\n2 4 5\t2\t 2,\n"
              "1 3 6 8\t2\t 6,\n");
}

TEST_F(KorvMine, MakesItemsOfColumnsWhoseCellsAreTrue) {
    put("a.csv", "milk,bread,tea\n1,0,no\nyes,X,\n,true,F\n");
    EXPECT_EQ(mine({"a.csv", "-s", "1", "-q", "--only-true", "-o", "a.classes"}).err, "");
    EXPECT_EQ(files().at("a.names"), "1\tmilk\n2\tbread\n");
    EXPECT_EQ(files().at("a.classes"), "1\t2\t 1,\n2\t2\t 2,\n1 2\t3\t 1 2,\n");
}

TEST_F(KorvMine, SaysWhichColumnsAreNotCutAndWhichAreTwins) {
    put("a.csv", "survived,alive,age\n0,no,1\n1,yes,2\n1,yes,n/a\n0,no,3\n");
    const std::string said = mine({"a.csv", "-s", "1", "--bins", "2"}).err;
    EXPECT_NE(said.find("\nNot cut: column \"age\", since \"n/a\" in a.csv:4:7 is no number"),
              std::string::npos)
        << said;
    EXPECT_NE(said.find("\nThe columns \"survived\" and \"alive\" have their items in the same transactions"),
              std::string::npos)
        << said;
}

TEST_F(KorvMine, RefusesTablesWithDifferentHeaders) {
    put("a.csv", "kind,age\nx,1\n");
    put("b.csv", "kind,size\nx,1\n");
    const Outcome outcome = mine({"a.csv", "b.csv", "--format", "table", "-s", "1", "-o", "a.classes"});
    EXPECT_EQ(outcome.ending, exited(1));
    EXPECT_EQ(outcome.err,
              "korv-mine: b.csv:1:6: found \"size\"; expected \"age\", as in the header of a.csv\n");
    EXPECT_EQ(files().size(), 2U);
}

TEST_F(KorvMine, RefusesNamesThatATerminalWouldObeyOrThatAreNotUtf8) {
    put("a.csv", "milk,tea\nmilk,\x1B[2J\n");
    const Outcome control = mine({"a.csv", "--format", "basket", "-s", "1", "-o", "a.classes"});
    EXPECT_EQ(control.ending, exited(1));
    EXPECT_EQ(control.err,
              "korv-mine: a.csv:2:6: found \"\\x1B[2J\"; expected a name without control characters, such as "
              "tabs and line ends\n");
    put("a.csv", "town,n\nK\xF6ln,1\n");
    const Outcome latin = mine({"a.csv", "--format", "table", "-s", "1", "-o", "a.classes"});
    EXPECT_EQ(latin.ending, exited(1));
    EXPECT_EQ(latin.err,
              "korv-mine: a.csv:2:2: found \"K\\xF6ln\"; expected a name in UTF-8 (iconv converts other "
              "encodings); --ignore leaves the column \"town\" out\n");
    EXPECT_EQ(files().size(), 1U);
}

TEST_F(KorvMine, KeepsNamesAndClassesApartWhereStandardStreamsAreClosed) {
    put("a.csv", small_baskets);
    EXPECT_EQ(shell("exec \"$0\" a.csv --format basket -s 1 -o a.classes <&- >&- 2>&-").ending, exited(0));
    EXPECT_EQ(
        files(),
        (Files{{"a.csv", small_baskets}, {"a.classes", small_basket_classes}, {"a.names", small_names}}));
}

TEST_F(KorvMine, DoesNotReadDirectories) {
    const Outcome outcome = mine({".", "-s", "1", "-o", "a.classes"});
    EXPECT_EQ(outcome.ending, exited(1));
    EXPECT_EQ(outcome.err, "korv-mine: .: cannot be read: Is a directory\n");
    EXPECT_TRUE(files().empty());
}

}  // namespace
}  // namespace korv::test
