#include "engine/pairs.h"

namespace korv {

void Pairs::of_class(const LatticeEntry& entry) {
    within_node(entry.node);
    between_nodes(entry);
}

void Pairs::intra_node(const ClassMap& classes) {
    for (NodeRef node = classes.begin(); node != classes.end(); ++node) {
        within_node(node);
    }
}

/// The pairs within a node, in the order of its essential itemsets.
void Pairs::within_node(NodeRef node) {
    const auto& essentials = node->second.essentials;
    if (essentials.size() == 2) {
        intra_node_of_two_essentials(node);
        return;
    }
    for (const Itemset& essential : essentials) {
        intra_node(node, essential);
    }
}

void Pairs::intra_node(NodeRef node, const Itemset& essential) {
    settle_and_add(PairKind::essential_and_rest, node, essential, node, 0);
}

void Pairs::intra_node_of_two_essentials(NodeRef node) {
    const Itemset& first = node->second.essentials.front();
    const Itemset& second = node->second.essentials.back();
    const Itemset rest = difference(node->first, first);
    if (rest != second) {
        intra_node(node, first);
        intra_node(node, second);
        return;
    }
    // Not asked for: the support of an essential itemset is that of its class, also where the classes
    // contradict each other and an answer would differ.
    const Count s = node->second.support;
    sink_.add({PairKind::essential_and_rest, node, first, rest, s, s, {s, s}, true, node});
}

void Pairs::inter_node(const LatticeEntries& entries) {
    for (const LatticeEntry& entry : entries) {
        between_nodes(entry);
    }
}

/// The pairs between an entry and its successors.
void Pairs::between_nodes(const LatticeEntry& entry) {
    if (entry.successors.size() == 2) {
        inter_node_of_two_successors(entry);
    } else {
        each_successor(entry);
    }
}

/// The pairs of an entry with its successors, one after the other.
void Pairs::each_successor(const LatticeEntry& entry) {
    for (const NodeRef each : entry.successors) {
        successor(entry.node, each);
        essentials_of_successor(entry.node, each);
    }
}

void Pairs::successor(NodeRef node, NodeRef lower) {
    settle_and_add(PairKind::successor, node, lower->first, lower,
                   node->second.support - lower->second.support);
}

void Pairs::essentials_of_successor(NodeRef node, NodeRef lower) {
    for (const Itemset& essential : lower->second.essentials) {
        settle_and_add(PairKind::essential_of_successor, node, essential, lower,
                       node->second.support - lower->second.support);
    }
}

void Pairs::inter_node_of_two_successors(const LatticeEntry& entry) {
    const NodeRef first = entry.successors.front();
    const NodeRef second = entry.successors.back();
    const Itemset rest = difference(entry.itemset(), first->first);
    if (rest != second->first) {
        each_successor(entry);
        return;
    }
    // Not asked for: the rest is the second successor, and a support of 0 counts as known here.
    const Count r = second->second.support;
    sink_.add({PairKind::successor,
               entry.node,
               first->first,
               rest,
               entry.support(),
               first->second.support,
               {r, r},
               true,
               first});
    essentials_of_successor(entry.node, first);
    essentials_of_successor(entry.node, second);
}

/// Adds the pair of a base, which is of the class `base_node`, within a node. `lower`: how many transactions
/// hold an item of the difference at least. Between nodes that are those with an item of f2 but none of the
/// base.
void Pairs::settle_and_add(PairKind kind, NodeRef node, const Itemset& base, NodeRef base_node, Count lower) {
    const Itemset rest = difference(node->first, base);
    SupportBounds bounds = {lower, node->second.support};
    const Count r = supports_.settle(rest, bounds);
    // A support of 0 cannot be told from an unknown one.
    const bool is_known = r != 0;
    if (is_known) {
        bounds = {r, r};
    }
    sink_.add({kind, node, base, rest, node->second.support, base_node->second.support, bounds, is_known,
               base_node});
}

void for_each_pair(const ClassMap& classes, const LatticeEntries& entries, Supports& supports,
                   PairSink& sink) {
    Pairs pairs(supports, sink);
    pairs.intra_node(classes);
    pairs.inter_node(entries);
}

}  // namespace korv
