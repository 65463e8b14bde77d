#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "engine/lattice_entries.h"
#include "engine/support_walk.h"
#include "engine/supports.h"
#include "index/bounds_cache.h"
#include "index/item_index.h"
#include "index/key_index.h"

namespace korv {

/// Answers what SupportWalk finds by a walk over all classes, from indexes.
///
/// Let L be the largest support of a class with a key within the itemset X (0 if there is none), and U the
/// smallest support of a class around X. The walk raises the lower bound at the classes of keys within X, and
/// lowers the upper bound at the classes around X. If X itself is closed the walk ends at its class, which is
/// the first one around X, since all others are larger; here X counts as a key of its class.
///
/// Consider the part of the walk before the first class around X of less support than L (all of it, where
/// there is none), and let U' be the smallest support around X there (infinite, where there is none). So
/// U' >= L. Let low and high be the starting bounds, narrowed by L and U'. Assume that low <= high, that high
/// is not 0, that a class of support L with a key within X comes in that part (or L is 0), and that the class
/// behind the part is not that of X.
///
/// - Within the part the lower bound is at most low and the upper bound at least high, and both are reached.
///   So the bounds meet there exactly if low = high, and the answer is that value. It is the same where the
///   walk ends at the class of X, of support s: there L >= s >= U', so low = high = s.
/// - Otherwise the part ends with low < high. A class behind it lowers the upper bound below L, if there is
///   one: the bounds have crossed and never meet. So the support stays unknown, and the bounds in the end are
///   low and the starting one narrowed by U.
///
/// A high of 0 is left out because a result of 0 leaves bounds to look at, and those of a closed X are as
/// they were before its class.
///
/// Everywhere else the order of the walk matters, and it is replayed: only the few classes that lower the
/// upper bound are visited, each found from the indexes as the next one to do so.
///
/// One contradiction anywhere costs each new itemset a search for U from the first class on, instead of from
/// support L on; only the queries that it touches are replayed.
///
/// Two kinds of classes are outside this. One with an essential itemset that is empty or sticks out of the
/// closed itemset is irregular: it is not indexed by its keys but asked, for each new itemset and in each
/// replay, as the walk asks it. And if the empty itemset is closed, or asked for, the walk itself decides.
///
/// The indexes never change once they are made. Each of several threads can ask them by an object of its own.
class DifferenceSupports final : public Supports {
public:
    struct Indexes;

    /// `entries` must outlive it unchanged; their successors are not needed. About O(total length of the
    /// itemsets * log keys), and a search for each class.
    explicit DifferenceSupports(const LatticeEntries& entries);

    /// Asks the indexes of another one, and remembers what it found by itself.
    explicit DifferenceSupports(std::shared_ptr<const Indexes> indexes);

    std::shared_ptr<const Indexes> indexes() const { return indexes_; }

    /// The second time an itemset is asked for, L, U and U' are only looked up.
    Count settle(const Itemset& itemset, SupportBounds& bounds) override;

    /// The classes within which a key of another class lies whose support is not smaller, in the order of the
    /// entries. There are none where the classes are those of a database, since such a key would have the
    /// same closure. Where classes of equal support have a key in common, only some of them may be found.
    /// Irregular classes do not count. Takes less time than construction.
    std::vector<NodeRef> contradicted_classes();

private:
    /// The position of a class in the order of the entries.
    using Position = std::uint32_t;

    static constexpr Count only_replay_tells = 0;

    SupportBounds find_bounds(const Itemset& itemset);
    Count upper_before_contradiction(const Itemset& itemset, Count lower);
    Count find_upper_before_contradiction(const Itemset& itemset, Count lower);
    Count replay(const Itemset& itemset, const SupportBounds& known, SupportBounds& bounds);
    Position first_to_raise(const Itemset& itemset, Count lower, Position before);
    Position first_irregular_to_raise(const Itemset& itemset, Count lower, Position before) const;
    Position first_of_less_support(Count support, Position before);

    const std::shared_ptr<const Indexes> indexes_;
    KeySearch key_search_;
    SupportWalk walk_;
    BoundsCache known_;  ///< L and U
    /// U' of the itemsets whose U is below their L, as both bounds; only_replay_tells where the answer above
    /// does not hold.
    BoundsCache contradicted_;
    // Working space.
    Itemset numbers_;  ///< of the itemset that is looked up
    ColumnSet around_;
};

}  // namespace korv
