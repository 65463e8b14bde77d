#include "common/atomic_output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "support/files.h"
#include "support/process.h"
#include "tools/complaint.h"

namespace korv::tools {
namespace {

using test::read_files;

class AtomicOutputFile : public ::testing::Test {
protected:
    std::string path(const std::string& name = "out") const { return (directory_.path() / name).string(); }

    test::Files files() const { return read_files(directory_.path()); }

    test::TemporaryDirectory directory_;
};

TEST_F(AtomicOutputFile, IsThereOnceCommitted) {
    AtomicOutput output(path());
    output.write("first ");
    output.write("second");
    EXPECT_FALSE(std::filesystem::exists(path()));
    output.commit();
    EXPECT_EQ(read_files(directory_.path()), (test::Files{{"out", "first second"}}));
}

TEST_F(AtomicOutputFile, CanBeFilledByItsTemporaryPath) {
    AtomicOutput output(path());
    EXPECT_EQ(test::read_file(output.temporary_path()), "");
    test::write_file(output.temporary_path(), "by another program");
    EXPECT_FALSE(std::filesystem::exists(path()));
    output.commit();
    EXPECT_EQ(files(), (test::Files{{"out", "by another program"}}));
}

TEST_F(AtomicOutputFile, HasNoTemporaryPathWhereItIsWrittenToDirectly) {
    EXPECT_EQ(AtomicOutput("/dev/null").temporary_path(), "");
}

TEST_F(AtomicOutputFile, IsNotThereWithoutCommit) {
    {
        AtomicOutput output(path());
        output.write("lost");
    }
    EXPECT_EQ(read_files(directory_.path()), test::Files{});
}

TEST_F(AtomicOutputFile, LeavesAnEarlierFileAloneUntilCommitted) {
    test::write_file(path(), "earlier");
    {
        AtomicOutput output(path());
        output.write(std::string(1'000'000, 'x'));
    }
    EXPECT_EQ(read_files(directory_.path()), (test::Files{{"out", "earlier"}}));
    AtomicOutput output(path());
    output.write("later");
    output.commit();
    EXPECT_EQ(read_files(directory_.path()), (test::Files{{"out", "later"}}));
}

TEST_F(AtomicOutputFile, KeepsTheOrderOfTextLargerThanAnyBuffer) {
    std::string expected;
    AtomicOutput output(path());
    for (int i = 0; i < 200'000; ++i) {
        const std::string line = std::to_string(i) + '\n';
        output.write(line);
        expected += line;
    }
    output.commit();
    EXPECT_TRUE(test::read_file(path()) == expected);
}

TEST_F(AtomicOutputFile, GetsTheRightsOfAnyNewFile) {
    const mode_t mask = umask(022);
    AtomicOutput output(path());
    output.commit();
    umask(mask);
    struct stat status = {};
    ASSERT_EQ(stat(path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0644U);
}

TEST_F(AtomicOutputFile, KeepsTheRightsOfTheFileThatItReplaces) {
    test::write_file(path(), "earlier");
    ASSERT_EQ(chmod(path().c_str(), 0600), 0);
    AtomicOutput output(path());
    output.commit();
    struct stat status = {};
    ASSERT_EQ(stat(path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(AtomicOutputFile, IsWrittenBehindASymbolicLink) {
    std::filesystem::create_symlink("target", path());
    AtomicOutput output(path());
    output.write("text");
    output.commit();
    EXPECT_TRUE(std::filesystem::is_symlink(path()));
    EXPECT_EQ(test::read_file(directory_.path() / "target"), "text");
}

TEST_F(AtomicOutputFile, InAMissingDirectoryIsReported) {
    const std::string missing = (directory_.path() / "missing" / "out").string();
    EXPECT_EQ(complaint_of([&] { const AtomicOutput output(missing); }),
              missing + ": cannot be created: No such file or directory");
}

TEST_F(AtomicOutputFile, OnAFullDiskIsReported) {
    AtomicOutput output("/dev/full");
    output.write("text");
    EXPECT_EQ(complaint_of([&] { output.commit(); }),
              "/dev/full: cannot be written: No space left on device");
}

TEST_F(AtomicOutputFile, SaysThatNobodyReadsIt) {
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    test::Channel channel = test::make_pipe();
    channel.read.close();
    AtomicOutput output("/dev/fd/" + std::to_string(channel.write.number()));
    output.write("text");
    EXPECT_THROW(output.commit(), BrokenPipe);
    std::signal(SIGPIPE, before);
}

TEST_F(AtomicOutputFile, IsWrittenAsItComesWhereItIsAPipe) {
    ASSERT_EQ(mkfifo(path().c_str(), 0600), 0);
    // A reader, so that a writer need not wait for one; and room for all that is written.
    const test::Descriptor reader = test::open_file(path(), O_RDONLY | O_NONBLOCK);
    const std::string text(500'000, 'x');
    ASSERT_GE(fcntl(reader.number(), F_SETPIPE_SZ, 500'000), 500'000);
    const auto bytes_to_read = [&reader] {
        int bytes = -1;
        return ioctl(reader.number(), FIONREAD, &bytes) == 0 ? bytes : -1;
    };
    AtomicOutput output(path());
    for (std::size_t i = 0; i < text.size(); i += 1000) {
        output.write(text.substr(i, 1000));
    }
    EXPECT_GT(bytes_to_read(), 100'000);
    output.commit();
    EXPECT_EQ(bytes_to_read(), 500'000);
}

TEST_F(AtomicOutputFile, DoesNotReplaceADevice) {
    AtomicOutput output("/dev/null");
    output.write("text");
    output.commit();
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(AtomicOutputFile, HasAHiddenNameUntilCommitted) {
    const AtomicOutput output(path());
    const test::Files now = files();
    ASSERT_EQ(now.size(), 1U);
    EXPECT_TRUE(now.begin()->first.starts_with(".korv-")) << now.begin()->first;
}

TEST_F(AtomicOutputFile, MayHaveANameAsLongAsThereIs) {
    const std::string longest(255, 'n');
    AtomicOutput output(path(longest));
    output.write("text");
    output.commit();
    EXPECT_EQ(files(), (test::Files{{longest, "text"}}));
}

TEST_F(AtomicOutputFile, WithTooLongANameIsReported) {
    const std::string too_long = path(std::string(256, 'n'));
    EXPECT_EQ(complaint_of([&] { const AtomicOutput output(too_long); }),
              too_long + ": cannot be created: File name too long");
}

TEST_F(AtomicOutputFile, InMemoryIsReplacedLikeAnyOther) {
    std::string in_memory = "/dev/shm/korv-XXXXXX";
    if (mkdtemp(in_memory.data()) == nullptr) {
        GTEST_SKIP() << "There is no /dev/shm.";
    }
    const std::string file = in_memory + "/out";
    {
        AtomicOutput output(file);
        output.write("new");
        output.commit();
    }
    {
        AtomicOutput output(file);
        output.write("lost");
    }
    EXPECT_EQ(read_files(in_memory), (test::Files{{"out", "new"}}));
    std::filesystem::remove_all(in_memory);
}

TEST_F(AtomicOutputFile, IsWrittenWhereAnOpenDescriptorStands) {
    test::write_file(path(), "earlier ");
    const test::Descriptor open = test::open_file(path(), O_WRONLY | O_APPEND);
    AtomicOutput output("/dev/fd/" + std::to_string(open.number()));
    output.write("later");
    output.commit();
    EXPECT_EQ(files(), (test::Files{{"out", "earlier later"}}));
}

TEST_F(AtomicOutputFile, OnADescriptorForReadingIsReported) {
    const test::Descriptor open = test::open_file("/dev/null", O_RDONLY);
    const std::string name = "/dev/fd/" + std::to_string(open.number());
    EXPECT_EQ(complaint_of([&] { const AtomicOutput output(name); }),
              name + ": is closed or not open for writing");
}

TEST_F(AtomicOutputFile, WaitsForAPipeThatDoesNot) {
    const test::Channel pipe = test::make_pipe();
    ASSERT_EQ(fcntl(pipe.write.number(), F_SETFL, O_NONBLOCK), 0);
    const std::string text(200'000, 'x');
    std::thread writer([&] {
        AtomicOutput output("/dev/fd/" + std::to_string(pipe.write.number()));
        output.write(text);
        output.commit();
    });
    std::string arrived;
    while (arrived.size() < text.size()) {
        arrived += test::read_some(pipe.read);
    }
    writer.join();
    EXPECT_TRUE(arrived == text);
}

TEST_F(AtomicOutputFile, DoesNotReplaceAFileThatNobodyMayWrite) {
    test::write_file(path(), "earlier");
    ASSERT_EQ(chmod(path().c_str(), 0444), 0);
    EXPECT_EQ(complaint_of([&] { const AtomicOutput output(path()); }),
              path() + ": is write-protected, and is not replaced");
    EXPECT_EQ(files(), (test::Files{{"out", "earlier"}}));
}

constexpr uid_t some_user = 12'345;
constexpr gid_t some_group = 54'321;

/// Another user than root, for as long as this exists.
class OtherUser {
public:
    OtherUser() {
        EXPECT_EQ(setegid(some_user), 0);
        EXPECT_EQ(seteuid(some_user), 0);
    }
    ~OtherUser() {
        EXPECT_EQ(seteuid(0), 0);
        EXPECT_EQ(setegid(0), 0);
    }
    OtherUser(const OtherUser&) = delete;
    OtherUser& operator=(const OtherUser&) = delete;
};

/// Files of several users, which only root can make.
class AtomicOutputOfUsers : public AtomicOutputFile {
protected:
    void SetUp() override {
        if (geteuid() != 0) {
            GTEST_SKIP() << "Only root can give files to others.";
        }
    }

    void make(const std::string& name, uid_t owner, mode_t rights) const {
        test::write_file(path(name), "earlier");
        ASSERT_EQ(chown(path(name).c_str(), owner, some_group), 0);
        ASSERT_EQ(chmod(path(name).c_str(), rights), 0);
    }

    void open_directory_to_all(mode_t rights) const {
        ASSERT_EQ(chmod(directory_.path().c_str(), rights), 0);
    }

    struct stat status(const std::string& name = "out") const {
        struct stat found = {};
        EXPECT_EQ(stat(path(name).c_str(), &found), 0);
        return found;
    }
};

TEST_F(AtomicOutputOfUsers, KeepsOwnerAndGroup) {
    make("out", some_user, 0640);
    AtomicOutput(path()).commit();
    EXPECT_EQ(files(), (test::Files{{"out", ""}}));
    EXPECT_EQ(status().st_uid, some_user);
    EXPECT_EQ(status().st_gid, some_group);
    EXPECT_EQ(status().st_mode & 0777U, 0640U);
}

TEST_F(AtomicOutputOfUsers, GivesAnotherGroupNoMoreThanAllOthersHave) {
    make("out", 0, 0642);
    open_directory_to_all(0777);
    {
        const OtherUser other;
        AtomicOutput(path()).commit();
    }
    EXPECT_EQ(status().st_uid, some_user);
    EXPECT_EQ(status().st_gid, some_user);
    EXPECT_EQ(status().st_mode & 0777U, 0602U);
}

TEST_F(AtomicOutputOfUsers, DoesNotReplaceWhatTheUserMayNotWrite) {
    make("out", 0, 0644);
    open_directory_to_all(0777);
    std::string complaint;
    {
        const OtherUser other;
        complaint = complaint_of([&] { const AtomicOutput output(path()); });
    }
    EXPECT_EQ(complaint, path() + ": is write-protected, and is not replaced");
}

TEST_F(AtomicOutputOfUsers, IsReportedAtOnceWhereOnlyItsOwnerMayReplaceIt) {
    make("out", 0, 0666);  // and root owns the directory, too
    open_directory_to_all(01777);
    std::string complaint;
    {
        const OtherUser other;
        complaint = complaint_of([&] { const AtomicOutput output(path()); });
    }
    EXPECT_EQ(complaint, path() + ": belongs to another user, who alone may replace it here");
}

/// Two files that belong together, the first of which replaces another.
class AtomicOutputPair : public AtomicOutputFile {
protected:
    void SetUp() override { test::write_file(path("first"), "earlier"); }

    static void fill(AtomicOutput& first, AtomicOutput& second) {
        first.write("1");
        second.write("2");
    }
};

TEST_F(AtomicOutputPair, IsThereOnceCommitted) {
    AtomicOutput first(path("first"));
    AtomicOutput second(path("second"));
    fill(first, second);
    AtomicOutput::commit_together({&first, &second});
    EXPECT_EQ(files(), (test::Files{{"first", "1"}, {"second", "2"}}));
}

TEST_F(AtomicOutputPair, IsTakenBackWhereTheSecondFileCannotBeNamed) {
    {
        AtomicOutput first(path("first"));
        AtomicOutput second(path("second"));
        fill(first, second);
        std::filesystem::create_directory(path("second"));
        EXPECT_EQ(complaint_of([&] {
                      AtomicOutput::commit_together({&first, &second});
                  }),
                  path("second") + ": cannot be given its name: Is a directory");
    }
    EXPECT_EQ(files(), (test::Files{{"first", "earlier"}}));
}

TEST_F(AtomicOutputPair, LeavesNothingNewWhereTheSecondFileCannotBeNamed) {
    std::filesystem::remove(path("first"));
    {
        AtomicOutput first(path("first"));
        AtomicOutput second(path("second"));
        fill(first, second);
        std::filesystem::create_directory(path("second"));
        EXPECT_NE(complaint_of([&] { AtomicOutput::commit_together({&first, &second}); }), "");
    }
    EXPECT_EQ(files(), test::Files{});
}

TEST_F(AtomicOutputPair, IsNotNamedWhereOneCannotBeWritten) {
    {
        AtomicOutput first(path("first"));
        AtomicOutput full("/dev/full");
        fill(first, full);
        EXPECT_NE(complaint_of([&] { AtomicOutput::commit_together({&first, &full}); }), "");
    }
    EXPECT_EQ(files(), (test::Files{{"first", "earlier"}}));
}

TEST_F(AtomicOutputPair, IsNeverMixedWithAnother) {
    const auto commit_both = [this](const std::string& text) {
        AtomicOutput first(path("first"));
        AtomicOutput second(path("second"));
        first.write(text);
        second.write(text);
        AtomicOutput::commit_together({&first, &second});
    };
    for (int round = 0; round < 100; ++round) {
        std::thread other(commit_both, "a");
        commit_both("b");
        other.join();
        const test::Files both = files();
        ASSERT_EQ(both.size(), 2U);
        ASSERT_EQ(both.at("first"), both.at("second"));
    }
}

}  // namespace
}  // namespace korv::tools
