#pragma once

#include "base/itemset.h"
#include "engine/classes.h"
#include "engine/lattice_entries.h"
#include "engine/pair.h"
#include "engine/supports.h"

namespace korv {

/// The stream of pairs between which there are rules, in the order of the rule files.
///
/// Each operation below hands some of the pairs to the sink: one for each essential itemset of a class and
/// the rest of it, one for each successor of a class and the rest of it, one for each essential itemset of
/// that successor. Where a class has exactly two of them and they partition it, only the first has a pair:
/// that of the second would be the same, exchanged. Each pair costs a query for a support.
class Pairs {
public:
    /// Refers to both.
    Pairs(Supports& supports, PairSink& sink) : supports_(supports), sink_(sink) {}

    /// All pairs of one class: those within its node, then those between it and its successors. Those of all
    /// classes are the whole stream in another order, which keeps together what one class yields.
    void of_class(const LatticeEntry& entry);

    /// Those within all nodes, in the order of the map.
    void intra_node(const ClassMap& classes);

    /// Those within a node of one essential itemset.
    void intra_node(NodeRef node, const Itemset& essential);

    /// Those within a node that has exactly two essential itemsets.
    void intra_node_of_two_essentials(NodeRef node);

    /// Those between all nodes and their successors, in the order of the lattice.
    void inter_node(const LatticeEntries& entries);

    /// The one between a node and `lower`, its successor.
    void successor(NodeRef node, NodeRef lower);

    /// Those between a node and each essential itemset of `lower`, its successor.
    void essentials_of_successor(NodeRef node, NodeRef lower);

    /// Those between an entry that has exactly two successors and these.
    void inter_node_of_two_successors(const LatticeEntry& entry);

private:
    void within_node(NodeRef node);
    void between_nodes(const LatticeEntry& entry);
    void each_successor(const LatticeEntry& entry);
    void settle_and_add(PairKind kind, NodeRef node, const Itemset& base, NodeRef base_node, Count lower);

    Supports& supports_;
    PairSink& sink_;
};

/// The pairs of all classes, as Pairs finds them: within the nodes, then between them. The successors of the
/// entries must be linked.
void for_each_pair(const ClassMap& classes, const LatticeEntries& entries, Supports& supports,
                   PairSink& sink);

}  // namespace korv
