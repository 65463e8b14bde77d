#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "base/itemset.h"

namespace korv::tools {

/// How findings are written.
enum class FindingFormat { text, json };

/// What the command line asks for.
struct CheckArguments {
    std::string path;                   ///< of the class file; "-" for standard input
    std::optional<Count> transactions;  ///< N
    std::size_t most = 20;              ///< findings that are shown; 0 for all
    FindingFormat format = FindingFormat::text;
    bool quiet = false;  ///< nothing but the exit status
};

/// Reads the command line. When it asks for help, the version, the codes or completions, prints that and ends
/// the program with status 0; when it is wrong, with status 3. Throws Error for options that contradict each
/// other.
CheckArguments parse_check_arguments(int argc, char** argv);

}  // namespace korv::tools
