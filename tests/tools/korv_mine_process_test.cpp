// korv-mine as a process: files, streams, exit statuses, signals.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>

#include <csignal>

#include "tools/korv_mine_run.h"

namespace korv::test {
namespace {

/// 10,000 transactions of one item each, and so as many classes: more than a pipe holds.
std::string many_items() {
    std::string transactions;
    for (int item = 0; item < 10'000; ++item) {
        transactions += std::to_string(item) + '\n';
    }
    return transactions;
}

TEST_F(KorvMine, WritesAClassFile) {
    put("a.dat", small_database);
    const Outcome outcome = mine({"a.dat", "-s", "1", "-o", "a.classes"});
    EXPECT_EQ(outcome.ending, exited(0));
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(files().at("a.classes"), small_classes);
    EXPECT_EQ(files().size(), 2U);
}

TEST_F(KorvMine, SumsUpOnStandardErrorUnlessItIsToBeQuiet) {
    put("a.dat", small_database);
    const std::string said = mine({"a.dat", "-s", "20%", "-o", "a.classes"}).err;
    EXPECT_TRUE(
        said.starts_with("input               fimi (guessed from whole numbers with blanks between them)\n"
                         "transactions        5\n"))
        << said;
    EXPECT_TRUE(said.ends_with("To derive rules: korv a a.classes 1 0.8 5\n")) << said;
    EXPECT_EQ(mine({"a.dat", "-s", "1", "-o", "a.classes", "-q"}).err, "");
}

TEST_F(KorvMine, WritesToStandardOutputWithoutAnOutputFile) {
    put("a.dat", small_database);
    EXPECT_EQ(mine({"a.dat", "-s", "1", "-q"}).out, small_classes);
    EXPECT_EQ(mine({"a.dat", "-s", "1", "-q", "-o", "-"}).out, small_classes);
}

TEST_F(KorvMine, ReadsStandardInput) {
    put("a.dat", small_database);
    const Descriptor in = open_file(directory_.path() / "a.dat", O_RDONLY);
    Channel out = make_pipe();
    const Descriptor err = open_file("/dev/null", O_WRONLY);
    Process process({KORV_MINE_PROGRAM, {"-", "-s", "1"}, directory_.path()}, in, out.write, err);
    out.write.close();
    EXPECT_EQ(read_to_end(out.read), small_classes);
    EXPECT_EQ(process.wait(), exited(0));
}

TEST_F(KorvMine, TakesOptionsForSizeAndClosure) {
    put("a.dat", small_database);
    EXPECT_EQ(mine({"a.dat", "-s", "3", "-q"}).out, "2\t3\t 2,\n3\t3\t 3,\n");
    EXPECT_EQ(mine({"a.dat", "-s", "3", "-q", "--closure-items", "all"}).out, "1 3\t3\t 3,\n2 4\t3\t 2,\n");
    EXPECT_EQ(mine({"a.dat", "-s", "1", "-q", "--max-size", "1"}).out,
              "1\t2\t 1,\n4\t2\t 4,\n1 3\t3\t 3,\n2 4\t3\t 2,\n");
}

TEST_F(KorvMine, ReadsBasketsAndWritesTheNamesBesideTheClasses) {
    put("a.csv", small_baskets);
    EXPECT_EQ(mine({"a.csv", "--format", "basket", "-s", "1", "-q", "-o", "a.classes"}).ending, exited(0));
    EXPECT_EQ(
        files(),
        (Files{{"a.csv", small_baskets}, {"a.classes", small_basket_classes}, {"a.names", small_names}}));
}

TEST_F(KorvMine, WritesTheNamesWhereItIsTold) {
    put("a.csv", small_baskets);
    EXPECT_EQ(mine({"a.csv", "--format", "basket", "-s", "1", "-q", "--names", "b.txt"}).out,
              small_basket_classes);
    EXPECT_EQ(files(), (Files{{"a.csv", small_baskets}, {"b.txt", small_names}}));
}

TEST_F(KorvMine, ReadsTablesWithAnySeparatorAndBins) {
    put("a.csv", "kind;age\nx;1\nx;2\ny;3\ny;4\n");
    const Outcome outcome = mine({"-s", "50%", "-q", "-o", "a.classes", "--format", "table", "--separator",
                                  ";", "--bins", "age=2", "a.csv"});
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(files().at("a.names"), "1\tkind=x\n2\tkind=y\n3\tage=1..2\n4\tage=3..4\n");
    EXPECT_EQ(files().at("a.classes"), "1 3\t2\t 1, 3,\n2 4\t2\t 2, 4,\n");
}

TEST_F(KorvMine, SeesTheFormatAndTheSeparatorItself) {
    put("a.csv", "kind;age\nx;1\nx;2\ny;3\ny;4\n");
    const Outcome table = mine({"-s", "2", "-q", "-o", "a.classes", "--bins", "age=2", "a.csv"});
    EXPECT_EQ(table.err, "");
    EXPECT_EQ(files().at("a.names"), "1\tkind=x\n2\tkind=y\n3\tage=1..2\n4\tage=3..4\n");
    EXPECT_EQ(files().at("a.classes"), "1 3\t2\t 1, 3,\n2 4\t2\t 2, 4,\n");
    put("b.csv", "milk|bread\nbread\n");
    EXPECT_EQ(mine({"-s", "1", "-q", "--names", "b.names", "b.csv"}).out, "1\t1\t 1,\n1 2\t2\t 2,\n");
    EXPECT_EQ(files().at("b.names"), "1\tmilk\n2\tbread\n");
}

TEST_F(KorvMine, ReadsSeveralFilesAndStandardInputAsOne) {
    put("a.dat", "1 3\n1 3\n");
    put("b.dat", "2 4\n2 4");
    const Outcome outcome = run({"/bin/sh",
                                 {"-c", "echo '2 3' | \"$0\" a.dat - b.dat -s 1 -q", KORV_MINE_PROGRAM},
                                 directory_.path()});
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, small_classes);
}

TEST_F(KorvMine, WritesNoFileOverAnyOfItsInputs) {
    put("a.dat", small_database);
    put("b.dat", small_database);
    EXPECT_EQ(mine({"a.dat", "b.dat", "-s", "1", "-o", "b.dat"}).ending, exited(1));
    EXPECT_EQ(files(), (Files{{"a.dat", small_database}, {"b.dat", small_database}}));
}

TEST_F(KorvMine, WritesNoNamesAfterAnError) {
    put("a.csv", small_baskets);
    EXPECT_EQ(mine({"a.csv", "--format", "basket", "-s", "4", "-o", "a.classes"}).ending, exited(1));
    EXPECT_EQ(files().size(), 1U);
}

TEST_F(KorvMine, RefusesToReplaceItsInputOrOneOutputByTheOther) {
    put("a.csv", small_baskets);
    for (const std::vector<std::string>& paths :
         std::vector<std::vector<std::string>>{{"-o", "a.csv"},
                                               {"-o", "./a.csv"},
                                               {"--names", "a.csv"},
                                               {"-o", "a.names"},
                                               {"-o", "x", "--names", "./x"},
                                               {"--names", "-"}}) {
        std::vector<std::string> arguments = {"a.csv", "--format", "basket", "-s", "1"};
        arguments.insert(arguments.end(), paths.begin(), paths.end());
        const Outcome outcome = mine(arguments);
        EXPECT_EQ(outcome.ending, exited(1)) << testing::PrintToString(paths);
        EXPECT_TRUE(outcome.err.ends_with("; expected two files\n")) << outcome.err;
        EXPECT_EQ(files(), (Files{{"a.csv", small_baskets}})) << testing::PrintToString(paths);
    }
}

TEST_F(KorvMine, WritesNoNamesWhereTheClassesCannotBeWritten) {
    put("a.csv", small_baskets);
    EXPECT_EQ(mine({"a.csv", "--format", "basket", "-s", "1", "-o", "/dev/full", "--names", "n"}).ending,
              exited(1));
    EXPECT_EQ(files(), (Files{{"a.csv", small_baskets}}));
}

TEST_F(KorvMine, ReplacesAnEarlierFileOnlyByAWholeOne) {
    put("a.dat", "1 2\nx\n");
    put("a.classes", "earlier");
    const Outcome outcome = mine({"a.dat", "-s", "1", "-o", "a.classes"});
    EXPECT_EQ(outcome.ending, exited(1));
    EXPECT_EQ(outcome.err, "korv-mine: a.dat:2:1: found \"x\"; expected an item number\n");
    EXPECT_EQ(files(), (Files{{"a.dat", "1 2\nx\n"}, {"a.classes", "earlier"}}));
}

TEST_F(KorvMine, LeavesNoFileBehindAfterAnError) {
    put("a.dat", small_database);
    const Outcome outcome = mine({"a.dat", "-s", "4", "-o", "a.classes"});
    EXPECT_EQ(outcome.ending, exited(1));
    EXPECT_EQ(outcome.err,
              "korv-mine: --min-support: no item is in 4 transactions; the most frequent one is in 3\n");
    EXPECT_EQ(files().size(), 1U);
}

TEST_F(KorvMine, ReportsAFileThatCannotBeRead) {
    EXPECT_EQ(mine({"missing.dat", "-s", "1"}).err,
              "korv-mine: missing.dat: cannot be read: No such file or directory\n");
}

TEST_F(KorvMine, ReportsAFullDisk) {
    put("a.dat", small_database);
    const Outcome outcome = mine({"a.dat", "-s", "1", "-o", "/dev/full"});
    EXPECT_EQ(outcome.ending, exited(1));
    EXPECT_EQ(outcome.err, "korv-mine: /dev/full: cannot be written: No space left on device\n");
}

TEST_F(KorvMine, ReportsAFileThatGrowsBeyondItsLimit) {
    put("a.dat", many_items());  // of more than the 1 KiB that a file may have
    const Outcome outcome = shell("ulimit -f 1; exec \"$0\" a.dat -s 1 -o a.classes");
    EXPECT_EQ(outcome.ending, exited(1));
    EXPECT_EQ(outcome.err, "korv-mine: a.classes: cannot be written: File too large\n");
    EXPECT_EQ(files().size(), 1U);
}

TEST_F(KorvMine, ReportsThatTheMemoryIsExhausted) {
    const std::string limit = "ulimit -v 90000; ";  // KiB
    if (shell(limit + "exec \"$0\" --version").ending != exited(0)) {
        GTEST_SKIP() << "Sanitizers need more memory than this test has.";
    }
    put("a.dat", large_database());
    const Outcome mined = shell(limit + "exec \"$0\" a.dat -s 1 -q -o a.classes");
    EXPECT_EQ(mined.ending, exited(1));
    EXPECT_TRUE(mined.err.starts_with("korv-mine: out of memory after ")) << mined.err;
    EXPECT_TRUE(mined.err.ends_with(" classes\n")) << mined.err;
    std::string empty_lines;
    empty_lines.resize(60'000'000, '\n');
    put("a.dat", empty_lines);
    EXPECT_EQ(shell(limit + "exec \"$0\" a.dat -s 1 -q -o a.classes").err,
              "korv-mine: out of memory while reading a.dat\n");
    EXPECT_EQ(files().size(), 1U);
}

/// A file system of 16 KiB with an earlier class file and earlier names. The script runs there, and then says
/// what is left.
Outcome on_a_small_disk(const std::filesystem::path& directory, const std::string& script) {
    const std::string small =
        "mkdir -p small && mount -t tmpfs -o size=16k tmpfs small && cd small || exit 9\n"
        "printf 'earlier classes\\n' > a.classes; printf 'earlier names\\n' > a.names\n" +
        script + "\nstatus=$?; ls -A; cat a.classes a.names; exit $status";
    return run({"/usr/bin/unshare", {"-r", "-m", "/bin/bash", "-c", small, KORV_MINE_PROGRAM}, directory});
}

TEST_F(KorvMine, LeavesBothFilesAsTheyWereWhereTheDiskIsFull) {
    if (on_a_small_disk(directory_.path(), ":").ending != exited(0)) {
        GTEST_SKIP() << "This test needs to mount a file system.";
    }
    const std::string earlier = "a.classes\na.names\nearlier classes\nearlier names\n";
    put("many.dat", many_items());
    const Outcome classes = on_a_small_disk(
        directory_.path(), "\"$0\" ../many.dat --format basket -s 1 -q -o a.classes --names /dev/null");
    EXPECT_EQ(classes.ending, exited(1));
    EXPECT_EQ(classes.err, "korv-mine: a.classes: cannot be written: No space left on device\n");
    EXPECT_EQ(classes.out, earlier);
    // One class, and a name that is longer than the disk.
    put("long.dat", std::string(20'000, 'n') + '\n');
    const Outcome names =
        on_a_small_disk(directory_.path(), "\"$0\" ../long.dat --format basket -s 1 -q -o a.classes");
    EXPECT_EQ(names.ending, exited(1));
    EXPECT_EQ(names.err, "korv-mine: a.names: cannot be written: No space left on device\n");
    EXPECT_EQ(names.out, earlier);
}

TEST_F(KorvMine, ReportsAFileOnWhichAnotherIsMounted) {
    put("a.dat", small_database);
    put("out", "earlier");
    const std::string script = "mount --bind out out || exit 9; exec \"$0\" a.dat -s 1 -q -o out";
    const Outcome outcome = run(
        {"/usr/bin/unshare", {"-r", "-m", "/bin/bash", "-c", script, KORV_MINE_PROGRAM}, directory_.path()});
    if (outcome.err.find("korv-mine") == std::string::npos) {
        GTEST_SKIP() << "This test needs to mount a file.";
    }
    EXPECT_EQ(outcome.err, "korv-mine: out: is a mount point, which cannot be replaced\n");
    EXPECT_EQ(files().at("out"), "earlier");
}

TEST_F(KorvMine, DoesNotWriteItsSummaryIntoTheClassesWhereStandardErrorIsClosed) {
    put("a.dat", small_database);
    EXPECT_EQ(shell("exec \"$0\" a.dat -s 1 -o a.classes 2>&-").ending, exited(0));
    EXPECT_EQ(files().at("a.classes"), small_classes);
    EXPECT_EQ(shell("exec \"$0\" a.dat -s 1 -o b.classes <&- >&- 2>&-").ending, exited(0));
    EXPECT_EQ(files().at("b.classes"), small_classes);
}

TEST_F(KorvMine, ReportsStandardStreamsThatAreClosed) {
    put("a.dat", small_database);
    const Outcome in = shell("exec \"$0\" - -s 1 -o a.classes <&-");
    EXPECT_EQ(in.ending, exited(1));
    EXPECT_EQ(in.err, "korv-mine: standard input: cannot be read: Bad file descriptor\n");
    const Outcome out = shell("exec \"$0\" a.dat -s 1 >&-");
    EXPECT_EQ(out.ending, exited(1));
    EXPECT_EQ(out.err, "korv-mine: standard output: is closed or not open for writing\n");
    EXPECT_EQ(files().size(), 1U);
}

TEST_F(KorvMine, DoesNotReplaceItsInputByWayOfRedirections) {
    put("a.dat", small_database);
    for (const char* const words :
         {"- -o a.dat < a.dat", "/dev/stdin -o a.dat < a.dat", "a.dat -o /dev/stdout 1<>a.dat",
          "a.dat -o /dev/stdout >> a.dat", "- < a.dat >> a.dat", "a.dat -o /dev/fd/5 5>> a.dat"}) {
        const Outcome outcome = shell(std::string("exec \"$0\" -s 1 -q ") + words);
        EXPECT_EQ(outcome.ending, exited(1)) << words;
        EXPECT_TRUE(
            outcome.err.ends_with(": is both the input and the class file (-o); expected two files\n"))
            << outcome.err;
        EXPECT_EQ(files(), (Files{{"a.dat", small_database}})) << words;
    }
}

TEST_F(KorvMine, AppendsWhereStandardOutputIsAppendedTo) {
    put("a.dat", small_database);
    put("all", "earlier\n");
    EXPECT_EQ(shell("exec \"$0\" a.dat -s 1 -q -o /dev/stdout >> all").ending, exited(0));
    EXPECT_EQ(files().at("all"), "earlier\n" + small_classes);
    EXPECT_EQ(files().size(), 2U);
}

TEST_F(KorvMine, ShowsNamesOfFilesWithoutWhatATerminalWouldObey) {
    put("a.dat", small_database);
    EXPECT_EQ(mine({"\x1B[2J", "-s", "1"}).err,
              "korv-mine: \\x1B[2J: cannot be read: No such file or directory\n");
    EXPECT_EQ(mine({"a.dat", "-s", "1", "--format", "\x1B[2J"}).err.find('\x1B'), std::string::npos);
    const std::string said = mine({"a.dat", "-s", "1", "-o", "it's\x1B"}).err;
    EXPECT_TRUE(said.ends_with("korv $'it\\'s\\x1B' $'it\\'s\\x1B' 1 0.8 5\n")) << said;
}

TEST_F(KorvMine, EndsQuietlyAndWithoutNamesWhereNobodyReadsTheClasses) {
    put("a.csv", many_items());
    const std::string command = "\"$0\" a.csv --format basket -s 1 -q --names a.names | head -c 2\n";
    const Outcome outcome = shell(command + "exit ${PIPESTATUS[0]}");
    EXPECT_EQ(outcome.ending, exited(128 + SIGPIPE));
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(files().size(), 1U);
    const Outcome ignoring = shell("trap '' PIPE; " + command + "exit ${PIPESTATUS[0]}");
    EXPECT_EQ(ignoring.ending, exited(1));
    EXPECT_EQ(ignoring.err, "korv-mine: standard output: cannot be written: Broken pipe\n");
    EXPECT_EQ(files().size(), 1U);
}

TEST_F(KorvMine, ReportsWrongArguments) {
    put("a.dat", small_database);
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {},
             {"a.dat"},
             {"a.dat", "-s", "many"},
             {"a.dat", "-s", "0"},
             {"a.dat", "-s", "6"},
             {"a.dat", "-s", "1", "--max-size", "0"},
             {"a.dat", "-s", "1", "--closure-items", "some"},
             {"a.dat", "-s", "1", "--unknown"},
             {"a.dat", "-s", "1", "--format", "other"},
             {"a.dat", "-s", "1", "--format", "1"},
             {"a.dat", "-s", "1", "-o", ""},
             {"a.dat", "-s", "1", "--format", "basket", "--names", ""},
             {"a.dat", "-s", "1", "--format", "table", "--bins", "2", "--bins", "3"},
             {"a.dat", "-s", "1", "--names", "a.names"},
             {"a.dat", "-s", "1", "--separator", ";"},
             {"a.dat", "-s", "1", "--format", "basket", "--bins", "3"},
             {"a.dat", "-s", "1", "--format", "table", "--bins", "x"},
             {"a.dat", "-s", "1", "--format", "basket", "--separator", "ab"}}) {
        const Outcome outcome = mine(arguments);
        EXPECT_NE(outcome.ending, exited(0)) << testing::PrintToString(arguments);
        EXPECT_NE(outcome.err, "") << testing::PrintToString(arguments);
        EXPECT_EQ(outcome.out, "") << testing::PrintToString(arguments);
    }
}

TEST_F(KorvMine, BeginsEveryMessageWithItsNameOnce) {
    put("a.dat", small_database);
    put("list", "milk\nbread\n");
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{},
                                               {"a.dat", "-s", "many"},
                                               {"a.dat", "-s", "1", "--unknown"},
                                               {"a.dat", "-s", "1", "--bins", "x"},
                                               {"a.dat", "-s", "1", "--bins", "2"},
                                               {"a.dat", "-s", "1", "--format", "other"},
                                               {"a.dat", "-s", "1", "--names", "n"},
                                               {"list", "-s", "1"},
                                               {"-", "-", "-s", "1"}}) {
        const Outcome outcome = mine(arguments);
        EXPECT_NE(outcome.ending, exited(0)) << testing::PrintToString(arguments);
        EXPECT_TRUE(outcome.err.starts_with("korv-mine: ")) << outcome.err;
        EXPECT_EQ(outcome.err.find("korv-mine: ", 1), std::string::npos) << outcome.err;
        EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << outcome.err;
    }
}

TEST_F(KorvMine, SaysThatAnOptionDoesNotGoWithTheFormatThatItSaw) {
    put("a.dat", small_database);
    EXPECT_EQ(
        mine({"a.dat", "-s", "1", "--bins", "4"}).err,
        "korv-mine: a.dat: found fimi (items as numbers), guessed from whole numbers with blanks between "
        "them; expected a "
        "table, since --bins is given: leave --bins out, or say --format table if that is what it is\n");
}

TEST_F(KorvMine, TellsItsVersionAndItsOptions) {
    const Outcome version = mine({"--version"});
    EXPECT_EQ(version.ending, exited(0));
    EXPECT_TRUE(version.out.starts_with("korv-mine ")) << version.out;
    const Outcome help = mine({"--help"});
    EXPECT_EQ(help.ending, exited(0));
    EXPECT_NE(help.out.find("--min-support"), std::string::npos);
}

/// korv-mine while it runs, started by a shell that becomes it and so tells its number beforehand.
class RunningMine {
public:
    /// `signals`: an option of env(1).
    RunningMine(const std::string& signals, const std::vector<std::string>& arguments,
                const std::filesystem::path& directory, const Descriptor& in)
        : process_(command(signals, arguments, directory), in, out_.write, open_file("/dev/null", O_WRONLY)),
          id_(std::stoi(read_until(out_.read, "\n"))) {}

    void send(int signal) const { ASSERT_EQ(kill(id_, signal), 0); }
    Ending wait() { return process_.wait(); }

private:
    static Command command(const std::string& signals, const std::vector<std::string>& arguments,
                           const std::filesystem::path& directory) {
        std::vector<std::string> words = {"-c", R"(echo $$; ulimit -c 0; exec env "$@")", "bash", signals,
                                          KORV_MINE_PROGRAM};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return {"/bin/bash", words, directory};
    }

    Channel out_ = make_pipe();
    Process process_;
    pid_t id_;
};

/// Tells when a file is created in a directory.
class Watch {
public:
    explicit Watch(const std::filesystem::path& directory) {
        EXPECT_GE(inotify_add_watch(events_.number(), directory.c_str(), IN_CREATE), 0);
    }

    /// Waits for the first file that is created from now on, or was since the watch began.
    void wait_for_a_file() const { read_some(events_); }

private:
    Descriptor events_{inotify_init1(IN_CLOEXEC)};
};

TEST_F(KorvMine, RemovesWhatItWroteWhenItIsInterrupted) {
    put("a.dat", large_database());
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGALRM, SIGUSR1, SIGUSR2, SIGXCPU,
                             SIGVTALRM, SIGPROF, SIGIO, SIGABRT, SIGRTMIN, SIGRTMAX}) {
        SCOPED_TRACE(signal);
        const Watch watch(directory_.path());
        RunningMine running("--default-signal", {"a.dat", "-s", "1", "-o", "a.classes"}, directory_.path(),
                            open_file("/dev/null", O_RDONLY));
        watch.wait_for_a_file();
        const Files before = files();
        ASSERT_EQ(before.size(), 2U);
        EXPECT_TRUE(before.begin()->first.starts_with(".korv-")) << before.begin()->first;
        running.send(signal);
        EXPECT_EQ(running.wait(), ended_by_signal(signal));
        EXPECT_EQ(files().size(), 1U);
    }
}

TEST_F(KorvMine, GoesOnWhereHangupsAreIgnored) {
    Channel in = make_pipe();
    RunningMine running("--ignore-signal=HUP", {"-", "-s", "1", "-q", "-o", "a.classes"}, directory_.path(),
                        in.read);
    // More than a pipe holds: once it is written, korv-mine reads, and so has set up what signals do.
    std::string transactions;
    for (int i = 0; i < 100'000; ++i) {
        transactions += "7\n";
    }
    write_all(in.write, transactions);
    running.send(SIGHUP);
    in.write.close();
    EXPECT_EQ(running.wait(), exited(0));
    EXPECT_EQ(files(), (Files{{"a.classes", "7\t100000\t 7,\n"}}));
}

const std::string titanic = TITANIC;

/// From transactions to rules, in two commands.
TEST_F(KorvMine, MakesWhatKorvReads) {
    const Outcome mined =
        mine({titanic + "/titanic.dat", "-s", "1", "--closure-items", "all", "-o", "titanic.classes"});
    ASSERT_EQ(mined.ending, exited(0));
    EXPECT_EQ(files().at("titanic.classes"), read_file(titanic + "/titanic.classes"));
    const Outcome derived =
        run({KORV_PROGRAM, {"titanic", "titanic.classes", "100", "0.6", "2201"}, directory_.path()});
    EXPECT_EQ(derived.ending, exited(0));
    EXPECT_NE(derived.out.find("Execution ended successfully!!!"), std::string::npos);
}

}  // namespace
}  // namespace korv::test
