#pragma once

#include <set>
#include <vector>

#include "engine/lattice_entries.h"

namespace korv {

// The plain way to link each closed itemset with its successors. It says what the successors are, and in
// which order they stand; build_lattice finds the same by an index.

/// Entries that no later entry contains so far, in the order of the lattice.
using Frontier = std::vector<LatticeEntries::const_iterator>;

/// Nodes already examined for the current entry.
using VisitedNodes = std::set<NodeRef, NodeOrder>;

/// Fills the successor lists of `entries`, which are empty: each entry is compared with those on the
/// frontier, and with what lies below them. `frontier` and `visited` are its working containers: afterwards
/// `frontier` holds the entries that no other contains. Slow: grows with the square of the classes.
void walk_frontier(LatticeEntries& entries, Frontier& frontier, VisitedNodes& visited);

/// Offers to `entry` every node below `other` (an entry that shares items with it but is not contained in it)
/// that is contained in its itemset, depth first in list order, each node examined once while `visited` is
/// kept.
void processing_succ(const LatticeEntry& other, LatticeEntry& entry, const LatticeEntries& entries,
                     VisitedNodes& visited);

/// Offers `x` as a successor to the owner of `list`. Refused, with false, when a listed itemset contains it;
/// otherwise appended, after those that it contains were removed.
bool insert_succ(NodeRef x, SuccessorList& list);

}  // namespace korv
