#include "rules/statistics.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <functional>
#include <optional>
#include <sstream>
#include <string>

#include "common/temporary_file.h"
#include "support/files.h"
#include "support/process.h"

namespace korv::tools {

namespace {

std::string line(const Statistics& all) {
    return std::string(StatisticsLine(all, 12.4, 1340).text());
}

TEST(StatisticsLine, SaysPhaseTimeAndMemory) {
    Statistics all;
    EXPECT_EQ(line(all), "reading; 12 s, 1,340 MiB");
    all.phase = Phase::writing;
    EXPECT_EQ(line(all), "writing; 12 s, 1,340 MiB");
}

TEST(StatisticsLine, SaysPairsAndRules) {
    Statistics all;
    all.phase = Phase::deriving;
    all.pairs = 1'234'567;
    all.derived = 171'321;
    all.kept = 999;
    EXPECT_EQ(line(all), "deriving, 1,234,567 pairs, 171,321 rules derived, 999 kept; 12 s, 1,340 MiB");
    all.expected_pairs = 5'000'000;
    EXPECT_EQ(
        line(all),
        "deriving, 1,234,567 of about 5,000,000 pairs, 171,321 rules derived, 999 kept; 12 s, 1,340 MiB");
}

TEST(StatisticsLine, SaysPairsAndTriplesOfItems) {
    Statistics all;
    all.phase = Phase::counting_pairs;
    all.pairs = 1234;
    all.expected_pairs = 5000;
    all.kept = 59;
    EXPECT_EQ(line(all), "counting pairs, 1,234 of about 5,000, 59 kept; 12 s, 1,340 MiB");
    all.phase = Phase::counting_triples;
    EXPECT_EQ(line(all), "counting triples, 1,234 of about 5,000, 59 kept; 12 s, 1,340 MiB");
}

TEST(StatisticsLine, NeverExpectsFewerPairsThanThereAre) {
    Statistics all;
    all.pairs = 10;
    all.expected_pairs = 9;
    EXPECT_EQ(line(all), "reading, 10 of about 10 pairs, 0 rules derived, 0 kept; 12 s, 1,340 MiB");
}

/// Runs `work` in a process of its own. Returns what it wrote on standard error, and how it ended.
std::pair<std::string, int> in_child(const std::function<void()>& work) {
    test::Channel channel = test::make_pipe();
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(channel.write.number(), STDERR_FILENO);
        work();
        ::_exit(0);
    }
    channel.write.close();
    const std::string text = test::read_to_end(channel.read);
    int status = 0;
    ::waitpid(child, &status, 0);
    return {text, status};
}

bool is_of_number(char character) {
    return (character >= '0' && character <= '9') || character == ',';
}

/// A text with * for the seconds and mebibytes, where they are numbers.
std::string masked(std::string text) {
    for (std::size_t at = 0; (at = text.find("; ", at)) != std::string::npos; at += 2) {
        const std::size_t size = text.find('\n', at) - at;
        std::string words = text.substr(at, size);
        const bool has_numbers = is_of_number(words[2]) && words.find(", ") + 2 < words.size() &&
                                 is_of_number(words[words.find(", ") + 2]);
        std::erase_if(words, is_of_number);
        if (has_numbers && words == ";  s  MiB") {
            text.replace(at, size, "; * s, * MiB");
        }
    }
    return text;
}

void be_deriving() {
    statistics().phase = Phase::deriving;
    statistics().pairs = 7;
    statistics().derived = 5;
    statistics().kept = 3;
}

TEST(StatisticsOnSignals, AreWrittenAndTheProgramGoesOn) {
    const auto [text, status] = in_child([] {
        print_statistics_on_signals();
        std::raise(SIGUSR1);
        be_deriving();
        std::raise(SIGUSR1);
    });
    EXPECT_EQ(masked(text),
              "korv-rules: reading; * s, * MiB\n"
              "korv-rules: deriving, 7 pairs, 5 rules derived, 3 kept; * s, * MiB\n");
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

TEST(StatisticsOnSignals, AreWrittenBeforeAnInterruptRemovesTheUnfinishedOutput) {
    const test::TemporaryDirectory directory;
    const auto [text, status] = in_child([&directory] {
        print_statistics_on_signals();
        const test::Descriptor open = test::open_file(directory.path(), O_RDONLY | O_DIRECTORY);
        const TemporaryFile file(open.number(), 0600);
        be_deriving();
        std::raise(SIGINT);
    });
    EXPECT_EQ(masked(text), "korv-rules: deriving, 7 pairs, 5 rules derived, 3 kept; * s, * MiB\n");
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT);
    EXPECT_TRUE(test::read_files(directory.path()).empty());
}

TEST(StatisticsOnSignals, AreNotWrittenForABrokenPipe) {
    const auto [text, status] = in_child([] {
        print_statistics_on_signals();
        std::raise(SIGPIPE);
    });
    EXPECT_EQ(text, "");
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGPIPE);
}

TEST(StatisticsOnSignals, DoNotInterruptWhatTheProgramReads) {
    test::Channel channel = test::make_pipe();
    const auto [text, status] = in_child([&channel] {
        print_statistics_on_signals();
        const pid_t parent = ::getpid();
        if (::fork() == 0) {
            // While the other one waits for a byte.
            ::kill(parent, SIGUSR1);
            ::_exit(::write(channel.write.number(), "x", 1) == 1 ? 0 : 1);
        }
        char byte = 0;
        ::_exit(::read(channel.read.number(), &byte, 1) == 1 ? 0 : 1);
    });
    EXPECT_EQ(masked(text), "korv-rules: reading; * s, * MiB\n");
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

TEST(StatisticsDisplay, ShowsTheStatisticsOfTheProgram) {
    std::ostringstream out;
    {
        StatisticsDisplay display(out, true);
        statistics().start = monotonic_seconds() - 1;
        display.show();
        display.show();  // a moment later
    }
    const std::string shown = out.str();
    EXPECT_EQ(shown.find("\r\x1B[Kreading; 1 s, "), 0U) << shown;
    EXPECT_TRUE(shown.ends_with(" MiB\r\x1B[K")) << shown;
    EXPECT_EQ(std::ranges::count(shown, '\r'), 2);
    statistics().start = 0.0;
}

}  // namespace

}  // namespace korv::tools
