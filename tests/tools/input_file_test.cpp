#include "common/input_file.h"

#include <gtest/gtest.h>

#include "support/files.h"
#include "tools/complaint.h"

namespace korv::tools {
namespace {

TEST(InputFile, ReadsOnAndAnywhere) {
    const test::TemporaryDirectory directory;
    const std::string path = (directory.path() / "a").string();
    test::write_file(path, "0123456789");
    InputFile file(path);
    std::string bytes(4, ' ');
    EXPECT_EQ(file.read(bytes.data(), 4), 4U);
    EXPECT_EQ(bytes, "0123");
    EXPECT_EQ(file.read_at(8, bytes.data(), 4), 2U);
    EXPECT_EQ(bytes, "8923");
    EXPECT_EQ(file.read_at(10, bytes.data(), 4), 0U);
    EXPECT_EQ(file.read(bytes.data(), 4), 4U);
    EXPECT_EQ(bytes, "4567");
    EXPECT_TRUE(file.is_regular());
    EXPECT_EQ(file.expected_size(), 10U);
}

TEST(InputFile, SaysThatAFileChangedWhileItWasRead) {
    const test::TemporaryDirectory directory;
    const std::string path = (directory.path() / "a").string();
    test::write_file(path, "0123456789");
    const InputFile file(path);
    EXPECT_NO_THROW(file.require_unchanged());
    test::write_file(path, "012345678901");
    EXPECT_EQ(complaint_of([&] { file.require_unchanged(); }),
              path + ": changed while it was read; expected a file that nobody writes to");
}

}  // namespace
}  // namespace korv::tools
