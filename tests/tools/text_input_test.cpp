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

/// The beginnings of files that people take for text.
TEST_F(TextInputFile, MustNotBeAnotherKindOfFile) {
    for (const auto& [bytes, found] : std::vector<std::pair<std::string, std::string>>{
             {std::string("\xFF\xFE"
                          "1\0",
                          4),
              "text in UTF-16"},
             {std::string("\xFE\xFF\0"
                          "1",
                          4),
              "text in UTF-16"},
             {"PK\x03\x04", "a ZIP file, such as XLSX or ODS"},
             {"\xD0\xCF\x11\xE0\xA1", "an Office file, such as XLS"},
             {"\xFD"
              "7zXZ",
              "data compressed by xz"},
             {"\x28\xB5\x2F\xFD", "data compressed by zstd"},
             {"BZh91AY&SY", "data compressed by bzip2"}}) {
        const std::string expected = path() + ":1:1: found " + found + "; expected ";
        test::write_file(path(), bytes);
        EXPECT_TRUE(complaint(path()).starts_with(expected)) << complaint(path());
    }
    EXPECT_EQ(read("PK,BZh9\n").text, "PK,BZh9\n");
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

TEST(PlaceOf, CountsTheLinesBeforeTheText) {
    TextInput input = {"a", "1 2\n3 4\n"};
    EXPECT_EQ(place_of(input, 6).line, 2U);
    EXPECT_EQ(place_of(input, 6).column, 3U);
    input.lines_before = [] { return std::size_t{10}; };
    EXPECT_EQ(place_of(input, 6).line, 12U);
    EXPECT_EQ(place_of(input, 6).column, 3U);
}

}  // namespace
}  // namespace korv::tools
