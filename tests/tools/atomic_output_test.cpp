#include "common/atomic_output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <filesystem>

#include "support/files.h"
#include "support/process.h"
#include "tools/complaint.h"

namespace korv::tools {
namespace {

using test::read_files;

class AtomicOutputFile : public ::testing::Test {
protected:
    std::string path() const { return (directory_.path() / "out").string(); }

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

TEST_F(AtomicOutputFile, IsTheSameByAnyPath) {
    EXPECT_TRUE(is_same_file(path(), (directory_.path() / "." / "out").string()));
    EXPECT_FALSE(is_same_file(path(), path() + "2"));
    EXPECT_TRUE(is_same_file("-", "-"));
    EXPECT_FALSE(is_same_file("-", path()));
    EXPECT_FALSE(is_same_file("/dev/null", "/dev/null"));
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

}  // namespace
}  // namespace korv::tools
