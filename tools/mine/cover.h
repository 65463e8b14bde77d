#pragma once

#include <cstddef>
#include <vector>

#include "mine/ranked_items.h"

namespace korv::tools {

/// An item by which an itemset may be extended.
struct Candidate {
    Rank rank = 0;
    Count joint = 0;  ///< transactions that hold all items of the extended itemset
    /// The largest and the sum of the supports of the extended itemset without one item, for each item but
    /// the candidate and the empty itemset.
    Count largest_part = 0;
    Count sum_of_parts = 0;
};

/// A cover answers questions about an itemset that grows and shrinks at its end. Items are ranks.
///
/// There are two with the same operations, and each is tested against a count in the transactions: DenseCover
/// keeps sets of transactions as bit vectors, SparseCover mostly as lists. Numbers of transactions are sums
/// over the lines of the database; whether an item is covered is a conjunction over them.
///
/// - pairs_of(rank, least, candidates): replaces `candidates` by the items below `rank`, ascending, that are
///   together with it in at least `least` transactions. Called for all frequent items, ascending, or for
///   none.
/// - enter(rank): adds an item, and returns the items, in any order, that the closure gains by it.
/// - leave(): removes the item that was added last.
/// - gain(rank): what enter would return, without the work for going on from there. For itemsets of two or
///   more items.
/// - announce(children, joint_supports): tells by which items, ascending, the itemset is going to be
/// extended,
///   and the sum of its joint supports with each of them.
/// - keep_frequent(least, candidates): sets the joint supports of the candidates with the itemset, and keeps
///   those with at least `least`. There is at least one; they are ascending, and below all of the itemset.
/// - own(rank): the number of transactions that hold this item and no item of the itemset.
/// - own_nanoseconds(rank): about how long own takes.

/// Suits items that are, on average, in at least one of fifty lines.
class DenseCover;

/// Suits items that are in few transactions.
class SparseCover;

}  // namespace korv::tools
