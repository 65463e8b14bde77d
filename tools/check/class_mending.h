#pragma once

#include <string>

#include "check/check_status.h"
#include "check/checked_classes.h"
#include "check/findings.h"
#include "common/atomic_output.h"

namespace korv::tools {

/// What keeps a file from being mended without a guess: how many findings of each kind of line that --fix
/// leaves alone, "no-comma 2, no-tab 1". Empty where there are none.
std::string what_is_not_mended(const Findings& findings);

/// What the findings of a mended file amount to: those that --fix mends no longer count.
CheckStatus status_of_mended(const Findings& findings);

/// Writes the classes in the order of their lines, as the grammar says, with ascending items.
void write_mended(const CheckedClasses& checked, AtomicOutput& output);

/// What was done: "OUT: 96 classes; mended: carriage-return 96", a line.
std::string mending_report(const Findings& findings, const CheckedClasses& checked,
                           const AtomicOutput& output);

}  // namespace korv::tools
