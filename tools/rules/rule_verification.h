#pragma once

#include <vector>

#include "mine/database.h"
#include "rules/found_rule.h"
#include "rules/rule_writer.h"

namespace korv::tools {

/// Counts all rules again in the transactions (see Recount). Throws Error, an internal one that names the
/// rule, where one has other counts, or some that are not known.
void verify(const std::vector<FoundRule>& rules, const RuleBook& book, const Database& database);

}  // namespace korv::tools
