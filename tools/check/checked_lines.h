#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "check/findings.h"
#include "common/text_input.h"
#include "io/class_loading.h"

namespace korv::tools {

/// What is known of a record.
struct RecordPlace {
    std::uint32_t line;  ///< from 1
    bool is_stored;      ///< whether korv stores a class with these contents
    bool is_meant;       ///< whether the line means these contents
};

/// The records of a class file, in the order of their lines. A line of which korv reads something else than
/// it means has a record of each.
struct CheckedLines {
    Records records;
    std::vector<RecordPlace> places;  ///< of the records
    std::size_t unclear_lines = 0;    ///< of which it is not clear what class they mean
};

/// Looks at each line of a class file, and adds what is wrong with it to `findings`, as file 0: what the line
/// should be, and what korv, whose own reader is asked, makes of it.
///
/// korv reads on behind a line that does not end as it should, so a fault may take other lines with it: those
/// are looked at on their own, too.
///
/// O(bytes). The records hold what the text does, in some two to four times the memory.
CheckedLines check_lines(const TextInput& input, Findings& findings);

}  // namespace korv::tools
