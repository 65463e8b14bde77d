#include "common/temporary_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "support/files.h"
#include "support/process.h"

namespace korv::tools {
namespace {

class TemporaryFileIn : public ::testing::Test {
protected:
    test::Files files() const { return test::read_files(directory_.path()); }
    int directory() const { return open_.number(); }

    test::TemporaryDirectory directory_;
    test::Descriptor open_ = test::open_file(directory_.path(), O_RDONLY | O_DIRECTORY);
};

TEST_F(TemporaryFileIn, ADirectoryHasANameOfItsOwn) {
    const TemporaryFile one(directory(), 0600);
    const TemporaryFile other(directory(), 0600);
    ASSERT_TRUE(one.is_open() && other.is_open());
    EXPECT_EQ(files().size(), 2U);
    for (const auto& [name, bytes] : files()) {
        EXPECT_TRUE(name.starts_with(".korv-")) << name;
        EXPECT_EQ(name.size(), 22U) << name;
    }
}

TEST_F(TemporaryFileIn, ADirectoryIsRemovedAtTheEnd) {
    {
        const TemporaryFile file(directory(), 0600);
        EXPECT_EQ(files().size(), 1U);
    }
    EXPECT_EQ(files(), test::Files{});
}

TEST_F(TemporaryFileIn, ADirectoryStaysUnderTheNameThatItIsGiven) {
    {
        TemporaryFile file(directory(), 0600);
        EXPECT_TRUE(file.rename_to("name"));
    }
    EXPECT_EQ(files(), (test::Files{{"name", ""}}));
}

TEST_F(TemporaryFileIn, WhatIsNoDirectoryIsNotOpen) {
    const test::Descriptor no_directory = test::open_file("/dev/null", O_RDONLY);
    const TemporaryFile file(no_directory.number(), 0600);
    EXPECT_FALSE(file.is_open());
    EXPECT_EQ(errno, ENOTDIR);
}

TEST_F(TemporaryFileIn, HiddenLinkIsASecondName) {
    test::write_file(directory_.path() / "name", "text");
    const auto link = hidden_link(directory(), "name");
    ASSERT_TRUE(link.has_value());
    EXPECT_EQ(files(), (test::Files{{link->data(), "text"}, {"name", "text"}}));
}

TEST_F(TemporaryFileIn, HiddenLinkToNothingIsNone) {
    EXPECT_FALSE(hidden_link(directory(), "name").has_value());
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(TemporaryFileIn, ADirectoryIsThereWhileTheHookOfASignalRunsAndGoneAfterwards) {
    test::Channel channel = test::make_pipe();
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(channel.write.number(), STDERR_FILENO);
        static const TemporaryFile* hidden = nullptr;
        remove_temporary_files_on_signals([](int signal) {
            struct stat status = {};
            const bool is_there = ::fstat(hidden->descriptor(), &status) == 0 && status.st_nlink == 1;
            const char answer = signal == SIGTERM && is_there ? 'y' : 'n';
            [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, &answer, 1);
        });
        const TemporaryFile file(directory(), 0600);
        hidden = &file;
        std::raise(SIGTERM);
        ::_exit(0);
    }
    channel.write.close();
    EXPECT_EQ(test::read_to_end(channel.read), "y");
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    EXPECT_EQ(files(), test::Files{});
}

volatile std::sig_atomic_t signals_seen = 0;

TEST(SignalsBlocked, HoldsSignalsBackWhileItExists) {
    signals_seen = 0;
    std::signal(SIGUSR1, [](int) { signals_seen = signals_seen + 1; });
    {
        const SignalsBlocked blocked;
        std::raise(SIGUSR1);
        EXPECT_EQ(signals_seen, 0);
    }
    EXPECT_EQ(signals_seen, 1);
    std::signal(SIGUSR1, SIG_DFL);
}

}  // namespace
}  // namespace korv::tools
