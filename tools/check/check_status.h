#pragma once

#include "check/findings.h"

namespace korv::tools {

/// Exit statuses.
enum class CheckStatus {
    clean = 0,  ///< notes at most
    warnings = 1,
    errors = 2,
    not_checked = 3,  ///< wrong usage, an input that cannot be read, or an output that cannot be written
};

/// What the findings amount to.
inline CheckStatus status_of(const Findings& findings) {
    return findings.count(Severity::error) > 0     ? CheckStatus::errors
           : findings.count(Severity::warning) > 0 ? CheckStatus::warnings
                                                   : CheckStatus::clean;
}

}  // namespace korv::tools
