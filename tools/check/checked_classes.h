#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "check/findings.h"
#include "common/text_input.h"
#include "engine/classes.h"

namespace korv::tools {

/// What korv stores of a class file.
struct StoredTotals {
    std::size_t classes = 0;
    std::size_t essentials = 0;
    std::size_t items = 0;  ///< distinct ones
};

/// The classes that the lines of a file mean.
struct CheckedClasses {
    ClassMap classes;
    std::vector<std::uint32_t> lines;  ///< of the classes, in their order
    StoredTotals stored;
    std::size_t unclear_lines = 0;  ///< of which it is not clear what class they mean
};

/// Reads a class file, and adds what is wrong with its lines, and with closed itemsets that are there twice,
/// to `findings`, as file 0 (see check_lines). Of lines with the same closed itemset the last one counts, as
/// for korv. The text is freed before the classes are put in order.
CheckedClasses check_class_file(TextInput input, Findings& findings);

}  // namespace korv::tools
