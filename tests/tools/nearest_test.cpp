#include "common/nearest.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

using Words = std::vector<std::string>;

TEST(Nearest, AreTheWordsOfTheFewestEdits) {
    const Words known = {"recall", "lift", "left", "loft and more"};
    EXPECT_EQ(nearest("lft", known, 2), (Words{"lift", "left"}));
    EXPECT_EQ(nearest("lefte", known, 2), (Words{"left", "lift"}));
}

TEST(Nearest, AreAllWordsWhereTheyAreFew) {
    EXPECT_EQ(nearest("b", Words{"a", "b"}, 5), (Words{"b", "a"}));
    EXPECT_EQ(nearest("b", Words{}, 5), Words{});
}

TEST(Nearest, AreFoundWhateverTheirCase) {
    EXPECT_EQ(nearest("MILK", Words{"ilk", "Milk"}, 1), (Words{"Milk"}));
}

TEST(Nearest, AreComparedByTheirBeginnings) {
    const std::string beginning(64, 'a');
    EXPECT_EQ(nearest(beginning + "x", Words{"b", beginning + "yz", beginning + "x"}, 1),
              (Words{beginning + "x"}));
    EXPECT_EQ(nearest(beginning + "x", Words{"b", beginning + "yz", beginning + "z"}, 1),
              (Words{beginning + "yz"}));
}

TEST(Nearest, WordsThatDifferInCaseAloneComeFirst) {
    const std::string beginning(64, 'a');
    EXPECT_EQ(nearest(beginning + "x", Words{beginning + "y", beginning + "X"}, 1), (Words{beginning + "X"}));
}

TEST(EqualButForCase, AreAllSuchWords) {
    EXPECT_EQ(equal_but_for_case("Sex=Male", Words{"sex=female", "sex=male", "SEX=MALE", "sex=males"}),
              (Words{"sex=male", "SEX=MALE"}));
    EXPECT_EQ(equal_but_for_case("a", Words{}), Words{});
}

TEST(AllShown, PutsCommasBetweenWordsInQuotes) {
    EXPECT_EQ(all_shown(Words{"a", "b c", "\x01"}), R"("a", "b c", "\x01")");
    EXPECT_EQ(all_shown(Words{}), "");
}

}  // namespace
}  // namespace korv::tools
