#include "app/lattice.h"

#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#include "app/globals.h"
#include "support/lattice_fixture.h"

namespace korv {
namespace {

using test::read_file;
using test::write_file;

/// Two classes that are no successors of each other, without essentials: no rule at all.
constexpr auto classes_without_rules =
    "1\t3\t 1,\n"
    "2\t2\t 2,\n";

/// With 10 transactions, minsupp 1 and minconf 0.1 (all classes have two items, so none has a successor):
///
/// - {1 2}: {2} is the other essential, so r = 5 = s: R112, R111, R211 and R212, all exact.
/// - {5 6}: {6} is between 0 and 4: R211 exact, R212 approximated.
/// - {7 8}: {8} is an essential of {8 9} and contained in it, so r = 2: R112 and R211 exact, R111, R212, R311
///   and R412 approximative.
/// - {8 9}: {9} is between 0 and 2: R211 exact, R212 approximated.
///
/// Together 8 exact, 4 approximative, 2 approximated.
constexpr auto classes_with_rules =
    "1 2\t5\t 1, 2,\n"
    "5 6\t4\t 5,\n"
    "7 8\t6\t 7,\n"
    "8 9\t2\t 8,\n";

constexpr test::RunSettings settings_of_rules = {.minsupp = 1, .minconf = 0.1, .transactions = 10};

class LatticeRun : public test::LatticeFixture {
protected:
    /// What the whole run over `classes` prints on standard output.
    std::string console(const std::string& classes, const test::RunSettings& settings = {}) {
        return console(make_lattice(classes, settings));
    }

    static std::string console(Lattice& lattice) {
        testing::internal::CaptureStdout();
        lattice.LATTICE();
        return testing::internal::GetCapturedStdout();
    }

    static std::vector<std::string> output_files() { return {S1, S2, S3, S4, S6, S5}; }

    /// The bytes of all output files as they are on disk.
    static std::vector<std::string> on_disk() {
        std::vector<std::string> contents;
        for (const std::string& name : output_files()) {
            contents.push_back(read_file(name));
        }
        return contents;
    }
};

using LatticeConstruction = LatticeRun;

const std::vector<std::string> six_empty_files(6);

TEST_F(LatticeConstruction, CreatesSixEmptyFiles) {
    make_lattice(classes_with_rules);
    EXPECT_EQ(on_disk(), six_empty_files);
}

TEST_F(LatticeConstruction, EmptiesTheFilesOfAnEarlierRun) {
    for (const std::string& name : output_files()) {
        write_file(name, "of an earlier run\n");
    }
    make_lattice(classes_with_rules);
    EXPECT_EQ(on_disk(), six_empty_files);
}

TEST_F(LatticeConstruction, EmptiesTheLatticeFileOfARunWithAnotherMinconf) {
    console(classes_without_rules, {.minconf = 0.1});
    ASSERT_NE(lattice_file(), "");
    for (std::string* const name : {&S1, &S2, &S3, &S4, &S6}) {
        *name += "_0.9";
    }
    make_lattice(classes_without_rules, {.minconf = 0.9});
    EXPECT_EQ(read_file(S5), "");
}

TEST_F(LatticeConstruction, CreatesTheLatticeFileLast) {
    const std::filesystem::path directory = std::filesystem::path(S1).parent_path();
    const int watcher = inotify_init1(IN_NONBLOCK);
    if (watcher < 0 || inotify_add_watch(watcher, directory.c_str(), IN_CREATE) < 0) {
        GTEST_SKIP() << "this system does not report the creation of files";
    }
    make_lattice(classes_with_rules);

    alignas(inotify_event) std::array<char, 8192> events{};
    const ssize_t size = read(watcher, events.data(), events.size());
    close(watcher);
    std::vector<std::string> created;
    for (const char* at = events.data(); at < events.data() + size;) {
        const auto* const event = reinterpret_cast<const inotify_event*>(at);
        created.push_back((directory / event->name).string());
        at += sizeof(inotify_event) + event->len;
    }
    EXPECT_EQ(created, output_files());
}

TEST_F(LatticeConstruction, StartsWithoutRulesAndClasses) {
    const Lattice& lattice = make_lattice(classes_with_rules);
    for (const auto& row : lattice.rule_counts.counters) {
        EXPECT_EQ(row, (std::array<Count, 3>{0, 0, 0}));
    }
    EXPECT_EQ(lattice.rule_counts.counters.size(), 24U);
    EXPECT_EQ(lattice.rule_counts.exact_total, 0U);
    EXPECT_EQ(lattice.rule_counts.appro_total, 0U);
    EXPECT_EQ(lattice.rule_counts.apped_total, 0U);
    EXPECT_TRUE(lattice.dci_map.empty());
    EXPECT_TRUE(lattice.hash_table.empty());
    EXPECT_TRUE(lattice.visited.empty());
    EXPECT_TRUE(lattice.frontier.empty());
}

TEST_F(LatticeConstruction, KeepsTheThresholds) {
    const Lattice& lattice = make_lattice("", {.minsupp = 4294967295U, .minconf = 0.25});
    EXPECT_EQ(lattice.minsupp, 4294967295U);
    EXPECT_EQ(lattice.minconf, 0.25);
}

TEST_F(LatticeConstruction, ReadsNothing) {
    std::istringstream input(classes_with_rules);
    const Lattice lattice(input, 0.5, 1);
    EXPECT_EQ(input.tellg(), std::streampos(0));
}

TEST_F(LatticeConstruction, FileThatCannotBeCreatedIsNotReported) {
    S1 += "/missing/intra_exact.txt";
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const Lattice& lattice = make_lattice(classes_with_rules);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_TRUE(lattice.intra_exact_out.fail());
    EXPECT_EQ(read_file(S6), "");
}

TEST_F(LatticeConstruction, DestructionCompletesAllFiles) {
    std::istringstream input;
    {
        Lattice lattice(input, 0.5, 1);
        lattice.intra_exact_out << "1\n";
        lattice.intra_approx_out << "2\n";
        lattice.inter_exact_out << "3\n";
        lattice.inter_approx_out << "4\n";
        lattice.number_rules_out << "6\n";
        lattice.lattice_io << "5\n";
    }
    EXPECT_EQ(on_disk(), (std::vector<std::string>{"1\n", "2\n", "3\n", "4\n", "6\n", "5\n"}));
}

// The console.

TEST_F(LatticeRun, PrintsALineAfterEachStageAndTheSummary) {
    EXPECT_EQ(console(classes_with_rules, settings_of_rules),
              "\n"
              "DCI loaded\n"
              " hash_table loaded\n"
              " Lattice built\n"
              " Lattice written\n"
              " Size of the map: 4\n"
              " Closed itemsets processed\n"
              " Rules generted \n"
              "Number of exact rules: 8\n"
              "Number of approximative rules: 4\n"
              "Number of approximated rules: 2\n"
              "x=8   y=4  z=2\n");
}

TEST_F(LatticeRun, PrintsTheSameLinesWithoutRules) {
    EXPECT_EQ(console(classes_without_rules),
              "\n"
              "DCI loaded\n"
              " hash_table loaded\n"
              " Lattice built\n"
              " Lattice written\n"
              " Size of the map: 2\n"
              " Closed itemsets processed\n"
              " Rules generted \n"
              "Number of exact rules: 0\n"
              "Number of approximative rules: 0\n"
              "Number of approximated rules: 0\n"
              "x=0   y=0  z=0\n");
}

TEST_F(LatticeRun, SizeOfTheMapCountsClassesBelowMinsuppAndRepeatedOnesOnce) {
    EXPECT_NE(console("1\t3\t 1,\n2\t2\t 2,\n1\t4\t 1,\n", {.minsupp = 100}).find("\n Size of the map: 2\n"),
              std::string::npos);
}

/// The console summary: all that follows the last line of progress.
std::string summary(const std::string& console) {
    const std::string last_line_of_progress = " Rules generted \n";
    return console.substr(console.find(last_line_of_progress) + last_line_of_progress.size());
}

TEST_F(LatticeRun, PrintsTotalsAndColumnSumsEvenWhenTheyDiffer) {
    Lattice& lattice = make_lattice(classes_without_rules);
    lattice.rule_counts.exact_total = 1;
    lattice.rule_counts.appro_total = 2;
    lattice.rule_counts.apped_total = 4294967295U;
    lattice.rule_counts.counters.front() = {10, 20, 30};
    lattice.rule_counts.counters.back() = {1, 2, 3};
    EXPECT_EQ(summary(console(lattice)),
              "Number of exact rules: 1\n"
              "Number of approximative rules: 2\n"
              "Number of approximated rules: 4294967295\n"
              "x=11   y=22  z=33\n");
}

TEST_F(LatticeRun, ColumnSumsWrapAt32Bits) {
    Lattice& lattice = make_lattice(classes_without_rules);
    lattice.rule_counts.counters[0] = {4294967295U, 0, 0};
    lattice.rule_counts.counters[1] = {3, 0, 0};
    EXPECT_EQ(summary(console(lattice)),
              "Number of exact rules: 0\n"
              "Number of approximative rules: 0\n"
              "Number of approximated rules: 0\n"
              "x=2   y=0  z=0\n");
}

TEST_F(LatticeRun, PrintsNothingOnStandardError) {
    testing::internal::CaptureStderr();
    console(classes_with_rules, settings_of_rules);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(LatticeRun, WithoutRulesTheRuleCountFileHasNoPercentages) {
    console(classes_without_rules);
    const std::string start =
        "Number of exact rules: 0\n"
        "Number of appro rules: 0\n"
        "Number of apped rules: 0\n"
        "\n"
        "Total number of rules: 0\n"
        "\n"
        "\n"
        "---------------------------------------------------------------\n";
    EXPECT_EQ(rule_counts_file().substr(0, start.size()), start);
}

TEST_F(LatticeRun, GoesOnWhenAFileCannotBeCreated) {
    S5 += "/missing/Lattice.txt";
    EXPECT_EQ(summary(console(classes_with_rules, settings_of_rules)),
              "Number of exact rules: 8\n"
              "Number of approximative rules: 4\n"
              "Number of approximated rules: 2\n"
              "x=8   y=4  z=2\n");
    EXPECT_NE(intra_exact(), "");
}

// When things happen. Each test looks at the state at the moment when a line is on the console.

/// Stands in for the console: calls an observer with all text so far whenever the console is flushed.
class WatchedConsole : public std::stringbuf {
public:
    explicit WatchedConsole(std::function<void(const std::string&)> observer)
        : observer_(std::move(observer)), console_(std::cout.rdbuf(this)) {}
    ~WatchedConsole() override { std::cout.rdbuf(console_); }

private:
    int sync() override {
        observer_(str());
        return 0;
    }

    std::function<void(const std::string&)> observer_;
    std::streambuf* console_;
};

class LatticeProgress : public LatticeRun {
protected:
    /// Runs, and calls `look` once, when the console just showed `line`.
    void when_shown(const std::string& line, const std::function<void()>& look) {
        Lattice& lattice = make_lattice(classes_with_rules, settings_of_rules);
        bool shown = false;
        {
            const WatchedConsole console([&](const std::string& text) {
                if (!shown && text.ends_with(line)) {
                    shown = true;
                    look();
                }
            });
            lattice.LATTICE();
        }
        EXPECT_TRUE(shown) << line;
    }
};

TEST_F(LatticeProgress, EveryLineIsFlushed) {
    std::string flushed;
    Lattice& lattice = make_lattice(classes_with_rules, settings_of_rules);
    {
        // A flush that shows more than one new line, or half a line, came too late or too early.
        const WatchedConsole console([&](const std::string& text) {
            const std::string news = text.substr(flushed.size());
            const auto lines = std::count(news.begin(), news.end(), '\n');
            EXPECT_TRUE(lines <= 1 || news == "\nDCI loaded\n") << news;
            flushed = text;
        });
        lattice.LATTICE();
    }
    EXPECT_TRUE(flushed.ends_with("x=8   y=4  z=2\n")) << flushed;
}

TEST_F(LatticeProgress, FilesAreEmptyBeforeTheLatticeIsBuilt) {
    std::vector<std::string> seen;
    when_shown(" Lattice built\n", [&] { seen = on_disk(); });
    EXPECT_EQ(seen, six_empty_files);
}

TEST_F(LatticeProgress, LatticeFileIsWholeWhenItIsAnnounced) {
    std::string seen;
    when_shown(" Lattice written\n", [&] { seen = read_file(S5); });
    EXPECT_TRUE(
        seen.ends_with("DCP:  8 9 \n"
                       "Disjonctive support: 2\n"
                       "les essentiels:  8  ; \n"
                       "les successeurs: VIDE\n"
                       "\n"))
        << seen;
}

TEST_F(LatticeProgress, RuleFilesAreBegunAfterTheClosedItemsetsAreProcessed) {
    std::vector<std::string> seen;
    when_shown(" Closed itemsets processed\n", [&] {
        seen = {read_file(S1), read_file(S2), read_file(S3), read_file(S4)};
    });
    EXPECT_EQ(seen, std::vector<std::string>(4));
}

TEST_F(LatticeProgress, RuleFilesAreWholeWhenTheyAreAnnounced) {
    std::string exact;
    std::string approx;
    when_shown(" Rules generted \n", [&] {
        exact = read_file(S1);
        approx = read_file(S2);
    });
    EXPECT_TRUE(exact.ends_with("not(8)-->not(9)\nsupport:8\n\n")) << exact;
    EXPECT_TRUE(
        approx.ends_with("not(9)-->not(8)\n"
                         "support:8\n"
                         "\n"
                         "0.8< confiance <1\n"
                         "---------------------------\n"))
        << approx;
}

TEST_F(LatticeProgress, InterNodeFilesHoldTheirHeadersWhenRulesAreAnnounced) {
    std::vector<std::string> seen;
    when_shown(" Rules generted \n", [&] { seen = {read_file(S3), read_file(S4)}; });
    const std::string stars = "\t\t\t******************************************\n";
    EXPECT_EQ(seen, (std::vector<std::string>{
                        stars + "\t\t\t***   Regles exactes inter noeuds     ***\n" + stars,
                        stars + "\t\t\t*** Regles approximatives inter noeuds ***\n" + stars}));
}

TEST_F(LatticeProgress, RuleCountFileIsWrittenAfterTheRules) {
    std::string seen = "not looked at";
    when_shown(" Rules generted \n", [&] { seen = read_file(S6); });
    EXPECT_EQ(seen, "");
}

TEST_F(LatticeProgress, RuleCountFileIsWholeBeforeTheSummary) {
    std::string seen;
    when_shown("Number of exact rules: 8\n", [&] { seen = read_file(S6); });
    EXPECT_TRUE(
        seen.ends_with("Number of apped rules: 2\n"
                       "Number of apped rules: 2\n"
                       "\n"
                       "**********************************************************************\n"
                       "\n"))
        << seen;
}

TEST_F(LatticeProgress, TimeStampIsNotTakenBeforeTheLatticeIsBuilt) {
    en1 = -1.0;
    double seen = 0.0;
    when_shown(" Lattice built\n", [&] { seen = en1; });
    EXPECT_EQ(seen, -1.0);
}

/// Stands in for the lattice file: notes the time stamp of the run whenever text arrives.
class WatchedLatticeFile : public std::streambuf {
public:
    std::vector<double> seen;

private:
    std::streamsize xsputn(const char* /*text*/, std::streamsize size) override {
        seen.push_back(en1);
        return size;
    }
    int_type overflow(int_type c) override {
        seen.push_back(en1);
        return traits_type::not_eof(c);
    }
    int sync() override {
        seen.push_back(en1);
        return 0;
    }
};

TEST_F(LatticeProgress, TimeStampIsNotTakenWhileTheLatticeFileIsWritten) {
    en1 = -1.0;
    Lattice& lattice = make_lattice(classes_with_rules, settings_of_rules);
    WatchedLatticeFile file;
    std::streambuf* const own = lattice.lattice_io.basic_ios<char>::rdbuf(&file);
    console(lattice);
    lattice.lattice_io.basic_ios<char>::rdbuf(own);
    ASSERT_FALSE(file.seen.empty());
    EXPECT_EQ(file.seen, std::vector(file.seen.size(), -1.0));
}

TEST_F(LatticeProgress, TimeStampIsTakenOnceWhenTheLatticeFileIsWritten) {
    en1 = -1.0;
    double seen = 0.0;
    when_shown(" Lattice written\n", [&] { seen = en1; });
    EXPECT_GT(seen, 0.0);
    EXPECT_EQ(en1, seen);
}

// Without any class.

class EmptyClassFile : public LatticeRun {
protected:
    void run() { make_lattice("").LATTICE(); }
};

TEST_F(EmptyClassFile, EndsWithStatus2AndTwoMessages) {
    EXPECT_EXIT(run(), testing::ExitedWithCode(2),
                testing::Eq("Erreur: le nombre de classes doit \xEF\xBF\xBDtre non null"
                            "Arr\xEF\xBF\xBDt du programme"));
}

TEST_F(EmptyClassFile, GetsAsFarAsTheLoadedHashTable) {
    const auto run_with_outputs_joined = [this] {
        dup2(STDERR_FILENO, STDOUT_FILENO);
        run();
    };
    EXPECT_EXIT(run_with_outputs_joined(), testing::ExitedWithCode(2),
                testing::Eq("\n"
                            "DCI loaded\n"
                            " hash_table loaded\n"
                            "Erreur: le nombre de classes doit \xEF\xBF\xBDtre non null"
                            "Arr\xEF\xBF\xBDt du programme"));
}

TEST_F(EmptyClassFile, LeavesSixEmptyFiles) {
    make_lattice("");
    const auto run_over_the_same_files = [this] { make_lattice("").LATTICE(); };
    EXPECT_EXIT(run_over_the_same_files(), testing::ExitedWithCode(2), "");
    EXPECT_EQ(on_disk(), six_empty_files);
}

TEST_F(EmptyClassFile, ClassesAfterARecordWithoutItemsDoNotCount) {
    const auto run_over_hidden_class = [this] { make_lattice("\t5\t ,\n1\t3\t 1,\n").LATTICE(); };
    EXPECT_EXIT(run_over_hidden_class(), testing::ExitedWithCode(2), "");
}

// Order of nodes.

TEST(LatticeLess, OrdersNodesLexicographically) {
    const std::map<Itemset, data> classes = {{{1, 2}, {}}, {{1, 2, 5}, {}}, {{1, 3}, {}},
                                             {{2}, {}},    {{10}, {}},      {{4294967295U}, {}}};
    const Lattice::less less;
    const auto precedes = [&](const Itemset& a, const Itemset& b) {
        return less(classes.find(a), classes.find(b)) && !less(classes.find(b), classes.find(a));
    };
    EXPECT_TRUE(precedes({1, 2}, {1, 2, 5}));
    EXPECT_TRUE(precedes({1, 2, 5}, {1, 3}));
    EXPECT_TRUE(precedes({2}, {10}));
    EXPECT_TRUE(precedes({10}, {4294967295U}));
}

TEST(LatticeLess, NoNodePrecedesItself) {
    const std::map<Itemset, data> classes = {{{1, 2}, {}}};
    EXPECT_FALSE(Lattice::less()(classes.begin(), classes.begin()));
}

}  // namespace
}  // namespace korv
