#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/itemset_table.h"

namespace korv {

/// The class of a key.
struct KeyOwner {
    Count support;           ///< of the class, in transactions
    std::uint32_t position;  ///< of the class, in the order of the classes
};

/// The keys of classes: their essential itemsets, or the closed itemset of a class that stores none. Whatever
/// contains a key has at least the support of its class.
///
/// A prefix tree, each node an item of the path that is a key's items.
///
/// Invariant: every node knows the largest support, and the smallest position, of the keys whose paths go
/// through it, and siblings stand by that support, descending. So a search follows the items of an itemset
/// only, and leaves siblings as soon as none of them can have more support than what is found (branch and
/// bound). The items of a path stand by descending smallest support of a key that holds them: what comes
/// further down a path adds little to its support, so the bounds are tight.
class KeyIndex {
public:
    /// `keys`: sets of item numbers below `items`, ascending and not empty; `owners`: theirs. Two keys may be
    /// equal. O(total length of the keys * log keys).
    KeyIndex(ItemsetTable keys, const std::vector<KeyOwner>& owners, std::size_t items);

private:
    struct Node {
        Item item = 0;
        /// The largest support of the keys whose paths go through the node.
        Count largest = 0;
        /// The support of the key whose path ends here, the largest of equal ones; 0 if there is none.
        Count own = 0;
        /// The children stand one behind the other, before those of the next node.
        std::uint32_t first_child = 0;
    };
    /// What a search by position needs besides.
    struct Positions {
        std::uint32_t smallest;  ///< of the keys whose paths go through the node
        std::uint32_t own;       ///< of the key whose support is the node's own
    };
    /// A key that is equal to one of more support, but stands before it. In classes that do not contradict
    /// each other there is none.
    struct EarlierTwin {
        Itemset key;
        KeyOwner owner;
    };
    struct Siblings {
        std::uint32_t first;
        std::uint32_t end;
    };
    class Builder;
    friend class KeySearch;

    static constexpr std::uint32_t no_node = 0;

    Siblings children(std::uint32_t node) const {
        return {nodes_[node].first_child, nodes_[node + 1].first_child};
    }

    std::vector<Node> nodes_;           ///< level by level, the root first; one more at the end
    std::vector<Positions> positions_;  ///< of each node
    std::vector<EarlierTwin> earlier_twins_;
    std::vector<std::uint32_t> top_;  ///< by item: the child of the root
};

/// Searches a KeyIndex. It has working space of its own, so that each of several threads can search the same
/// index with one of them.
class KeySearch {
public:
    /// Refers to the index.
    explicit KeySearch(const KeyIndex& index) : index_(index), is_wanted_(index.top_.size()) {}

    /// The largest support of a key within `itemset`, if it is more than `least`; otherwise `least`. At worst
    /// all nodes are looked at; as a rule, some dozens.
    Count largest_support_within(ItemSpan itemset, Count least = 0);

    /// The smallest position of a key within `itemset` whose support is more than `least`, if it is before
    /// `before`; otherwise `before`. Costs as much as largest_support_within.
    std::uint32_t first_position_within(ItemSpan itemset, Count least, std::uint32_t before);

    /// Whether there is such a position. Costs less, as a rule.
    bool has_position_within(ItemSpan itemset, Count least, std::uint32_t before);

    /// Whether a key lies within `itemset` whose support is at least `least`, 1 or more, and whose position
    /// is another one than `position`. Of equal keys only the one of the largest support counts, and of these
    /// the one of the smallest position. Costs as much as largest_support_within.
    bool has_other_within(ItemSpan itemset, Count least, std::uint32_t position);

private:
    using Siblings = KeyIndex::Siblings;
    class Wanted;

    Count search_below(std::uint32_t node, Count largest);
    Count search_below_wanted_tops(ItemSpan itemset, Count largest);
    Count take_own(std::uint32_t node, Count largest);
    void want_tops(ItemSpan itemset);
    bool is_other(std::uint32_t node, Count least, std::uint32_t position) const {
        return index_.nodes_[node].own >= least && index_.positions_[node].own != position;
    }
    bool has_other_below(std::uint32_t node, Count least, std::uint32_t position);

    const KeyIndex& index_;
    std::vector<char> is_wanted_;              ///< by item: whether the itemset asked for holds it
    std::vector<std::uint32_t> wanted_tops_;   ///< children of the root whose item is wanted
    std::vector<Siblings> pending_;            ///< on the path: those still to be looked at
    std::uint32_t found_ = KeyIndex::no_node;  ///< where largest_support_within found what it returned last
};

}  // namespace korv
