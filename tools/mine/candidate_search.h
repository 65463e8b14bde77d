#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <span>
#include <vector>

#include "mine/cover.h"
#include "mine/essential_tree.h"

namespace korv::tools {

/// What a tree of essential itemsets tells of those with one item more, while a walk goes down and up the
/// tree: by which items an itemset may be extended, and the supports of its parts.
///
/// The itemset is a node, whose path was entered from the root item on. Nothing is asked of transactions.
class CandidateSearch {
public:
    using Node = EssentialTree::Node;

    /// Itemsets of at most so many items keep the nodes of all their parts.
    static constexpr std::size_t most_items_with_parts = 6;

    /// `tree`, and `supports` by rank, must outlive the search.
    CandidateSearch(const EssentialTree& tree, std::span<const Count> supports)
        : tree_(tree), supports_(supports), levels_(1) {
        levels_.front().parts = {EssentialTree::none};
    }

    /// The number of items of the itemset.
    std::size_t size() const { return size_; }

    /// Goes down to a child. One of find_candidates and find_largest_parts has to be called next, and
    /// find_parts before going further down where parts are asked for.
    void enter() {
        if (levels_.size() == size_ + 1) {
            levels_.emplace_back();
        }
        ++size_;
        levels_[size_].candidates.clear();
    }

    /// Goes back to the parent.
    void leave() { --size_; }

    /// The items by which the itemset may be extended, ascending: set by find_candidates, then the caller's.
    std::vector<Candidate>& candidates() { return levels_[size_].candidates; }

    /// Sets the candidates for a node, as far as the tree tells: those below it in rank with which all
    /// largest parts are essential. None for a root item, for which the tree tells nothing.
    void find_candidates(Node node) {
        Level& level = levels_[size_];
        if (size_ == 1) {
            level.largest_parts = {EssentialTree::none};
            return;
        }
        level.candidates.clear();
        const Node first = tree_.first_child(tree_.parent(node));
        if (first == node || !find_largest_parts(node)) {
            return;
        }
        for (Node sibling = first; sibling < node; ++sibling) {
            const Count support = tree_.support(sibling);
            level.candidates.push_back({tree_.rank(sibling), 0, support, support});
        }
        // The last part is the parent, whose children these are.
        for (std::size_t i = 0; i + 1 < level.largest_parts.size() && !level.candidates.empty(); ++i) {
            keep_children_of(level.largest_parts[i], level.candidates);
        }
    }

    /// Sets the largest parts of a node. Returns false, and does not set them all, when one of them has no
    /// children.
    bool find_largest_parts(Node node) {
        std::vector<Node>& parts = levels_[size_].largest_parts;
        if (size_ == 1) {
            parts = {EssentialTree::none};
            return true;
        }
        parts.clear();
        for (const Node part : levels_[size_ - 1].largest_parts) {
            parts.push_back(tree_.child(part, tree_.rank(node)));
            if (tree_.children(parts.back()) == 0) {
                return false;
            }
        }
        parts.push_back(tree_.parent(node));
        return true;
    }

    /// Sets the parts of a node, from those of its parent.
    void find_parts(Node node) {
        std::vector<Node>& parts = levels_[size_].parts;
        parts.clear();
        if (size_ > most_items_with_parts) {
            return;
        }
        const std::vector<Node>& without = levels_[size_ - 1].parts;
        parts = without;
        for (const Node part : without) {
            parts.push_back(tree_.child(part, tree_.rank(node)));
        }
    }

    /// Whether support_by_parts can be asked for an itemset of so many items.
    static bool has_parts(std::size_t size) { return size <= most_items_with_parts; }

    /// How many nodes support_by_parts looks for.
    static std::size_t looks(std::size_t size) { return (std::size_t{1} << size) - size - 2; }

    /// The support of the itemset of a node together with a candidate, by inclusion and exclusion: the joint
    /// support of an itemset is the sum of the supports of its parts with an odd number of items, without
    /// those of the others. All sums wrap. Requires find_parts.
    Count support_by_parts(Node node, const Candidate& candidate) const {
        const bool is_odd = size_ % 2 == 1;
        Count sum = candidate.joint - tree_.joint(node) - supports_[candidate.rank];
        sum += is_odd ? -candidate.sum_of_parts : candidate.sum_of_parts;
        const std::vector<Node>& parts = levels_[size_].parts;
        for (std::size_t part = 1; part + 1 < parts.size(); ++part) {
            const auto items = static_cast<std::size_t>(std::popcount(part));
            if (items + 1 < size_) {
                const Count support = tree_.support(tree_.child(parts[part], candidate.rank));
                sum += items % 2 == 1 ? support : -support;
            }
        }
        return is_odd ? -sum : sum;
    }

private:
    /// What is known of a prefix of the itemset, by its size.
    struct Level {
        /// The nodes of all parts of the prefix: where bit i of the position is 1, the part has the i-th item
        /// of the path. Only in prefixes of at most `most_items_with_parts` items.
        std::vector<Node> parts;
        /// The nodes of the parts with one item less: without the first item of the path, and so on.
        std::vector<Node> largest_parts;
        std::vector<Candidate> candidates;
    };

    /// Keeps the candidates that are children of a node.
    void keep_children_of(Node node, std::vector<Candidate>& candidates) const {
        Node child = tree_.first_child(node);
        const Node end = tree_.children_end(node);
        std::size_t kept = 0;
        for (Candidate candidate : candidates) {
            child = tree_.lower_child(node, child, candidate.rank);
            if (child != end && tree_.rank(child) == candidate.rank) {
                candidate.largest_part = std::max(candidate.largest_part, tree_.support(child));
                candidate.sum_of_parts += tree_.support(child);
                candidates[kept++] = candidate;
            }
        }
        candidates.resize(kept);
    }

    const EssentialTree& tree_;
    std::span<const Count> supports_;  ///< by rank
    std::vector<Level> levels_;        ///< with room for at least one more
    std::size_t size_ = 0;             ///< of the itemset
};

}  // namespace korv::tools
