#pragma once

#include "base/itemset.h"
#include "base/support_bounds.h"

namespace korv {

/// Where the disjunctive supports of itemsets come from that need not be closed.
///
/// SupportWalk is the plain way, DifferenceSupports the fast one. They give the same results, and the same
/// bounds where the result is 0.
class Supports {
public:
    Supports() = default;
    virtual ~Supports() = default;
    Supports(const Supports&) = delete;
    Supports& operator=(const Supports&) = delete;

    /// The support of `itemset`, which lies within a class, from the classes alone. `bounds` are bounds on it
    /// that the caller knows; they are narrowed.
    ///
    /// Returns the support when the bounds meet, or when `itemset` is closed; otherwise 0, and only the
    /// bounds are known. A support of 0 cannot be told from an unknown one by the result. Where the result is
    /// not 0 the bounds may or may not have been narrowed.
    virtual Count settle(const Itemset& itemset, SupportBounds& bounds) = 0;
};

}  // namespace korv
