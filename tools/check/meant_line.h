#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/finding_kind.h"
#include "engine/classes.h"

namespace korv::tools {

/// A fault of a line.
struct LineFault {
    FindingKind kind;
    std::size_t column;  ///< bytes from 1, in the line as it is
    std::string found;
    std::string expected;
};

/// A line, looked at closely.
struct MeantLine {
    std::vector<LineFault> faults;  ///< in the order of their columns as far as they are seen
    /// The class that the line would be without the faults, where it is clear what that is.
    std::optional<std::pair<Itemset, data>> meant;
    /// Whether `meant` is what the line most likely means, if korv reads it so.
    bool is_guess = false;
    bool is_skipped = false;  ///< whether it is no record, but an empty line or a comment
};

/// Looks for the faults of a line: behind each of them that can be taken out without changing a number, it
/// looks on. `line`: with its line end, where it has one. O(bytes * faults).
MeantLine meant_line(std::string_view line);

}  // namespace korv::tools
