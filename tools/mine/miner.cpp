#include "mine/miner.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <utility>
#include <vector>

#include "mine/candidate_search.h"
#include "mine/cover.h"
#include "mine/dense_cover.h"
#include "mine/essential_tree.h"
#include "mine/sparse_cover.h"

namespace korv::tools {

namespace {

using Node = EssentialTree::Node;

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
          search_(tree_, items.supports),
          classes_(items.items, options.max_classes),
          levels_(1) {}

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
        search_.enter();
        const std::size_t size = search_.size();
        if (levels_.size() == size) {
            levels_.emplace_back();
        }
        const Rank rank = tree_.rank(node);
        if (size < options_.max_size) {
            search_.find_candidates(node);
        }
        const bool may_be_extended = size < options_.max_size && (size == 1 || !search_.candidates().empty());
        const bool is_entered = size == 1 || may_be_extended;
        close(is_entered ? cover_.enter(rank) : cover_.gain(rank));
        is_stopped_ = !classes_.add(node, tree_, levels_[size].closure, levels_[size].rare_bytes);
        ask_now_and_then();
        if (may_be_extended && !is_stopped_) {
            extend(node);
        }
        if (is_entered) {
            cover_.leave();
        }
        search_.leave();
    }

    /// Makes the closure of the itemset from that of its prefix and what it gained.
    void close(const std::vector<Rank>& gained) {
        gained_.clear();
        Level& level = levels_[search_.size()];
        const Level& before = levels_[search_.size() - 1];
        level.rare_bytes = before.rare_bytes;
        for (const Rank rank : gained) {
            level.rare_bytes +=
                items_.supports[rank] < options_.min_support ? classes_.closure_bytes(rank) : 0;
            gained_.insert(gained_.end(), items_.items[rank].begin(), items_.items[rank].end());
        }
        std::ranges::sort(gained_);
        level.closure.resize(before.closure.size() + gained_.size());
        std::ranges::merge(before.closure, gained_, level.closure.begin());
    }

    /// Adds the children of a node, unless they are there already, and visits them.
    void extend(Node node) {
        search_.find_parts(node);
        if (search_.size() > 1) {
            std::vector<Candidate>& candidates = search_.candidates();
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

    void add_if_essential(Node node, const Candidate& candidate, Count support) {
        const Count without_one = std::max(tree_.support(node), candidate.largest_part);
        if (support - without_one >= options_.min_own) {
            tree_.add(node, candidate.rank, candidate.joint, support);
        }
    }

    /// The support of the itemset of a node, which has two or more items, together with a candidate.
    Count support_with(Node node, const Candidate& candidate) {
        constexpr std::size_t nanoseconds_of_a_look = 10;
        const std::size_t size = search_.size();
        if (CandidateSearch::has_parts(size) &&
            CandidateSearch::looks(size) * nanoseconds_of_a_look <= cover_.own_nanoseconds(candidate.rank)) {
            return search_.support_by_parts(node, candidate);
        }
        return tree_.support(node) + cover_.own(candidate.rank);
    }

    void ask_now_and_then() {
        constexpr std::size_t pause = 1024;
        if (++visited_ % pause == 0) {
            ask();
        }
    }

    void ask() {
        if (go_on_ && !go_on_({roots_done_, items_.frequent, classes_.figures().essentials, classes_.size(),
                               classes_.figures().file_bytes})) {
            is_stopped_ = true;
        }
    }

    const RankedItems& items_;
    const MiningOptions& options_;
    Count min_joint_;
    const GoOn& go_on_;
    Cover cover_;
    EssentialTree tree_;
    CandidateSearch search_;
    MinedClasses classes_;
    std::vector<Level> levels_;   ///< with room for at least one more
    std::vector<Rank> children_;  ///< set and used in one call
    Itemset gained_;              ///< set and used in one call
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
