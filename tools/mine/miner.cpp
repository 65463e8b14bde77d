#include "mine/miner.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <numeric>
#include <utility>
#include <vector>

#include "mine/cover.h"
#include "mine/dense_cover.h"
#include "mine/essential_tree.h"
#include "mine/sparse_cover.h"

namespace korv::tools {

namespace {

using Node = EssentialTree::Node;

/// Itemsets of at most so many items keep the nodes of all their parts.
constexpr std::size_t most_items_with_parts = 6;

/// The depth-first walk over the essential itemsets.
template <typename Cover>
class Walk {
public:
    Walk(const RankedItems& items, const MiningOptions& options, const GoOn& go_on)
        : items_(items),
          options_(options),
          min_joint_(options.min_joint.value_or(options.min_support)),
          go_on_(go_on),
          cover_(items),
          tree_(std::span(items.supports).first(items.frequent)),
          classes_(items.items, options.max_classes),
          levels_(1) {
        levels_.front().parts = {EssentialTree::none};
    }

    MiningResult run() {
        if (options_.max_size > 1) {
            add_pairs();
        }
        for (Rank root = 0; root < items_.frequent && !is_stopped_; ++root) {
            visit(root);
            roots_done_ += is_stopped_ ? 0 : 1;
            ask();
        }
        classes_.finish(std::move(tree_));
        return {std::move(classes_), !is_stopped_};
    }

private:
    /// What is known of a prefix of the itemset, by its size.
    struct Level {
        Itemset closure;
        std::size_t rare_bytes = 0;  ///< of the closure: see MinedClasses
        /// The nodes of all parts of the prefix: where bit i of the position is 1, the part has the i-th item
        /// of the path. Only in prefixes of at most `most_items_with_parts` items.
        std::vector<Node> parts;
        /// The nodes of the parts with one item less: without the first item of the path, and so on.
        std::vector<Node> largest_parts;
        std::vector<Candidate> candidates;
    };

    /// Adds the itemsets of two items.
    void add_pairs() {
        std::vector<Candidate> candidates;
        for (Rank root = 0; root < items_.frequent && !is_stopped_; ++root) {
            cover_.pairs_of(root, min_joint_, candidates);
            for (Candidate& candidate : candidates) {
                candidate.largest_part = candidate.sum_of_parts = items_.supports[candidate.rank];
                add_if_essential(root, candidate,
                                 items_.supports[root] + items_.supports[candidate.rank] - candidate.joint);
            }
            ask();
        }
    }

    /// Records the itemset of a node, and those of all nodes below it.
    void visit(Node node) {
        if (levels_.size() == size_ + 1) {
            levels_.emplace_back();
        }
        ++size_;
        const Rank rank = tree_.rank(node);
        if (size_ < options_.max_size) {
            find_candidates(node);
        } else {
            levels_[size_].candidates.clear();
        }
        const bool may_be_extended =
            size_ < options_.max_size && (size_ == 1 || !levels_[size_].candidates.empty());
        const bool is_entered = size_ == 1 || may_be_extended;
        close(is_entered ? cover_.enter(rank) : cover_.gain(rank));
        is_stopped_ = !classes_.add(node, tree_, levels_[size_].closure, levels_[size_].rare_bytes);
        ask_now_and_then();
        if (may_be_extended && !is_stopped_) {
            extend(node);
        }
        if (is_entered) {
            cover_.leave();
        }
        --size_;
    }

    /// Makes the closure of the itemset from that of its prefix and what it gained.
    void close(const std::vector<Rank>& gained) {
        gained_.clear();
        levels_[size_].rare_bytes = levels_[size_ - 1].rare_bytes;
        for (const Rank rank : gained) {
            levels_[size_].rare_bytes +=
                items_.supports[rank] < options_.min_support ? classes_.closure_bytes(rank) : 0;
            gained_.insert(gained_.end(), items_.items[rank].begin(), items_.items[rank].end());
        }
        std::ranges::sort(gained_);
        Itemset& closure = levels_[size_].closure;
        const Itemset& before = levels_[size_ - 1].closure;
        closure.resize(before.size() + gained_.size());
        std::ranges::merge(before, gained_, closure.begin());
    }

    /// Adds the children of a node, unless they are there already, and visits them.
    void extend(Node node) {
        find_parts(node);
        if (size_ > 1) {
            std::vector<Candidate>& candidates = levels_[size_].candidates;
            cover_.keep_frequent(min_joint_, candidates);
            for (const Candidate& candidate : candidates) {
                add_if_essential(node, candidate, support_with(node, candidate));
            }
        }
        const Node first = tree_.first_child(node);
        const Node end = tree_.children_end(node);
        children_.clear();
        std::uint64_t joint_supports = 0;
        for (Node child = first; child < end; ++child) {
            children_.push_back(tree_.rank(child));
            joint_supports += tree_.joint(child);
        }
        cover_.announce(children_, joint_supports);
        for (Node child = first; child < end && !is_stopped_; ++child) {
            visit(child);
        }
    }

    /// Sets the candidates for a node, as far as the tree tells: those below it in rank with which all
    /// largest parts are essential.
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

    void add_if_essential(Node node, const Candidate& candidate, Count support) {
        const Count without_one = std::max(tree_.support(node), candidate.largest_part);
        if (support - without_one >= options_.min_own) {
            tree_.add(node, candidate.rank, candidate.joint, support);
        }
    }

    /// The support of the itemset of a node, which has two or more items, together with a candidate.
    Count support_with(Node node, const Candidate& candidate) {
        constexpr std::size_t nanoseconds_of_a_look = 10;
        const bool has_parts = size_ <= most_items_with_parts;
        const std::size_t looks = has_parts ? (std::size_t{1} << size_) - size_ - 2 : 0;
        if (has_parts && looks * nanoseconds_of_a_look <= cover_.own_nanoseconds(candidate.rank)) {
            return support_by_parts(node, candidate);
        }
        return tree_.support(node) + cover_.own(candidate.rank);
    }

    /// The same by inclusion and exclusion: the joint support of an itemset is the sum of the supports of its
    /// parts with an odd number of items, without those of the others. All sums wrap.
    Count support_by_parts(Node node, const Candidate& candidate) const {
        const bool is_odd = size_ % 2 == 1;
        Count sum = candidate.joint - tree_.joint(node) - items_.supports[candidate.rank];
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

    void ask_now_and_then() {
        constexpr std::size_t pause = 1024;
        if (++visited_ % pause == 0) {
            ask();
        }
    }

    void ask() {
        if (go_on_ && !go_on_({roots_done_, items_.frequent, classes_.essentials(), classes_.size(),
                               classes_.file_bytes()})) {
            is_stopped_ = true;
        }
    }

    const RankedItems& items_;
    const MiningOptions& options_;
    Count min_joint_;
    const GoOn& go_on_;
    Cover cover_;
    EssentialTree tree_;
    MinedClasses classes_;
    std::vector<Level> levels_;   ///< with room for at least one more
    std::vector<Rank> children_;  ///< set and used in one call
    Itemset gained_;              ///< set and used in one call
    std::size_t size_ = 0;        ///< of the itemset
    std::size_t roots_done_ = 0;
    std::size_t visited_ = 0;
    bool is_stopped_ = false;
};

/// Whether to represent sets of transactions as bit vectors.
bool is_dense(const RankedItems& items, Representation representation) {
    if (representation != Representation::by_density) {
        return representation == Representation::dense;
    }
    constexpr std::uint64_t one_in = 50;
    const auto occurrences = std::accumulate(
        items.transactions.begin(), items.transactions.end(), std::uint64_t{0},
        [](std::uint64_t sum, std::span<const Transaction> lines) { return sum + lines.size(); });
    return occurrences * one_in >= std::uint64_t{items.lines} * items.size();
}

}  // namespace

MiningResult mine(const Database& database, const MiningOptions& options, const GoOn& go_on) {
    // A single item has all its transactions for its own.
    const RankedItems items = ranked_items(database, std::max(options.min_support, options.min_own),
                                           options.closure_over_all ? 0 : options.min_support);
    return is_dense(items, options.representation) ? Walk<DenseCover>(items, options, go_on).run()
                                                   : Walk<SparseCover>(items, options, go_on).run();
}

}  // namespace korv::tools
