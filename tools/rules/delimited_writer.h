#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "rules/rule_writer.h"

namespace korv::tools {

// Rules as rows of cells: a header, then a row for each rule (the columns are those of rule_columns.h). Sides
// are in words (see side_words.h), with their names as they are. Lines end with LF; the text is UTF-8. Cells
// of measures that are not defined are empty, infinite ones are "inf" or "-inf".
//
// A spreadsheet takes a cell for a formula that begins with = + - @, a tab or a line end, and what it then
// does is up to who made the names. So a side that begins so, or with apostrophes before such a character,
// has one more apostrophe before it: the side of an item "=1+1" is "'=1+1", that of "'=1" is "''=1", and
// "'s-Hertogenbosch" stays as it is. A program that wants the side itself takes the first character from a
// cell that matches
// ^'+[=+\-@\t\r\n]. Numbers are left as they are, negative ones too.

/// Writes csv as of RFC 4180, but for the line ends: cells with commas, quotes or line ends are in quotes,
/// and quotes in them are doubled.
std::unique_ptr<RuleWriter> csv_writer(const RuleBook& book, TextSink sink);

/// Writes tsv, which has no quotes: in sides, a tab is spelt \t, a line feed \n, a carriage return \r, and a
/// backslash \\. Cells are to be read with quoting off.
std::unique_ptr<RuleWriter> tsv_writer(const RuleBook& book, TextSink sink);

/// A side as a cell of csv.
std::string csv_cell(std::string_view side);

/// A side as a cell of tsv.
std::string tsv_cell(std::string_view side);

}  // namespace korv::tools
