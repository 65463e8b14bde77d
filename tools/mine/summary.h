#pragma once

#include <string>
#include <vector>

#include "mine/database.h"
#include "mine/miner.h"

namespace korv::tools {

/// What a run made, in a line for each number, and the korv command that goes on with it. `output` is the
/// path of the class file, or "-".
std::string summary(const Database& database, Count min_support, const std::vector<MinedClass>& classes,
                    const std::string& output, double seconds);

}  // namespace korv::tools
