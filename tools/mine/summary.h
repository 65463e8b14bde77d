#pragma once

#include <string>
#include <vector>

#include "mine/database.h"
#include "mine/miner.h"

namespace korv::tools {

/// The results of a run, with a line for each number, and the korv command to go on with. `output` is the
/// path of the class file, or "-".
std::string summary(const Database& database, Count min_support, const MinedClasses& classes,
                    const std::string& output, double seconds);

}  // namespace korv::tools
