#pragma once

#include <optional>
#include <string>
#include <vector>

#include "mine/reading.h"

namespace CLI {
class App;
}

namespace korv::tools {

/// The options of reading as they are typed. They must exist until reading_options has been called.
struct ReadingWords {
    std::string format;
    std::string separator;
    std::string columns;
    std::string ignored;
    std::string missing;
    std::vector<std::string> bins;
    std::vector<std::string> splits;
    bool only_true = false;
    bool weighted = false;
    std::string weight;
};

/// What transactions are read for.
enum class Reader {
    mining,
    /// Deriving rules: the input may be a class file or rule files, which are the words "classes" and "rules"
    /// in ReadingWords::format, and columns of many numbers are cut unless ReadingWords::bins is the word
    /// "none".
    rules,
};

/// Adds the options that say how transactions are read, as a group, to the command line of a program.
void add_reading_options(CLI::App& app, ReadingWords& words, Reader reader = Reader::mining);

/// What the options say, once `app` has parsed the command line. There is no format for "classes" and
/// "rules", and no rule for "none". Throws Error where they contradict each other or do not go with the
/// format that they name.
ReadingOptions reading_options(const CLI::App& app, const ReadingWords& words);

/// Parses one byte, or "tab". Returns nothing for anything else, and for a quote and a line end, which cannot
/// be separators.
std::optional<char> parse_separator(const std::string& text);

/// The words of a list as it is typed, with commas between them; a word that holds a comma is in double
/// quotes, as in CSV. Blanks around words and empty words are left out. Throws Error, which begins with the
/// name of the option, for quotes that do not match.
std::vector<std::string> parse_words(const std::string& option, const std::string& text);

}  // namespace korv::tools
