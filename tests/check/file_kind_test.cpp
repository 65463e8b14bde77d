#include "check/file_kind.h"

#include <gtest/gtest.h>

#include <string>

namespace korv::tools {
namespace {

std::string kind_of(const std::string& text) {
    const auto other = other_file(text);
    return other ? std::string(other->found) : "";
}

TEST(FileKind, IsARuleFile) {
    EXPECT_EQ(kind_of("\t\t\t******************************************\n"
                      "\t\t\t***   Regles exactes inter noeuds     ***\n"),
              "a rule file of korv");
}

TEST(FileKind, IsANamesFile) {
    EXPECT_EQ(kind_of("1\tclass=1st\n2\tclass=2nd\n3\tage=child\n"), "the names of items");
    EXPECT_EQ(kind_of("item\tname\n1\t\xC3\xA9t\xC3\xA9\n2\tBrot\r\n"), "the names of items");
}

TEST(FileKind, IsTransactions) {
    EXPECT_EQ(kind_of("1 3\n1 3\n2 4\n"), "transactions");
    EXPECT_EQ(kind_of("milk,bread\nmilk\n\ntea,milk\n"), "transactions");
    EXPECT_EQ(kind_of("\"class\";\"age\"\n\"1st\";\"adult\"\n\"2nd\";\"child\"\n"), "transactions");
    EXPECT_EQ(kind_of("class\tage\n1st\tadult\n2nd\tchild\n"), "transactions");
}

TEST(FileKind, MayBeADamagedClassFile) {
    for (const std::string text :
         {"", "\n\n", "1\t5\t 1,\n1 2\t7\t 2,\n", "1;5; 1,\n1 2;7; 2,\n", "1 5 1,\n1 2 7 2,\n",
          "\"1\t5\t 1,\"\n\"2\t7\t 2,\"\n", "1\t5\t 1\n1 2\t7\t 2\n", "milk\t5\t milk,\ntea\t7\t tea,\n",
          "1\t5\n2\t7\n", "1 2\n", "# classes\n# of June\n1\t5\t 1,\n2\t7\t 2,\n"}) {
        EXPECT_EQ(kind_of(text), "") << text;
    }
    EXPECT_EQ(kind_of(std::string("a\0b\nc\0d\n", 8)), "");
}

}  // namespace
}  // namespace korv::tools
