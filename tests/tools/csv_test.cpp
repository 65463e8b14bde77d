#include "common/csv.h"

#include <gtest/gtest.h>

#include "tools/complaint.h"

namespace korv::tools {
namespace {

using Rows = std::vector<std::vector<std::string>>;

Rows rows_of(const std::string& text, char separator = ',') {
    const TextInput input = {"a.csv", text};
    CsvReader reader(input, separator);
    Rows rows;
    for (std::vector<CsvCell> row; reader.next(row);) {
        rows.emplace_back();
        for (const CsvCell& cell : row) {
            rows.back().emplace_back(cell.text);
        }
    }
    return rows;
}

std::string complaint(const std::string& text) {
    return complaint_of([&] { rows_of(text); });
}

TEST(Csv, HasARowALine) {
    EXPECT_EQ(rows_of("a,b\nc,d\n"), (Rows{{"a", "b"}, {"c", "d"}}));
    EXPECT_EQ(rows_of("a,b\r\nc,d"), (Rows{{"a", "b"}, {"c", "d"}}));
    EXPECT_EQ(rows_of("a\r"), (Rows{{"a"}}));
    EXPECT_EQ(rows_of(""), Rows{});
}

TEST(Csv, HasEmptyCells) {
    EXPECT_EQ(rows_of("a,,b,\n,\n"), (Rows{{"a", "", "b", ""}, {"", ""}}));
    EXPECT_EQ(rows_of("a,"), (Rows{{"a", ""}}));
}

TEST(Csv, HasBlankLinesWithoutCells) {
    EXPECT_EQ(rows_of("\na\n \n\r\n"), (Rows{{}, {"a"}, {}, {}}));
}

TEST(Csv, LeavesOutBlanksAroundCells) {
    EXPECT_EQ(rows_of(" a b ,\tc\n"), (Rows{{"a b", "c"}}));
}

TEST(Csv, KeepsWhatIsInQuotes) {
    EXPECT_EQ(rows_of("\"a, b\",\" c \"\n\"say \"\"d\"\"\",\"e\nf\"\n"),
              (Rows{{"a, b", " c "}, {"say \"d\"", "e\nf"}}));
    EXPECT_EQ(rows_of("\"\" , \"a\"\n"), (Rows{{"", "a"}}));
}

TEST(Csv, TakesAnySeparator) {
    EXPECT_EQ(rows_of("a,b;c\n", ';'), (Rows{{"a,b", "c"}}));
    EXPECT_EQ(rows_of("a b\t\tc\n", '\t'), (Rows{{"a b", "", "c"}}));
    EXPECT_EQ(rows_of("a b\n", ' '), (Rows{{"a", "b"}}));
}

TEST(Csv, KnowsWhereACellIs) {
    const TextInput input = {"a.csv", "ab, c\nd,\"e\"\n"};
    CsvReader reader(input, ',');
    std::vector<CsvCell> row;
    ASSERT_TRUE(reader.next(row));
    EXPECT_EQ(row.at(1).position, 4U);
    ASSERT_TRUE(reader.next(row));
    EXPECT_EQ(row.at(0).position, 6U);
    EXPECT_EQ(row.at(1).position, 8U);
}

TEST(Csv, ReportsAQuoteThatIsNotClosed) {
    EXPECT_EQ(complaint("a\nb,\"c\nd\n"),
              "a.csv:2:3: found a quote that is not closed; expected a closing quote");
}

TEST(Csv, KnowsWhereALineIs) {
    const TextInput input = {"a.csv", "a\n\n\"b\nc\"\r\n d"};
    CsvReader reader(input, ',');
    std::vector<std::size_t> positions;
    for (std::vector<CsvCell> row; reader.next(row);) {
        positions.push_back(reader.line_position());
    }
    EXPECT_EQ(positions, (std::vector<std::size_t>{0, 2, 3, 10}));
}

TEST(Csv, TakesACarriageReturnForALineEndOnlyBeforeALineFeedOrTheEnd) {
    EXPECT_EQ(rows_of("a\rb,c\r\r\nd \r\n\r"), (Rows{{"a\rb", "c\r"}, {"d"}, {}}));
    EXPECT_EQ(rows_of("\"a\"\r"), (Rows{{"a"}}));
}

TEST(Csv, KeepsTheCellsOfALineWithSeveralDoubledQuotes) {
    EXPECT_EQ(rows_of("\"a\"\"b\",\"\"\"\",\"\"\"\"\"\",\"\"\"c\"\n"), (Rows{{"a\"b", "\"", "\"\"", "\"c"}}));
}

TEST(Csv, CopiesNoCellWithoutDoubledQuotes) {
    const TextInput input = {"a.csv", "ab,\"c,d\""};
    CsvReader reader(input, ',');
    std::vector<CsvCell> row;
    ASSERT_TRUE(reader.next(row));
    EXPECT_EQ(row.at(0).text.data(), input.text.data());
    EXPECT_EQ(row.at(1).text.data(), input.text.data() + 4);
}

TEST(Csv, TakesCellsOfAnyLength) {
    const std::string cell(3'000'000, 'x');
    EXPECT_TRUE(rows_of(cell + ",\"" + cell + "\"\"\"") == (Rows{{cell, cell + '"'}}));
}

TEST(Csv, ReportsAQuoteThatIsNotClosedBehindDoubledOnes) {
    EXPECT_EQ(complaint("\"a\"\"\n"),
              "a.csv:1:1: found a quote that is not closed; expected a closing quote");
}

TEST(Csv, ReportsTextBehindAQuote) {
    EXPECT_EQ(complaint("\"a\"b\n"),
              "a.csv:1:4: found \"b\"; expected a separator or a line end behind the closing quote");
}

}  // namespace
}  // namespace korv::tools
