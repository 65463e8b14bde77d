#include "common/output_place.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "support/files.h"
#include "support/process.h"
#include "tools/complaint.h"

namespace korv::tools {
namespace {

class OutputPlaceOf : public ::testing::Test {
protected:
    std::string path(const std::string& name) const { return (directory_.path() / name).string(); }

    static std::string complaint_about(const std::string& path) {
        return complaint_of([&] { find_output(path); });
    }

    test::TemporaryDirectory directory_;
};

TEST_F(OutputPlaceOf, AFileIsItsNameInItsDirectory) {
    const OutputPlace fresh = find_output(path("new"));
    EXPECT_EQ(fresh.name, "new");
    EXPECT_FALSE(fresh.status.has_value());
    EXPECT_FALSE(fresh.is_special());
    test::write_file(path("old"), "text");
    const OutputPlace old = find_output(path("old"));
    ASSERT_TRUE(old.status.has_value());
    EXPECT_EQ(old.status->st_size, 4);
    EXPECT_FALSE(old.is_special());
}

TEST_F(OutputPlaceOf, LinksIsWhereTheLastOneLeads) {
    std::filesystem::create_directory(path("inner"));
    std::filesystem::create_symlink("inner/second", path("first"));
    std::filesystem::create_symlink("../target", path("inner/second"));
    const OutputPlace place = find_output(path("first"));
    EXPECT_EQ(place.name, "target");
    test::write_file(path("target"), "text");
    EXPECT_EQ(faccessat(place.directory.number(), "target", F_OK, 0), 0);
}

TEST_F(OutputPlaceOf, LinksInALoopIsReported) {
    std::filesystem::create_symlink("loop", path("loop"));
    EXPECT_EQ(complaint_about(path("loop")),
              path("loop") + ": cannot be created: Too many levels of symbolic links");
}

TEST_F(OutputPlaceOf, WhatIsNoFileIsReported) {
    test::write_file(path("file"), "text");
    EXPECT_EQ(complaint_about(""), ": cannot be created: No such file or directory");
    EXPECT_EQ(complaint_about("."), ".: cannot be created: Is a directory");
    EXPECT_EQ(complaint_about(path("")), path("") + ": cannot be created: Is a directory");
    EXPECT_EQ(complaint_about(path("file/x")), path("file/x") + ": cannot be created: Not a directory");
    EXPECT_EQ(complaint_about(path("no/x")), path("no/x") + ": cannot be created: No such file or directory");
}

TEST_F(OutputPlaceOf, AnOpenDescriptorIsItsNumber) {
    const test::Descriptor open = test::open_file(path("out"), O_WRONLY | O_CREAT);
    const std::string number = std::to_string(open.number());
    std::filesystem::create_symlink("/dev/fd/" + number, path("link"));
    for (const std::string& each : {"/dev/fd/" + number, "/proc/self/fd/" + number,
                                    "/proc/" + std::to_string(getpid()) + "/fd/" + number, path("link")}) {
        EXPECT_EQ(find_output(each).open_descriptor, open.number()) << each;
        EXPECT_TRUE(is_special(each)) << each;
    }
    EXPECT_EQ(find_output("-").open_descriptor, 1);
    EXPECT_EQ(find_output("/dev/stdout").open_descriptor, 1);
}

TEST_F(OutputPlaceOf, ADeviceOrAPipeIsSpecial) {
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    EXPECT_TRUE(is_special("/dev/null"));
    EXPECT_TRUE(is_special(path("pipe")));
    EXPECT_FALSE(is_special(path("new")));
    EXPECT_FALSE(is_special(path("missing/new")));
    EXPECT_FALSE(is_special("/dev/shm/korv-no-such-file"));
}

/// A directory of someone, where anyone may write but only remove what is theirs, like /tmp.
class OutputPlaceInASharedDirectory : public OutputPlaceOf {
protected:
    static constexpr uid_t owner_of_directory = 12'345;
    static constexpr uid_t attacker = 23'456;

    void SetUp() override {
        if (geteuid() != 0) {
            GTEST_SKIP() << "Only root can give files to others.";
        }
        std::filesystem::create_directory(path("shared"));
        ASSERT_EQ(chown(path("shared").c_str(), owner_of_directory, 0), 0);
        ASSERT_EQ(chmod(path("shared").c_str(), 01777), 0);
        test::write_file(path("victim"), "text");
        std::filesystem::create_symlink("../victim", link());
        test::write_file(file(), "text");
    }

    void give_to(uid_t owner) const {
        ASSERT_EQ(lchown(link().c_str(), owner, 0), 0);
        ASSERT_EQ(lchown(file().c_str(), owner, 0), 0);
    }

    std::string link() const { return path("shared/link"); }
    std::string file() const { return path("shared/file"); }
};

TEST_F(OutputPlaceInASharedDirectory, IsNotWhereAnotherUserPointsIt) {
    give_to(attacker);
    const std::string rest =
        " of another user in a directory that anyone can write to; expected one of your own";
    EXPECT_EQ(complaint_about(link()), link() + ": found a symbolic link" + rest);
    EXPECT_EQ(complaint_about(file()), file() + ": found a file" + rest);
}

TEST_F(OutputPlaceInASharedDirectory, MayBelongToTheUserOrToTheOwnerOfTheDirectory) {
    for (const uid_t owner : {geteuid(), owner_of_directory}) {
        give_to(owner);
        EXPECT_EQ(find_output(link()).name, "victim");
        EXPECT_EQ(find_output(file()).name, "file");
    }
}

TEST_F(OutputPlaceInASharedDirectory, MayBelongToAnyoneWhereNotAnyoneCanWrite) {
    give_to(attacker);
    ASSERT_EQ(chmod(path("shared").c_str(), 01775), 0);
    EXPECT_EQ(find_output(link()).name, "victim");
}

}  // namespace
}  // namespace korv::tools
