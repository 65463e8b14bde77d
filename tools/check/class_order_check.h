#pragma once

#include <optional>

#include "check/checked_classes.h"
#include "check/findings.h"

namespace korv::tools {

/// Adds, as file 0, where classes contradict each other or themselves, as those of a database never do: where
/// a support is above `transactions`, where a class within another one has no smaller support, where an
/// essential itemset lies within a class that does not contain its own, and where one contains another of the
/// same class.
///
/// (A closed itemset around an itemset contains the closure of the itemset, and has a larger support unless
/// it is that closure.)
///
/// Asks an index of the classes for those around each closed itemset and around each essential itemset:
/// O(classes / 64) words of bitmaps for each item of them at worst; as a rule less than korv needs for the
/// lattice.
void check_order_of_classes(const CheckedClasses& checked, std::optional<Count> transactions,
                            Findings& findings);

}  // namespace korv::tools
