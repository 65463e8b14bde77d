#include "common/text_input.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <fstream>
#include <thread>

#include "support/files.h"
#include "tools/complaint.h"

namespace korv::tools {
namespace {

class TextInputFile : public ::testing::Test {
protected:
    std::string path() const { return (directory_.path() / "input").string(); }

    TextInput read(const std::string& bytes) const {
        test::write_file(path(), bytes);
        return read_text(path());
    }

    /// What is said of a file that cannot be read.
    static std::string complaint(const std::string& path) {
        return complaint_of([&] { read_text(path); });
    }

    test::TemporaryDirectory directory_;
};

TEST_F(TextInputFile, IsReadWhole) {
    const std::string bytes("a\0b\r\n\xFF", 6);
    const TextInput input = read(bytes);
    EXPECT_EQ(input.text, bytes);
    EXPECT_EQ(input.name, path());
}

TEST_F(TextInputFile, MayBeEmpty) {
    EXPECT_EQ(read("").text, "");
}

TEST_F(TextInputFile, MayBeLargerThanAnyBuffer) {
    const std::string bytes(5'000'000, 'x');
    EXPECT_TRUE(read(bytes).text == bytes);
}

TEST_F(TextInputFile, LosesAByteOrderMarkAtItsBeginning) {
    EXPECT_EQ(read("\xEF\xBB\xBF"
                   "1 2\n")
                  .text,
              "1 2\n");
    EXPECT_EQ(read("1 \xEF\xBB\xBF").text, "1 \xEF\xBB\xBF");
}

TEST_F(TextInputFile, MayBeAPipe) {
    ASSERT_EQ(mkfifo(path().c_str(), 0600), 0);
    const std::string bytes(3'000'000, 'x');
    std::thread writer([&] { test::write_file(path(), bytes); });
    EXPECT_TRUE(read_text(path()).text == bytes);
    writer.join();
}

TEST_F(TextInputFile, MayBeOfTheSystemsOwnWithoutASize) {
    EXPECT_NE(read_text("/proc/self/status").text.find("Pid:"), std::string::npos);
}

TEST_F(TextInputFile, MustNotChangeWhileItIsRead) {
    test::write_file(path(), std::string(5'000'000, 'x'));
    std::atomic<bool> is_done = false;
    std::thread writer([&] {
        for (std::ofstream file(path(), std::ios::app); !is_done;) {
            file << 'x' << std::flush;
        }
    });
    std::string said;
    while (said.empty()) {
        said = complaint(path());
    }
    is_done = true;
    writer.join();
    EXPECT_EQ(said, path() + ": changed while it was read; expected a file that nobody writes to");
}

TEST_F(TextInputFile, ThatIsMissingIsNamed) {
    EXPECT_EQ(complaint(path()), path() + ": cannot be read: No such file or directory");
}

TEST_F(TextInputFile, MustNotBeADirectory) {
    const std::string directory = directory_.path().string();
    EXPECT_EQ(complaint(directory), directory + ": cannot be read: Is a directory");
}

}  // namespace
}  // namespace korv::tools
