#pragma once

#include <string>

#include "mine/mining_request.h"

namespace CLI {
class App;
}

namespace korv::tools {

/// The options of mining as they are typed. They must exist until mining_request has been called.
struct MiningWords {
    std::string min_support;
    std::string min_joint;
    std::string min_own;
    std::string max_size;
    std::string closure_items = "frequent";
    std::string max_classes;
    std::string max_seconds;
};

/// Adds the options that say what is mined, as a group, to the command line of a program.
void add_mining_options(CLI::App& app, MiningWords& words);

/// What the options say, once `app` has parsed the command line. Without --min-support, there is none.
MiningRequest mining_request(const CLI::App& app, const MiningWords& words);

}  // namespace korv::tools
