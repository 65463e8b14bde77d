#include "mine/named_items.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

TEST(NamedItems, AreNumberedFrom1AsTheyComeUp) {
    NamedItems items;
    EXPECT_EQ(items.number_of("milk"), 1U);
    EXPECT_EQ(items.number_of("bread"), 2U);
    EXPECT_EQ(items.number_of("milk"), 1U);
    EXPECT_EQ(std::move(items).names(), (std::vector<std::string>{"milk", "bread"}));
}

TEST(NamesFile, HasALineForEachItem) {
    EXPECT_EQ(names_file({"milk", "rye bread"}), "1\tmilk\n2\trye bread\n");
}

}  // namespace
}  // namespace korv::tools
