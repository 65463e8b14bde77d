#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "check/checked_classes.h"
#include "check/findings.h"
#include "mine/database.h"

namespace korv::tools {

/// Which classes are counted again.
struct ClassSample {
    std::optional<std::size_t> classes;  ///< so many, chosen by chance; all where it is not given
    std::uint32_t seed = 1;              ///< the same seed chooses the same classes everywhere
};

/// Counts classes again, and adds, as file 0, what is not as in the database: a support, a closed itemset
/// that is not closed, an essential itemset that is not essential or has another support. Closures may lack
/// items that are in no class of the file, as those over frequent items do; a note says so.
///
/// `name`: of the database, for messages. O(items of the database * lines / 64) for each class at worst.
/// Returns how many classes were counted.
std::size_t check_against_database(const CheckedClasses& checked, const Database& database,
                                   const std::string& name, const ClassSample& sample, Findings& findings);

}  // namespace korv::tools
