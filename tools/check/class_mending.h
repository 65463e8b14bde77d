#pragma once

#include <cstddef>
#include <string>

#include "check/check_status.h"
#include "check/checked_classes.h"
#include "check/findings.h"

namespace korv::tools {

/// What keeps a file from being mended without a guess: how many findings of each kind of line that --fix
/// leaves alone, "no-comma 2, no-tab 1". Empty where there are none.
std::string what_is_not_mended(const Findings& findings);

/// How many findings --fix mends; 0 where it would write no file, since that would be a guess.
std::size_t mendable(const CheckedClasses& checked, const Findings& findings);

/// What the findings of a mended file amount to: those that --fix mends no longer count.
CheckStatus status_of_mended(const Findings& findings);

/// The classes in the order of their lines, as the grammar says, with ascending items.
std::string mended_text(const CheckedClasses& checked);

/// What was done, a line; `output`: the name of the file. "OUT: 96 classes; mended: carriage-return 96".
std::string mending_report(const Findings& findings, const CheckedClasses& checked,
                           const std::string& output);

}  // namespace korv::tools
