// korv-mine-mpi under mpirun: files, streams, faults, checkpoints.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tools/korv_mine_run.h"

namespace korv::test {
namespace {

/// korv-mine-mpi as several processes.
class KorvMineMpi : public KorvMine {
protected:
    KorvMineMpi() {
        // As tests/mine_mpi/CMakeLists.txt says.
        std::istringstream variables(RUN_ANYWHERE);
        for (std::string variable; variables >> variable;) {
            const std::size_t name = variable.find('=');
            ::setenv(variable.substr(0, name).c_str(), variable.substr(name + 1).c_str(), 1);
        }
    }

    Outcome mine_by(int processes, const std::vector<std::string>& arguments) const {
        std::vector<std::string> words = {"-n", std::to_string(processes), KORV_MINE_MPI_PROGRAM};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return run_here(MPIRUN, words);
    }

    /// The names of the files in the directory, hidden ones among them.
    std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const auto& [name, bytes] : files()) {
            names.push_back(name);
        }
        return names;
    }
};

/// What the program says; mpirun says something as well.
std::string first_line(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

TEST_F(KorvMineMpi, WritesTheBytesOfKorvMine) {
    put("a.csv", small_baskets);
    EXPECT_EQ(mine_by(3, {"a.csv", "--format", "basket", "-s", "1", "-q", "-o", "a.classes"}).ending,
              exited(0));
    EXPECT_EQ(
        files(),
        (Files{{"a.csv", small_baskets}, {"a.classes", small_basket_classes}, {"a.names", small_names}}));
}

TEST_F(KorvMineMpi, WritesManyClassesInTheOrderOfKorvMine) {
    put("a.dat", random_database(3, 19, 400));
    ASSERT_EQ(mine({"a.dat", "-s", "1", "-q", "-o", "a.classes"}).ending, exited(0));
    const std::string expected = files().at("a.classes");
    ASSERT_GT(expected.size(), 1U << 20U);  // more than three processes make at once
    for (const int processes : {1, 2, 3}) {
        EXPECT_EQ(mine_by(processes, {"a.dat", "-s", "1", "-q", "-o", "b.classes"}).ending, exited(0));
        EXPECT_TRUE(files().at("b.classes") == expected) << processes;
    }
    EXPECT_EQ(mine_by(3, {"a.dat", "-s", "1", "-q", "-o", "/dev/full"}).ending, exited(1));
}

TEST_F(KorvMineMpi, RunsWithoutALauncher) {
    put("a.dat", small_database);
    EXPECT_EQ(run_here(KORV_MINE_MPI_PROGRAM, {"a.dat", "-s", "1", "-q"}).out, small_classes);
}

TEST_F(KorvMineMpi, ReadsCompressedFilesAndStandardInput) {
    put("a.dat", small_database.substr(0, 8));
    put("b.dat", small_database.substr(8));
    const Outcome outcome = shell_with({MPIRUN, KORV_MINE_MPI_PROGRAM},
                                       R"(gzip b.dat && "$0" -n 2 "$1" - b.dat.gz -s 1 -q < a.dat)");
    EXPECT_EQ(outcome.out, small_classes) << outcome.err;
}

TEST_F(KorvMineMpi, SumsUpEachLevel) {
    put("a.dat", small_database);
    const std::string said = mine_by(2, {"a.dat", "-s", "1", "-o", "a.classes"}).err;
    // Six pairs of four items, one of which is together and essential; it has no candidates.
    EXPECT_TRUE(
        said.starts_with("processes           2\n"
                         "  items   candidates for one more   frequent   essential   "))
        << said;
    EXPECT_NE(said.find("\n      1                         6          3           1   "), std::string::npos)
        << said;
    EXPECT_NE(said.find("\n      2                         0          0           0   "), std::string::npos)
        << said;
    EXPECT_NE(said.find("\nwriting                         -          -           -   "), std::string::npos)
        << said;
    EXPECT_NE(said.find("To derive rules: korv a a.classes 1 0.8 5\n"), std::string::npos) << said;
}

TEST_F(KorvMineMpi, LeavesTheLinesOfAHeaderToOneProcess) {
    const std::string table = "sep=;\ncolour;note\nred;\"a\n\"\nblue;\"\n\nb\"\nred;\n";
    put("a.csv", table);
    EXPECT_EQ(
        mine_by(7, {"a.csv", "--format", "table", "--columns", "colour", "-s", "1", "-q", "-o", "a.classes"})
            .ending,
        exited(0));
    EXPECT_EQ(files(), (Files{{"a.csv", table},
                              {"a.classes", "1\t2\t 1,\n2\t1\t 2,\n"},
                              {"a.names", "1\tcolour=red\n2\tcolour=blue\n"}}));
}

TEST_F(KorvMineMpi, EndsWithTheFirstErrorOfTheInputAndWithoutOutput) {
    put("a.dat", "1 2\n3 x\n4\n");
    put("b.dat", "1 2\n3\n4\ny\n5 6\n");
    const Outcome outcome = mine_by(3, {"b.dat", "a.dat", "--format", "fimi", "-s", "1", "-o", "a.classes"});
    EXPECT_EQ(outcome.ending, exited(1));
    EXPECT_EQ(first_line(outcome.err), R"(korv-mine-mpi: b.dat:4:1: found "y"; expected an item number)");
    EXPECT_EQ(names(), (std::vector<std::string>{"a.dat", "b.dat"}));
}

TEST_F(KorvMineMpi, SaysWhatCannotBeRead) {
    put("a.dat", small_database);
    const Outcome outcome = mine_by(2, {"a.dat", "missing", "-s", "1", "-o", "a.classes"});
    EXPECT_EQ(outcome.ending, exited(1));
    EXPECT_EQ(first_line(outcome.err), "korv-mine-mpi: missing: cannot be read: No such file or directory");
}

TEST_F(KorvMineMpi, SaysThatTheDiskIsFull) {
    put("a.dat", small_database);
    const Outcome outcome = mine_by(2, {"a.dat", "-s", "1", "-q", "-o", "/dev/full"});
    EXPECT_EQ(outcome.ending, exited(1));
    EXPECT_NE(first_line(outcome.err).find("No space left on device"), std::string::npos) << outcome.err;
}

TEST_F(KorvMineMpi, EndsWithStatus3WhereThereAreTooManyClasses) {
    put("a.dat", small_database);
    const Outcome outcome = mine_by(2, {"a.dat", "-s", "1", "-q", "--max-classes", "3", "-o", "a.classes"});
    EXPECT_EQ(outcome.ending, exited(3));
    EXPECT_TRUE(outcome.err.starts_with("korv-mine-mpi: there are more than 3 classes (--max-classes) when "))
        << outcome.err;
    EXPECT_EQ(names(), (std::vector<std::string>{"a.dat"}));
}

TEST_F(KorvMineMpi, KeepsAsManyClassesAsAllowedWithAnyNumberOfProcesses) {
    put("a.dat", random_database(7, 12, 60));
    const std::vector<std::string> arguments = {"a.dat", "-s",        "1",  "-q",       "--max-classes",
                                                "100",   "--partial", "-o", "a.classes"};
    ASSERT_EQ(mine_by(1, arguments).ending, exited(3));
    const std::string by_one = files().at("a.classes");
    EXPECT_EQ(std::ranges::count(by_one, '\n'), 100);
    EXPECT_EQ(mine_by(3, arguments).ending, exited(3));
    EXPECT_EQ(files().at("a.classes"), by_one);
}

TEST_F(KorvMineMpi, RefusesProcessesWithOtherArguments) {
    put("a.dat", small_database);
    const Outcome outcome = run_here(MPIRUN, {"-n", "1", KORV_MINE_MPI_PROGRAM, "a.dat", "-s", "1", "-q", ":",
                                              "-n", "1", KORV_MINE_MPI_PROGRAM, "a.dat", "-s", "2", "-q"});
    EXPECT_NE(outcome.ending, exited(0));
    EXPECT_TRUE(outcome.err.starts_with("korv-mine-mpi: process 1 (on ")) << outcome.err;
    EXPECT_NE(outcome.err.find("found other arguments; expected those of process 0"), std::string::npos);
    EXPECT_EQ(outcome.out, "");
}

TEST_F(KorvMineMpi, DoesNotWaitForAProcessThatIsAskedForHelpAlone) {
    put("a.dat", small_database);
    const Outcome outcome = run_here(MPIRUN, {"-n", "1", KORV_MINE_MPI_PROGRAM, "a.dat", "-s", "1", ":", "-n",
                                              "1", KORV_MINE_MPI_PROGRAM, "--help"});
    EXPECT_FALSE(outcome.ending.timed_out);
    EXPECT_NE(outcome.err.find("found other arguments; expected those of process 0"), std::string::npos);
    EXPECT_EQ(outcome.out, "");
}

TEST_F(KorvMineMpi, PrintsHelpAndComplaintsOnce) {
    const std::string help = mine_by(2, {"--help"}).out;
    EXPECT_EQ(help.find("korv-mine-mpi [OPTIONS]"), help.rfind("korv-mine-mpi [OPTIONS]"));
    const Outcome outcome = mine_by(2, {"a.dat", "--some"});
    EXPECT_EQ(outcome.ending, exited(109));
    EXPECT_EQ(outcome.err.find("korv-mine-mpi: "), outcome.err.rfind("korv-mine-mpi: "));
}

TEST_F(KorvMineMpi, EstimatesAsKorvMineDoes) {
    put("a.dat", small_database);
    EXPECT_EQ(mine_by(2, {"a.dat", "--estimate", "-s", "1,2,3", "-q"}).out,
              mine({"a.dat", "--estimate", "-s", "1,2,3", "-q"}).out);
}

TEST_F(KorvMineMpi, EndsWithoutOutputWhenAProcessDies) {
    put("a.dat", large_database());
    const std::string script =
        R"sh(# So many seconds have the others to remove their files, before the launcher kills them.
           export OMPI_MCA_odls_base_sigkill_timeout=4
           "$0" -n 3 "$1" a.dat -s 1 -q -o a.classes & launcher=$!
           for ((i = 0; i < 200; ++i)); do
               compgen -G '.korv-*' >/dev/null && break
               sleep 0.05
           done
           kill -KILL "$(pgrep -P $launcher | tail -n 1)"
           wait $launcher)sh";
    const Outcome outcome = shell_with({MPIRUN, KORV_MINE_MPI_PROGRAM}, script);
    EXPECT_FALSE(outcome.ending.timed_out);
    EXPECT_NE(outcome.ending, exited(0));
    EXPECT_EQ(names(), (std::vector<std::string>{"a.dat"}));
}

/// Runs that are killed when a level is kept, and gone on with.
TEST_F(KorvMineMpi, GoesOnFromEachLevelWithAnyNumberOfProcesses) {
    put("a.dat", random_database(7, 12, 60));
    ASSERT_EQ(mine({"a.dat", "-s", "1", "-q", "-o", "a.classes"}).ending, exited(0));
    const std::string expected = files().at("a.classes");
    const std::vector<std::string> arguments = {"a.dat",     "-s",           "1",   "-q", "-o",
                                                "b.classes", "--checkpoint", "kept"};
    // Classes of small itemsets come first, so that a limit of classes ends a run behind some levels.
    std::size_t levels = 0;
    for (const std::string classes : {"11", "50", "150", "250"}) {
        std::vector<std::string> stopped = arguments;
        stopped.insert(stopped.end(), {"--max-classes", classes});
        ASSERT_EQ(mine_by(1 + static_cast<int>(levels) % 3, stopped).ending, exited(3));
        std::size_t kept = 0;
        while (std::filesystem::exists(directory_.path() / "kept" / ("level-" + std::to_string(kept + 1)))) {
            ++kept;
        }
        EXPECT_GE(kept, levels);
        levels = kept;
        std::filesystem::copy(directory_.path() / "kept", directory_.path() / "copy");
        std::vector<std::string> resumed = {"a.dat",     "-s",           "1",    "-q",      "-o",
                                            "b.classes", "--checkpoint", "copy", "--resume"};
        EXPECT_EQ(mine_by(3, resumed).ending, exited(0));
        EXPECT_EQ(files().at("b.classes"), expected);
        EXPECT_FALSE(std::filesystem::exists(directory_.path() / "copy"));
        std::filesystem::remove_all(directory_.path() / "kept");
    }
    EXPECT_GE(levels, 2U);
}

TEST_F(KorvMineMpi, CountsClassesThatWereKept) {
    // Two classes of one item, and one of two.
    put("a.dat", "1 100 101 102 103 104 105\n1 2\n1 2\n2 200 201 202 203\n2\n");
    std::vector<std::string> arguments = {"a.dat",     "-s",           "2",   "--closure-items", "all", "-o",
                                          "b.classes", "--checkpoint", "kept"};
    std::vector<std::string> stopped = arguments;
    stopped.insert(stopped.end(), {"--max-classes", "2"});
    ASSERT_EQ(mine_by(2, stopped).ending, exited(3));
    arguments.emplace_back("--resume");
    const Outcome resumed = mine_by(2, arguments);
    EXPECT_EQ(files().at("b.classes"),
              "2 200 201 202 203\t4\t 2,\n"
              "1 100 101 102 103 104 105\t3\t 1,\n"
              "1 2 100 101 102 103 104 105 200 201 202 203\t5\t 1 2,\n");
    EXPECT_NE(resumed.err.find("Items in fewer than 2 transactions make up 80 bytes of the class file"),
              std::string::npos)
        << resumed.err;
}

TEST_F(KorvMineMpi, RefusesMoreClassesThanAskedForAmongThoseThatWereKept) {
    put("a.dat", small_database);
    const std::vector<std::string> arguments = {"a.dat", "-s", "1", "-q", "--checkpoint", "kept", "-o"};
    std::vector<std::string> full = arguments;
    full.emplace_back("/dev/full");
    ASSERT_EQ(mine_by(2, full).ending, exited(1));  // when all levels are kept
    std::vector<std::string> resumed = arguments;
    resumed.insert(resumed.end(), {"a.classes", "--resume"});
    std::vector<std::string> few = resumed;
    few.insert(few.end(), {"--max-classes", "3"});
    const Outcome outcome = mine_by(2, few);
    EXPECT_EQ(outcome.ending, exited(3));
    EXPECT_TRUE(outcome.err.starts_with("korv-mine-mpi: there are more than 3 classes (--max-classes) when "))
        << outcome.err;
    EXPECT_EQ(files().count("a.classes"), 0U);
    EXPECT_EQ(mine_by(2, resumed).ending, exited(0));
    EXPECT_EQ(files().at("a.classes"), small_classes);
}

TEST_F(KorvMineMpi, KeepsAsManyClassesAsAllowedOfThoseThatWereKept) {
    put("a.dat", random_database(7, 12, 60));
    const std::vector<std::string> limited = {"a.dat",         "-s",  "1",        "-q", "-o", "a.classes",
                                              "--max-classes", "100", "--partial"};
    ASSERT_EQ(mine_by(2, limited).ending, exited(3));
    const std::string expected = files().at("a.classes");
    std::vector<std::string> resumed = limited;
    resumed.insert(resumed.end(), {"--checkpoint", "kept", "--resume"});
    ASSERT_EQ(mine_by(2, {"a.dat", "-s", "1", "-q", "-o", "/dev/full", "--checkpoint", "kept"}).ending,
              exited(1));  // when all levels are kept
    ASSERT_EQ(mine_by(3, resumed).ending, exited(3));
    EXPECT_EQ(files().at("a.classes"), expected);
}

TEST_F(KorvMineMpi, KeepsTheLevelAtTheEndOfWhichTheTimeIsOver) {
    put("a.dat", small_database);
    std::vector<std::string> arguments = {"a.dat", "-s",           "1",    "-q", "--max-seconds",
                                          "0.001", "--checkpoint", "kept", "-o", "a.classes"};
    // Each level of so few itemsets is looked at in one go: two of them, and then there is none.
    EXPECT_EQ(mine_by(2, arguments).ending, exited(3));
    EXPECT_TRUE(std::filesystem::exists(directory_.path() / "kept/level-1"));
    arguments.emplace_back("--resume");
    EXPECT_EQ(mine_by(2, arguments).ending, exited(3));
    EXPECT_TRUE(std::filesystem::exists(directory_.path() / "kept/level-2"));
    EXPECT_EQ(mine_by(2, arguments).ending, exited(0));
    EXPECT_EQ(files().at("a.classes"), small_classes);
}

TEST_F(KorvMineMpi, EndsAmongThePairsWhenItsTimeIsOver) {
    std::string database;
    for (int item = 0; item < 5000; ++item) {
        database += std::to_string(item) + ' ' + std::to_string((item + 1) % 5000) + '\n';
    }
    put("a.dat", database);
    const Outcome outcome = mine_by(2, {"a.dat", "-s", "1", "-q", "--max-seconds", "0.001", "-o", "b"});
    EXPECT_EQ(outcome.ending, exited(3));
    EXPECT_NE(outcome.err.find("with 0 classes when the pairs of 838 of 5,000 items were done"),
              std::string::npos)
        << outcome.err;
    EXPECT_EQ(names(), (std::vector<std::string>{"a.dat"}));
}

TEST_F(KorvMineMpi, RefusesACheckpointOfSomethingElse) {
    put("a.dat", random_database(7, 12, 60));
    put("b.dat", random_database(8, 12, 60));
    const auto run = [&](const std::string& file, const std::string& support, bool resumes) {
        std::vector<std::string> arguments = {file, "-s",        support,        "-q",
                                              "-o", "a.classes", "--checkpoint", "kept"};
        arguments.insert(arguments.end(), resumes ? 1 : 0, "--resume");
        arguments.insert(arguments.end(), resumes ? 0 : 2, "--max-classes");
        if (!resumes) {
            arguments.back() = "20";
        }
        return first_line(mine_by(2, arguments).err);
    };
    EXPECT_EQ(run("a.dat", "1", true),
              "korv-mine-mpi: --resume: found no checkpoint in kept; expected that of an earlier run");
    EXPECT_TRUE(run("a.dat", "1", false).starts_with("korv-mine-mpi: there are more than 20 classes"));
    EXPECT_EQ(
        run("a.dat", "1", false),
        "korv-mine-mpi: --checkpoint: found a checkpoint in kept; expected --resume to go on with it, or "
        "another directory");
    EXPECT_EQ(
        run("a.dat", "2", true),
        "korv-mine-mpi: --resume: found a checkpoint of other transactions or options (--min-support 1); "
        "expected --min-support 2");
    EXPECT_TRUE(run("b.dat", "1", true)
                    .starts_with("korv-mine-mpi: --resume: found a checkpoint of other transactions or "
                                 "options (transactions "));
    std::ofstream(directory_.path() / "kept" / "level-1", std::ios::app) << "x";
    EXPECT_EQ(
        run("a.dat", "1", true),
        "korv-mine-mpi: kept/level-1: found other bytes than were written; expected the checkpoint of an "
        "earlier run");
}

}  // namespace
}  // namespace korv::test
