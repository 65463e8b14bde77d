#pragma once

#include <string>

#include "rules/rule_search.h"
#include "rules/rule_writer.h"

namespace korv::tools {

/// What --count prints: how many of the rules there are of each form and kind, how many bytes they would take
/// in each format, and the same of what korv itself would write.
std::string rule_counts_report(const SearchResult& found, const KorvOutput& korv, const RuleBook& book,
                               const TerminalStyle& style);

}  // namespace korv::tools
