#pragma once

#include <string>

#include "check/check_arguments.h"
#include "check/checked_classes.h"
#include "check/findings.h"

namespace korv::tools {

/// The findings, one a line, then those that are not shown by code, and a last line with the totals.
std::string finding_report(const Findings& findings, const StoredTotals& totals, FindingFormat format);

}  // namespace korv::tools
