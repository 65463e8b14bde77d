#include "common/text_input.h"

#include <gtest/gtest.h>

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

TEST_F(TextInputFile, ThatIsMissingIsNamed) {
    EXPECT_EQ(complaint(path()), path() + ": cannot be read: No such file or directory");
}

TEST_F(TextInputFile, MustNotBeADirectory) {
    const std::string directory = directory_.path().string();
    EXPECT_EQ(complaint(directory), directory + ": cannot be read: Is a directory");
}

}  // namespace
}  // namespace korv::tools
