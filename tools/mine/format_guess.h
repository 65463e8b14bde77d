#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "common/text_input.h"

namespace korv::tools {

/// How transactions are written.
enum class Format {
    fimi,    ///< see fimi.h
    basket,  ///< see basket.h
    table,   ///< see table.h
};

/// The word for a format on the command line.
std::string word_for(Format format);

/// The separators that are looked for in a text. Any other has to be given.
inline constexpr std::string_view likely_separators = ",;\t|";

/// A separator as messages show it: in double quotes, or "tab".
std::string shown_separator(char separator);

/// What is known of a text before its format is guessed.
struct KnownOfText {
    std::optional<char> separator;
    bool weighted = false;  ///< see take_weight
};

/// What a text is, as far as its first lines tell.
struct FormatGuess {
    /// Nothing when the lines are doubtful, since they could be more than one format, or none.
    std::optional<Format> format;
    /// What stands between the cells of a basket or a table; nothing when the lines are doubtful about that.
    std::optional<char> separator;
    std::string seen;  ///< what was seen, for messages, such as "lines of 1 to 7 cells"
    /// The number of the line, from 1, where `seen` says what is in a single one.
    std::optional<std::size_t> line = {};
    /// Whether there is doubt because several separators are likely.
    bool has_several_separators = false;
};

/// Guesses the format of a text from its first lines, at most 1,000 lines in 1 MiB. Here and below, a
/// separator_line is none of them; a text with one is never fimi. A text without anything
/// but blanks is fimi. Prefers doubt to a guess that may be wrong: what could be two formats is neither.
///
/// fimi: whole numbers with blanks or tabs between them, in all lines, or in some with blanks (whatever is
/// wrong with the others will be reported). table: rows of equal length, at least two cells, under a first
/// row of distinct names that are not all numbers and do not occur again below. basket: lines of varying
/// length. Doubtful are, among others, a single line, a single column, rows that nearly all have the same
/// length, and lines of varying length that hold numbers alone.
FormatGuess guess_format(const TextInput& input, const KnownOfText& known);

/// The same, for a text that was found not to be fimi: basket, table or doubt. Where most lines are numbers
/// with blanks between them, there is doubt.
FormatGuess guess_format_of_names(const TextInput& input, const KnownOfText& known);

/// Whether a text seems to be a table, and its first line does not begin with how many times it occurs, as
/// those of weighted fimi and baskets do. `separator`: that of its cells; guessed where it is not given.
bool is_table_without_weights(const TextInput& input, std::optional<char> separator);

/// The separator of baskets or of a table, from the same lines; a comma when there is none of the likely
/// ones. Throws Error, which names --separator, when several are likely.
char guess_separator(const TextInput& input, Format format, bool weighted);

/// The one likely separator that the first lines hold where they do not hold `separator`; nothing when they
/// hold that, or several, or none. A separator_line that says another counts as well.
std::optional<char> another_separator(const TextInput& input, char separator, bool weighted);

/// What the first row of a table with one column holds instead: the most frequent of the likely separators
/// that are in most rows, and how often it occurs. Nothing when the row has several cells or holds none.
struct OtherSeparator {
    char separator;
    std::size_t count;
};
std::optional<OtherSeparator> other_separator_of_header(const TextInput& input, char separator);

}  // namespace korv::tools
