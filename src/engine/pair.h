#pragma once

#include "base/itemset.h"
#include "base/support_bounds.h"
#include "engine/classes.h"

namespace korv {

/// Which itemsets a pair joins. f1 is a closed itemset, e1 one of its essential itemsets, f2 a closed itemset
/// of which f1 is a successor.
enum class PairKind {
    essential_and_rest,      ///< e1 and f1-e1: within a node
    essential_of_successor,  ///< e1 and f2-e1: between nodes
    successor,               ///< f1 and f2-f1: between nodes
};

/// Two disjoint itemsets whose union is the closed itemset of a class, and what is known of their supports:
/// all that rules between them need.
///
/// With N transactions the four counts of their table follow: base_support + difference_support - support of
/// them meet both itemsets, support - difference_support the base alone, support - base_support the
/// difference alone, and N - support neither. In classes that contradict each other they may wrap.
struct Pair {
    PairKind kind;
    /// The class: f1 within a node, f2 between nodes. The end of the classes for a pair made by hand.
    NodeRef node;
    const Itemset& base;
    const Itemset& difference;
    Count support;       ///< disjunctive support of the class, in transactions
    Count base_support;  ///< disjunctive support of the base
    /// Disjunctive support of the difference. Both ends are the support where that is known. Bounds that meet
    /// need not be known: a support of 0 is not, unless a class says it.
    SupportBounds difference_support;
    bool is_known;  ///< whether the support of the difference is known
    /// The class of the base: `node` itself within a node, its successor between nodes. Of no class for a
    /// pair made by hand.
    NodeRef base_node = {};
};

/// Takes pairs, one after the other.
class PairSink {
public:
    PairSink() = default;
    virtual ~PairSink() = default;
    PairSink(const PairSink&) = delete;
    PairSink& operator=(const PairSink&) = delete;

    /// The itemsets of `pair` last as long as the call.
    virtual void add(const Pair& pair) = 0;
};

}  // namespace korv
