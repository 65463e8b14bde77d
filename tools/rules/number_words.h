#pragma once

#include <string>

#include "rules/measures.h"
#include "rules/rule_columns.h"

namespace korv::tools {

// Numbers as people read them.

/// A share as a percentage: "73 %", below 10 % and close to 100 % with a decimal. Only 1 is "100 %", and only
/// 0 is "0 %"; what is closer to them than a decimal shows is "over 99.9 %" or "under 0.1 %".
std::string percent_text(double share);

/// A measure in few digits: "2.26", "0.087", "12.3", "1,235", "inf", and "-" for NaN.
std::string measure_text(double number);

/// A number with so many decimals: "0.732".
std::string decimals_text(double number, int decimals);

/// A share with three decimals. Only 1 is "1.000": what is closer to it than that shows is "0.999".
std::string share_text(double share);

/// Two texts as a range, "330 to 376", or one of them where they are equal.
std::string range_text(const std::string& low, const std::string& high);

/// A count with commas, or its range.
std::string count_text(const CountRange& count);

}  // namespace korv::tools
