#include "mine/transaction_reader.h"

#include <gtest/gtest.h>

#include "tools/complaint.h"
#include "tools/named_database.h"

namespace korv::tools {
namespace {

ReadingOptions of_table() {
    ReadingOptions options;
    options.format = Format::table;
    options.separator = ';';
    return options;
}

ReadingReport chosen_for(const std::string& text) {
    return choose_reader({"a", text}, of_table()).report;
}

TEST(EndOfHeader, IsBehindItsLine) {
    const std::string text = "kind;age\nx;1\n";
    EXPECT_EQ(end_of_header({"a", text}, chosen_for(text)), 9U);
}

TEST(EndOfHeader, IsBehindALineThatNamesTheSeparator) {
    const std::string text = "sep=;\nkind;age\nx;1\n";
    EXPECT_EQ(end_of_header({"a", text}, chosen_for(text)), 15U);
}

TEST(EndOfHeader, IsBehindAllLinesOfAQuotedName) {
    const std::string text = "kind;\"a\nge\n\"\nx;1\n";
    EXPECT_EQ(end_of_header({"a", text}, chosen_for(text)), 13U);
}

TEST(EndOfHeader, Is0WhereAQuoteIsNotClosed) {
    const std::string text = "kind;\"age\nx;1\n";
    EXPECT_EQ(end_of_header({"a", text}, chosen_for(text)), 0U);
}

TEST(ReaderOfParts, ReadsLinesBehindTheHeaderOfAnotherProcess) {
    const ReadingOptions options = of_table();
    TransactionReader reader(options, choose_reader({"a", "kind;age\nx;1\n"}, options));
    reader.take_header();
    reader.add_part({.lines = {"a", "y;2\nx;2\n"}});
    EXPECT_EQ(named_columns(reader.finish()),
              (NamedColumns{{"kind=y", {0}}, {"kind=x", {1}}, {"age=2", {0, 1}}}));
}

TEST(ReaderOfParts, NamesTheLineOfTheWholeFile) {
    ReadingOptions options;
    options.format = Format::fimi;
    TransactionReader reader(options, choose_reader({"a", "1 2\n"}, options));
    TextPart part = {.lines = {"a", "3\nx\n"}, .beginning = [] { return TextInput{"a", "1 2\n"}; }};
    part.lines.lines_before = [] { return std::size_t{40}; };
    EXPECT_EQ(complaint_of([&] { reader.add_part(part); }), R"(a:42:1: found "x"; expected an item number)");
}

}  // namespace
}  // namespace korv::tools
