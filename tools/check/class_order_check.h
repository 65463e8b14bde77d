#pragma once

#include <optional>

#include "check/checked_classes.h"
#include "check/findings.h"
#include "check/known_supports.h"

namespace korv::tools {

/// Adds, as file 0, where classes contradict each other or themselves, as those of a database never do: where
/// a support is above `transactions`, where a class within another one has no smaller support, where an
/// essential itemset lies within a class that does not contain its own, and where one contains another of the
/// same class.
///
/// (A closed itemset around an itemset contains the closure of the itemset, and has a larger support unless
/// it is that closure.)
///
/// For each closed itemset and essential itemset, asks an index of the classes for the first one around it,
/// which is its own if the classes are by support; and for those around it only where its class has items
/// that follow from no part of it. As a rule, this takes less time than korv needs for the lattice.
///
/// `known`: those of `checked`.
void check_order_of_classes(const CheckedClasses& checked, const KnownSupports& known,
                            std::optional<Count> transactions, Findings& findings);

}  // namespace korv::tools
