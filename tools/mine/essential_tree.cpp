#include "mine/essential_tree.h"

#include <algorithm>
#include <stdexcept>

namespace korv::tools {

EssentialTree::EssentialTree(std::span<const Count> supports) {
    for (const Count support : supports) {
        ranks_.push_back(static_cast<Rank>(ranks_.size()));
        entries_.push_back({none, support, support});
    }
}

EssentialTree::Node EssentialTree::add(Node parent, Rank rank, Count joint, Count support) {
    if (entries_.size() >= none) {
        throw std::length_error("more than 4294967295 essential itemsets");
    }
    const Node node = static_cast<Node>(entries_.size());
    ranks_.push_back(rank);
    entries_.push_back({parent, joint, support});
    Entry& above = entries_[parent];
    above.first_child = above.children == 0 ? node : above.first_child;
    ++above.children;
    return node;
}

EssentialTree::Node EssentialTree::child(Node parent, Rank rank) const {
    if (parent == none) {
        return rank;
    }
    const Node found = lower_child(parent, first_child(parent), rank);
    return found != children_end(parent) && ranks_[found] == rank ? found : none;
}

EssentialTree::Node EssentialTree::lower_child(Node parent, Node first, Rank rank) const {
    const Node end = children_end(parent);
    Node low = first;
    for (const Node near = std::min(end, first + 4); low < near; ++low) {
        if (ranks_[low] >= rank) {
            return low;
        }
    }
    Node step = 1;
    while (low + step < end && ranks_[low + step] < rank) {
        low += step;
        step *= 2;
    }
    const auto begin = ranks_.begin() + low;
    const auto last = ranks_.begin() + std::min(end, low + step);
    return static_cast<Node>(std::lower_bound(begin, last, rank) - ranks_.begin());
}

}  // namespace korv::tools
