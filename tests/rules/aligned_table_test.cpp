#include "rules/aligned_table.h"

#include <gtest/gtest.h>

#include <string>

namespace korv::tools {
namespace {

class AlignedTableTest : public ::testing::Test {
protected:
    static std::string table(const std::vector<AlignedTable::Row>& rows, const TerminalStyle& style) {
        std::string text;
        AlignedTable table("thing", {"size", "weight"}, style,
                           [&text](std::string_view piece) { text += piece; });
        for (const AlignedTable::Row& row : rows) {
            table.add(row);
        }
        table.finish();
        return text;
    }
};

TEST_F(AlignedTableTest, NumbersItsRowsAndAlignsTheirCells) {
    EXPECT_EQ(table({{"an apple", 0, {"7", "180"}}, {"a pear", 0, {"1,000", "2"}}}, {.width = 80}),
              "#  thing      size  weight\n"
              "1  an apple      7     180\n"
              "2  a pear    1,000       2\n");
}

TEST_F(AlignedTableTest, PutsNumbersBelowTextsOfANarrowTerminal) {
    EXPECT_EQ(table({{"an apple", 0, {"7", "180"}}}, {.width = 30}),
              "1  an apple\n"
              "   size 7, weight 180\n");
}

TEST_F(AlignedTableTest, MakesTheEndOfATextBold) {
    EXPECT_EQ(table({{"an apple", 2, {"7", "180"}}}, {.width = 80, .has_color = true}),
              "\x1B[1m#  thing     size  weight\x1B[22m\n"
              "1  an \x1B[1mapple\x1B[22m     7     180\n");
}

TEST(BytesLessBlanks, CountsNoBlanks) {
    EXPECT_EQ(bytes_less_blanks(" a b=> "), 4U);
    EXPECT_EQ(bytes_less_blanks(""), 0U);
}

}  // namespace
}  // namespace korv::tools
