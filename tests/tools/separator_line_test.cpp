#include "mine/separator_line.h"

#include <gtest/gtest.h>

#include <string>

namespace korv::tools {
namespace {

/// The separator of such a first line, and what follows it; empty where the first line is another.
std::string split(const std::string& text) {
    const auto line = separator_line({"a.csv", text});
    return line ? line->separator + ("|" + text.substr(line->end)) : "";
}

TEST(SeparatorLine, SaysWhatTheSeparatorIs) {
    EXPECT_EQ(split("sep=;\na;b\n"), ";|a;b\n");
    EXPECT_EQ(split("sep=,\r\na,b\r\n"), ",|a,b\r\n");
    EXPECT_EQ(split("sep=\t\na\tb\n"), "\t|a\tb\n");
    EXPECT_EQ(split("SEP=|\n"), "||");
    EXPECT_EQ(split("sep=;"), ";|");
}

TEST(SeparatorLine, HoldsNothingElse) {
    for (const char* const text : {"", "sep=\n;\n", "sep=;;\n", "sep=x\n", "sep=; \n", "set=;\n", "sep;\n",
                                   "\nsep=;\n", "a;b\nsep=;\n"}) {
        EXPECT_EQ(split(text), "") << text;
    }
}

}  // namespace
}  // namespace korv::tools
