#include "common/directory_lock.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>

#include "support/files.h"
#include "support/process.h"

namespace korv::tools {
namespace {

test::Descriptor open_directory(const test::TemporaryDirectory& directory) {
    return test::open_file(directory.path(), O_RDONLY | O_DIRECTORY);
}

bool is_locked(const test::TemporaryDirectory& directory) {
    return flock(open_directory(directory).number(), LOCK_EX | LOCK_NB) != 0;
}

TEST(DirectoryLock, LocksDirectoriesWhileItExists) {
    const test::TemporaryDirectory one;
    const test::TemporaryDirectory other;
    const test::Descriptor open_one = open_directory(one);
    const test::Descriptor open_other = open_directory(other);
    {
        const DirectoryLock lock({open_one.number(), open_other.number()});
        EXPECT_TRUE(is_locked(one));
        EXPECT_TRUE(is_locked(other));
    }
    EXPECT_FALSE(is_locked(one));
    EXPECT_FALSE(is_locked(other));
}

TEST(DirectoryLock, DoesNotWaitForItselfWhereADirectoryIsGivenTwice) {
    const test::TemporaryDirectory directory;
    const test::Descriptor one = open_directory(directory);
    const test::Descriptor other = open_directory(directory);
    const DirectoryLock lock({one.number(), other.number()});
    EXPECT_TRUE(is_locked(directory));
}

TEST(DirectoryLock, LeavesNoFile) {
    const test::TemporaryDirectory directory;
    const test::Descriptor open = open_directory(directory);
    const DirectoryLock lock({open.number()});
    EXPECT_EQ(test::read_files(directory.path()), test::Files{});
}

}  // namespace
}  // namespace korv::tools
