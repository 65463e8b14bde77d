#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/itemset.h"
#include "check/database_check.h"
#include "mine/reading.h"

namespace korv::tools {

/// How findings are written.
enum class FindingFormat { text, json };

/// What becomes of notes.
enum class NoteChoice {
    none,     ///< they are not looked for
    counted,  ///< by code
    shown,
};

/// What the command line asks for.
struct CheckArguments {
    std::string path;                   ///< of the class file; "-" for standard input
    std::optional<Count> transactions;  ///< N
    std::string database;               ///< path of the transactions; empty for none
    std::string names;                  ///< path of a names file; empty for the default
    ReadingOptions reading;             ///< of `database`
    ClassSample sample;
    std::vector<std::string> rules;  ///< paths of rule files
    std::string mended;              ///< path of the mended file; empty for none
    NoteChoice notes = NoteChoice::counted;
    std::size_t most_items = 100;  ///< of a class that is not large
    std::size_t most = 20;         ///< findings that are shown; 0 for all
    FindingFormat format = FindingFormat::text;
    bool quiet = false;  ///< nothing but the exit status
};

/// Reads the command line. When it asks for help, the version, the codes or completions, prints that and ends
/// the program with status 0; when it is wrong, with status 3. Throws Error for options that contradict each
/// other.
CheckArguments parse_check_arguments(int argc, char** argv);

}  // namespace korv::tools
