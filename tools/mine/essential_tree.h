#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "mine/ranked_items.h"

namespace korv::tools {

/// The frequent essential itemsets as a prefix tree.
///
/// A node stands for an itemset, whose ranks are those of the nodes from the root item down to it,
/// descending. The empty itemset is no node; its children are the root items, whose numbers are their ranks.
/// The children of a node are added at once, ascending, so they lie one behind the other.
class EssentialTree {
public:
    using Node = std::uint32_t;

    /// Stands for the empty itemset, and for a node that is not there.
    static constexpr Node none = ~Node{0};

    /// A tree of root items alone. `supports`: by rank.
    explicit EssentialTree(std::span<const Count> supports);

    /// Adds a child of `parent`, behind the one that was added last, which must have the same parent and a
    /// smaller rank unless this is the first child. Throws std::length_error when there are 2^32 - 1 nodes.
    Node add(Node parent, Rank rank, Count joint, Count support);

    std::size_t size() const { return entries_.size(); }
    Rank rank(Node node) const { return ranks_[node]; }
    Node parent(Node node) const { return entries_[node].parent; }
    /// The number of transactions that hold all items of the itemset.
    Count joint(Node node) const { return entries_[node].joint; }
    /// The number of transactions that hold an item of the itemset.
    Count support(Node node) const { return entries_[node].support; }
    Node first_child(Node node) const { return entries_[node].first_child; }
    std::size_t children(Node node) const { return entries_[node].children; }

    /// Asks for a node some time before it is used.
    void prefetch(Node node) const {
        __builtin_prefetch(&ranks_[node]);
        __builtin_prefetch(&entries_[node]);
    }

    /// The child of `parent` with this rank, or none. O(log children).
    Node child(Node parent, Rank rank) const;

    /// The first child of `parent` from `first` on, itself a child or the end of the children, whose rank is
    /// at least `rank`; or the end. O(log distance).
    Node lower_child(Node parent, Node first, Rank rank) const;

    /// The end of the children of a node.
    Node children_end(Node node) const { return entries_[node].first_child + entries_[node].children; }

private:
    struct Entry {
        Node parent;
        Count joint;
        Count support;
        Node first_child = 0;
        std::uint32_t children = 0;
    };

    std::vector<Rank> ranks_;     ///< by node; apart from the rest, since most looks are for a rank alone
    std::vector<Entry> entries_;  ///< by node
};

}  // namespace korv::tools
