#pragma once

#include <ostream>

#include "rules/found_rule.h"

namespace korv::tools {

inline void PrintTo(const Contingency& table, std::ostream* out) {
    *out << table.both << " of " << table.premise << " and " << table.conclusion;
}

}  // namespace korv::tools
