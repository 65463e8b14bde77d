#pragma once

#include <cstddef>
#include <string>

#include "check/findings.h"
#include "mine/database.h"

namespace korv::tools {

/// Counts the rules of a rule file again, and adds, as file `file`, where the support or the confidence is
/// not the counted one, as korv prints it, or not within the bounds. The upper bound of the confidence of
/// not(D)-->B between nodes, which korv prints though it is none, is counted apart, as a note.
///
/// At the first place that is not as korv writes it, adds that, and leaves out the rest of the file. Throws
/// Error where the file cannot be read. Returns how many rules were counted. O(lines of the database) for
/// each.
std::size_t check_rules(const std::string& path, const Database& database, std::size_t file,
                        Findings& findings);

}  // namespace korv::tools
