#pragma once

#include "base/work_sharing.h"
#include "engine/lattice_entries.h"

namespace korv {

/// Fills the successor lists of `entries`, which are empty, with what walk_frontier finds, in the same order,
/// but by the Hasse diagram of the closed itemsets. Where the empty itemset is a class the walk itself runs:
/// it reaches that itemset by other rules. No class reader yields one. What takes the time of the diagram is
/// shared.
void link_successors(LatticeEntries& entries, const WorkSharing& sharing = {});

}  // namespace korv
