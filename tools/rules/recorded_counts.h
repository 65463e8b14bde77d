#pragma once

#include <optional>

#include "base/itemset.h"
#include "rules/found_rule.h"
#include "rules/rule_file.h"

namespace korv::tools {

/// The counts of a rule as far as its record tells them, at both ends of their bounds; nothing is known of
/// the conclusion, of which they say 0.
struct RecordedCounts {
    Contingency at_low;   ///< with the smallest support, and the smallest confidence
    Contingency at_high;  ///< with the largest ones

    bool is_known() const { return at_low == at_high; }
};

/// What a record tells of its counts.
///
/// Six digits of a confidence leave one number of transactions that meet the premise, as long as that is
/// below 100,000; of larger numbers there may be several, which are bounds then. Where support and confidence
/// are bounds, the ends of both often go with two numbers that differ as the supports do: then these are
/// told, so that the confidence is bounded as narrowly as it can be, more narrowly than korv prints it. An
/// upper end that is no upper bound (of not(D)-->B between nodes) is not taken for one.
///
/// `transactions`: N, where it is known; otherwise what nothing bounds is at most 4,294,967,295. Returns
/// nothing where no numbers of transactions have such a confidence.
std::optional<RecordedCounts> recorded_counts(const RuleRecord& record, std::optional<Count> transactions);

}  // namespace korv::tools
