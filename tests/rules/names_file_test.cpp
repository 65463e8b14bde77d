#include "rules/names_file.h"

#include <gtest/gtest.h>

#include "tools/complaint.h"

namespace korv::tools {
namespace {

std::string complaint(const std::string& text) {
    return complaint_of([&text] { read_names({"a.names", text}); });
}

TEST(NamesFile, NamesAreReadByItem) {
    const auto names = read_names({"a.names", "7\tbread\n2\tclass=1st, \xC3\xA9t\xC3\xA9\n"});

    EXPECT_EQ(names, (std::map<Item, std::string>{{2, "class=1st, \xC3\xA9t\xC3\xA9"}, {7, "bread"}}));
}

TEST(NamesFile, LineEndsMayBeOfAnyKind) {
    const std::map<Item, std::string> names = {{1, "a"}, {2, "b"}};
    EXPECT_EQ(read_names({"a.names", "1\ta\r\n2\tb\r\n"}), names);
    EXPECT_EQ(read_names({"a.names", "1\ta\n2\tb"}), names);
    EXPECT_TRUE(read_names({"a.names", ""}).empty());
}

struct Fault {
    std::string text;
    std::string complaint;  ///< behind the name of the file
};

class NamesFileFault : public testing::TestWithParam<Fault> {};

TEST_P(NamesFileFault, IsNamedWithItsPlace) {
    EXPECT_EQ(complaint(GetParam().text), "a.names:" + GetParam().complaint);
}

INSTANTIATE_TEST_SUITE_P(
    All, NamesFileFault,
    testing::Values(Fault{"1\ta\n\n", "2:1: found nothing; expected an item number"},
                    Fault{"bread\n", "1:1: found \"bread\"; expected an item number"},
                    Fault{"4294967296\ta\n", "1:1: found \"4294967296\"; expected an item number"},
                    Fault{"1 a\n", "1:1: found \"1 a\"; expected an item number"},
                    Fault{"12\n", "1:3: found nothing behind the item number; expected a tab and a name"},
                    Fault{"12\t\n", "1:4: found nothing; expected a name"},
                    Fault{"1\ta\n1\tb\n", "2:1: found the item 1 again; expected each item once"},
                    Fault{"1\ta\n2\ta\n",
                          "2:3: found the name \"a\" of the item 1; expected a different name for each "
                          "item"}));

TEST(NamesFile, NamesWithControlCharactersOrOtherBytesThanUtf8AreRefused) {
    EXPECT_TRUE(complaint("1\ta\tb\n").starts_with("a.names:1:4: "));
    EXPECT_TRUE(complaint("1\tab\xFF\n").starts_with("a.names:1:5: "));
}

}  // namespace
}  // namespace korv::tools
