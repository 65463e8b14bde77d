#pragma once

#include <ostream>

#include "engine/rule_counts.h"

namespace korv {

/// Writes the whole rule-count file: totals, percentages, and the counts of the 24 forms for each kind.
void write_rule_counts(const RuleCounts& counts, std::ostream& out);

/// Writes the counts of the 24 forms for one kind.
void number_of_rules(Kind kind, const RuleCounts& counts, std::ostream& out);

}  // namespace korv
