#include "mine_mpi/quoted_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "common/csv.h"

namespace korv::tools {
namespace {

constexpr RowForm commas = {',', false};

TEST(QuotedRows, AreRowsWhereNoQuoteIs) {
    const QuotedRows rows = find_quoted_rows("a,b\nc\n", false, commas);
    EXPECT_EQ(rows.first_row, 0U);
    EXPECT_FALSE(rows.ends_in_quotes);
}

TEST(QuotedRows, BeginBehindTheRowOfTheQuotes) {
    EXPECT_EQ(find_quoted_rows("a,b\nc", true, commas).first_row, std::nullopt);
    EXPECT_TRUE(find_quoted_rows("a,b\nc", true, commas).ends_in_quotes);
    EXPECT_EQ(find_quoted_rows("a\nb\",c\nd\n", true, commas).first_row, 7U);
    EXPECT_EQ(find_quoted_rows("a\",\"\n\",c\nd\n", true, commas).first_row, 9U);
    EXPECT_FALSE(find_quoted_rows("a\nb\",c\nd\n", true, commas).ends_in_quotes);
}

TEST(QuotedRows, TakeTwoQuotesForOneOfTheCell) {
    EXPECT_TRUE(find_quoted_rows("x,\"a\"\"\n", false, commas).ends_in_quotes);
    EXPECT_FALSE(find_quoted_rows("x,\"a\"\"\"\n", false, commas).ends_in_quotes);
}

TEST(QuotedRows, TakeAQuoteWithinAWordForAByteOfIt) {
    EXPECT_FALSE(find_quoted_rows("x,a\"\ny\n", false, commas).ends_in_quotes);
    EXPECT_TRUE(find_quoted_rows("x, \t\"a\ny\n", false, commas).ends_in_quotes);
}

TEST(QuotedRows, PassOverHowOftenALineOccurs) {
    EXPECT_FALSE(find_quoted_rows("2 \"a\"\n", false, {',', true}).ends_in_quotes);
    EXPECT_TRUE(find_quoted_rows("  2 \"a\n", false, {',', true}).ends_in_quotes);
    EXPECT_FALSE(find_quoted_rows("  2 \"a\n", false, commas).ends_in_quotes);
}

/// Where rows begin, as the reader of cells has it.
std::vector<std::size_t> begins_of_rows(const TextInput& input) {
    CsvReader reader(input, ',');
    std::vector<std::size_t> begins;
    for (std::vector<CsvCell> row; reader.next(row);) {
        begins.push_back(reader.line_position());
    }
    return begins;
}

TEST(QuotedRows, BeginWhereTheReaderOfCellsHasThem) {
    const std::vector<std::string> cells = {"a", "\"b\n\"", "\"\"\"\n,\"", "c\"d", "", " \"\n\n\" "};
    for (unsigned seed = 0; seed < 2000; ++seed) {
        std::mt19937 random(seed);
        TextInput input;
        for (int row = 0; row < 6; ++row) {
            input.text += cells[random() % cells.size()] + "," + cells[random() % cells.size()] + "\n";
        }
        const std::vector<std::size_t> begins = begins_of_rows(input);
        for (std::size_t end = 0; (end = input.text.find('\n', end)) != std::string::npos;) {
            ++end;
            const auto next = std::lower_bound(begins.begin(), begins.end(), end);
            const bool is_row = end == input.text.size() || (next != begins.end() && *next == end);
            const std::string_view text = input.text;
            EXPECT_EQ(find_quoted_rows(text.substr(0, end), false, commas).ends_in_quotes, !is_row)
                << input.text << "seed " << seed;
            if (!is_row) {
                const auto found = find_quoted_rows(text.substr(end), true, commas).first_row;
                EXPECT_EQ(found ? end + *found : input.text.size(),
                          next != begins.end() ? *next : input.text.size())
                    << input.text << "seed " << seed;
            }
        }
    }
}

}  // namespace
}  // namespace korv::tools
