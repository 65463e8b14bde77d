#pragma once

#include <cstddef>

#include "check/checked_classes.h"
#include "check/findings.h"
#include "check/known_supports.h"

namespace korv::tools {

/// Adds notes, as file 0: classes of several items without an essential itemset, classes of more than
/// `most_items` items, intersections of classes that are no class, and how many supports of differences the
/// classes leave open.
///
/// The classes of a database are closed under intersection. So are they where each two successors of a class,
/// and each two classes that are within no other, have an intersection that is empty or a class; only these
/// are looked at, 5,000,000 of them at most.
///
/// The supports of differences are those that rules need, of 5,000 classes at most, spread evenly over the
/// lattice.
///
/// Builds the lattice, as korv does, and the indexes that bound supports.
void note_what_is_missing(const CheckedClasses& checked, const KnownSupports& known, std::size_t most_items,
                          Findings& findings);

}  // namespace korv::tools
