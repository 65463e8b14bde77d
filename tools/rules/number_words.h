#pragma once

#include <string>

#include "rules/holdout.h"
#include "rules/measures.h"
#include "rules/rule_columns.h"

namespace korv::tools {

// Numbers as people read them.

/// A share as a percentage: "73 %", below 10 % and close to 100 % with a decimal. Only 1 is "100 %", and only
/// 0 is "0 %"; what is closer to them than a decimal shows is "over 99.9 %" or "under 0.1 %".
std::string percent_text(double share);

/// A measure in few digits: "2.26", "0.087", "12.3", "1,235", "inf", and "-" for NaN. Only 0 and 1 read as
/// these, see distinct_text.
std::string measure_text(double number);

/// A number with so many decimals: "0.732".
std::string decimals_text(double number, int decimals);

/// A number with so many decimals, of which only 0 reads as 0 and only 1 as 1 (or -1 as -1). What would be
/// rounded to 0 has two digits instead, "0.00012"; what would be rounded to 1 lies beyond the next number
/// with so many decimals: ">0.999" is between that and 1, "<1.01" between 1 and that.
std::string distinct_text(double number, int decimals);

/// Two texts as a range, "330 to 376", or one of them where they are equal.
std::string range_text(const std::string& low, const std::string& high);

/// A count with commas, or its range.
std::string count_text(const CountRange& count);

/// How often a rule holds in other transactions: "88 of 97".
std::string holdout_text(const HoldoutCounts& holdout);

}  // namespace korv::tools
