#include "common/shell_word.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

TEST(ShellWord, IsPlainWhereItCanBe) {
    EXPECT_EQ(shell_word("data/a-b_c.classes"), "data/a-b_c.classes");
}

TEST(ShellWord, IsQuotedWhereAShellWouldReadIt) {
    EXPECT_EQ(shell_word(""), "''");
    EXPECT_EQ(shell_word("my t's.classes"), "'my t'\\''s.classes'");
    EXPECT_EQ(shell_word("$HOME"), "'$HOME'");
}

TEST(ShellWord, IsSpeltWhereATerminalWouldObeyIt) {
    EXPECT_EQ(shell_word("a\x1B'b"), R"($'a\x1B\'b')");
}

}  // namespace
}  // namespace korv::tools
