#pragma once

#include "engine/lattice_entries.h"
#include "engine/supports.h"

namespace korv {

/// The plain way to find supports: a walk over the classes by ascending cardinality. It says what the result
/// is, for contradictory classes too.
///
/// It relies on three properties of disjunctive support: that of a subset is never greater, a closed itemset
/// has the support of its essential itemsets, and whatever contains an essential itemset of a class has at
/// least the support of the class. Where the classes violate them, the result depends on the order of the
/// entries: on when the bounds first meet.
class SupportWalk final : public Supports {
public:
    /// `entries` must outlive the walk. Their successors are not needed.
    explicit SupportWalk(const LatticeEntries& entries) : entries_(entries) {}

    /// Takes any itemset. When it is closed the bounds stay as far as they were narrowed before its entry.
    /// One pass over the entries at most: O(classes * essential itemsets * items).
    Count settle(const Itemset& itemset, SupportBounds& bounds) override;

private:
    const LatticeEntries& entries_;
};

/// Whether the support of an entry is a lower bound on that of `itemset`, which is not the closed itemset of
/// the entry: whether the closed itemset of the entry or one of its essential itemsets is contained in it.
bool bounds_from_below(const LatticeEntry& entry, const Itemset& itemset);

}  // namespace korv
