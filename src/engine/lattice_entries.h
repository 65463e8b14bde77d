#pragma once

#include <vector>

#include "base/itemset.h"
#include "engine/classes.h"

namespace korv {

/// Successors of a closed itemset in the order in which they were found. An antichain: none contains another.
using SuccessorList = std::vector<NodeRef>;

/// A class in the lattice.
struct LatticeEntry {
    /// Number of items of the closed itemset.
    Count cardinality;
    NodeRef node;
    /// The immediate closed proper subsets of the closed itemset.
    SuccessorList successors;

    const Itemset& itemset() const { return node->first; }
    Count support() const { return node->second.support; }
    const std::vector<Itemset>& essentials() const { return node->second.essentials; }
};

/// The lattice: all classes by ascending cardinality, then in the order of their map.
using LatticeEntries = std::vector<LatticeEntry>;

/// An entry without successors for each class. `classes` must stay as they are as long as the entries are
/// used. O(classes * log classes).
LatticeEntries lattice_entries(const ClassMap& classes);

/// The closed itemsets of the entries, in their order.
std::vector<const Itemset*> closed_itemsets(const LatticeEntries& entries);

/// The entry of a node; the end of the entries when there is none. O(log classes) comparisons of itemsets.
LatticeEntries::const_iterator find_entry(const LatticeEntries& entries, NodeRef node);

/// The entry of a closed itemset; the end of the entries when there is none. As fast as find_entry.
LatticeEntries::const_iterator find_closed(const LatticeEntries& entries, const Itemset& itemset);

}  // namespace korv
