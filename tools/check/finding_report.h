#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "check/check_arguments.h"
#include "check/checked_classes.h"
#include "check/findings.h"

namespace korv::tools {

/// What the last line tells besides the findings.
struct ReportTotals {
    StoredTotals stored;
    /// How many classes were counted again, where these are not all.
    std::optional<std::size_t> sample = {};
    std::size_t mendable = 0;  ///< findings that --fix would mend, where it would write a file
};

/// The findings, one a line, then those that are not shown by code, and a last line with the totals.
std::string finding_report(const Findings& findings, const ReportTotals& totals, FindingFormat format);

}  // namespace korv::tools
