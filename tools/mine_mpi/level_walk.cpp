#include "mine_mpi/level_walk.h"

#include <algorithm>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "mine/candidate_search.h"
#include "mine_mpi/bit_stream.h"
#include "mine_mpi/dense_part.h"
#include "mine_mpi/sparse_part.h"

namespace korv::tools {

namespace {

using Node = EssentialTree::Node;
using Numbers = std::vector<std::uint32_t>;

/// So much is told at once, in numbers and in words of bits.
constexpr std::size_t numbers_of_batch = std::size_t{1} << 16;
constexpr std::size_t words_of_batch = std::size_t{1} << 15;

/// What is asked of all processes at once.
struct Batch {
    /// An itemset: its candidates, and what may be in its closure.
    struct Asked {
        Node node;
        std::uint32_t candidates;
        std::uint32_t ranks;  ///< without meaning where all are asked for
        bool asks_all;
    };

    std::vector<Asked> itemsets;
    std::vector<Candidate> candidates;
    Numbers counts;  ///< joint supports, own counts where they are asked for, and whether to stop
    std::vector<Rank> ranks;
    BitStream outside;
    Processes::Pending sum;
    Processes::Pending united;
};

/// Goes along paths of a tree: enters and leaves items until a path is that of a node.
class Path {
public:
    explicit Path(const EssentialTree& tree) : tree_(tree) {}

    /// Calls leave() and enter(node) until the path is that of `node`, or of nothing.
    template <typename Enter, typename Leave>
    void move_to(Node node, Enter enter, Leave leave) {
        wanted_.clear();
        for (Node each = node; each != EssentialTree::none; each = tree_.parent(each)) {
            wanted_.push_back(each);
        }
        std::ranges::reverse(wanted_);
        const auto common = std::ranges::mismatch(path_, wanted_).in1 - path_.begin();
        while (std::ssize(path_) > common) {
            path_.pop_back();
            leave();
        }
        for (std::size_t i = path_.size(); i < wanted_.size(); ++i) {
            path_.push_back(wanted_[i]);
            enter(wanted_[i]);
        }
    }

private:
    const EssentialTree& tree_;
    std::vector<Node> path_;
    std::vector<Node> wanted_;
};

/// The walk by levels. Part: see level_part.h.
template <typename Part>
class LevelWalk {
public:
    LevelWalk(Processes& processes, const PartItems& items, const MiningOptions& options,
              const LevelEvents& events)
        : processes_(processes),
          items_(items.ranked),
          options_(options),
          min_joint_(options.min_joint.value_or(options.min_support)),
          events_(events),
          part_(items, static_cast<std::size_t>(processes.size())),
          tree_(std::span(items.ranked.supports).first(items.ranked.frequent)),
          asking_(tree_, items.ranked.supports),
          answering_(tree_, items.ranked.supports),
          asking_path_(tree_),
          answering_path_(tree_),
          classes_(items.ranked.items, options.max_classes) {}

    MiningResult run(const KeptLevels* kept) {
        begin_level();
        find_pairs();
        take_up(kept);
        while (end_of_level_ > begin_of_level_ && !is_stopped_) {
            walk_level();
        }
        classes_.finish(std::move(tree_));
        return {std::move(classes_), !is_stopped_};
    }

private:
    // Pairs.

    /// Tells all processes the pairs of all items. Each process sums up those of some rows.
    void find_pairs() {
        const Rank rows = options_.max_size > 1 || Part::closes_by_pairs ? part_.rows() : 0;
        const auto width = std::max<std::size_t>(items_.frequent, 1);
        const auto at_once =
            static_cast<Rank>(std::clamp<std::size_t>((std::size_t{1} << 22) / width, 1, 4096));
        for (Rank begin = 0; begin < rows; begin += at_once) {
            const Rank end = std::min(rows, begin + at_once);
            add_pairs(begin, end, sums_of_pairs(begin, end));
        }
    }

    /// The process that sums up a row.
    std::size_t owner(Rank row) const { return row % static_cast<std::size_t>(processes_.size()); }

    /// The pairs of some rows that any process needs to know, as numbers: row, size, and for each pair the
    /// other item and its joint support.
    Numbers sums_of_pairs(Rank begin, Rank end) {
        std::vector<Numbers> for_each(static_cast<std::size_t>(processes_.size()));
        std::vector<Candidate> pairs;
        for (Rank row = begin; row < end; ++row) {
            part_.pairs_of(row, pairs);
            Numbers& to = for_each[owner(row)];
            put_pairs(row, pairs, to);
        }
        const std::vector<Numbers> from_each = processes_.exchange(for_each);
        std::vector<std::size_t> positions(from_each.size());
        Numbers sums;
        for (Rank row = begin; row < end; ++row) {
            if (owner(row) == static_cast<std::size_t>(processes_.number())) {
                sum_up(row, from_each, positions, pairs);
                put_pairs(row, pairs, sums);
            }
        }
        return processes_.all_of(sums);
    }

    static void put_pairs(Rank row, const std::vector<Candidate>& pairs, Numbers& numbers) {
        numbers.push_back(row);
        numbers.push_back(static_cast<std::uint32_t>(pairs.size()));
        for (const Candidate& pair : pairs) {
            numbers.push_back(pair.rank);
            numbers.push_back(pair.joint);
        }
    }

    /// Replaces `pairs` by those of a row that are needed, with the sums of what all processes told.
    void sum_up(Rank row, const std::vector<Numbers>& from_each, std::vector<std::size_t>& positions,
                std::vector<Candidate>& pairs) {
        together_.resize(items_.frequent);
        std::vector<Rank>& touched = touched_;
        touched.clear();
        for (std::size_t process = 0; process < from_each.size(); ++process) {
            const Numbers& numbers = from_each[process];
            std::size_t& position = positions[process];
            const std::size_t size = numbers[position + 1];
            position += 2;
            for (const std::size_t end = position + 2 * size; position < end; position += 2) {
                const Rank below = numbers[position];
                if (together_[below] == 0) {
                    touched.push_back(below);
                }
                together_[below] += numbers[position + 1];
            }
        }
        std::ranges::sort(touched);
        pairs.clear();
        for (const Rank below : touched) {
            const Count together = std::exchange(together_[below], 0);
            if ((row < items_.frequent && together >= min_joint_) || part_.is_wanted(row, below, together)) {
                pairs.push_back({below, together});
            }
        }
    }

    /// Adds the pairs of some rows to the tree, row by row.
    void add_pairs(Rank begin, Rank end, const Numbers& numbers) {
        std::vector<std::size_t> begins(end - begin);
        for (std::size_t position = 0; position < numbers.size();) {
            begins[numbers[position] - begin] = position;
            position += 2 + 2 * std::size_t{numbers[position + 1]};
        }
        for (Rank row = begin; row < end; ++row) {
            const std::size_t position = begins[row - begin];
            const auto pairs =
                std::span(numbers).subspan(position + 2, std::size_t{2} * numbers[position + 1]);
            for (std::size_t i = 0; i < pairs.size(); i += 2) {
                part_.add_pair(row, pairs[i], pairs[i + 1]);
            }
            if (row < items_.frequent && options_.max_size > 1) {
                add_pairs_to_tree(row, pairs);
            }
        }
    }

    void add_pairs_to_tree(Rank row, std::span<const std::uint32_t> pairs) {
        report_.candidates += row;
        if (min_joint_ > 0) {
            for (std::size_t i = 0; i < pairs.size(); i += 2) {
                add_pair(row, pairs[i], pairs[i + 1]);
            }
            return;
        }
        std::size_t i = 0;
        for (Rank below = 0; below < row; ++below) {
            const bool is_together = i < pairs.size() && pairs[i] == below;
            add_pair(row, below, is_together ? pairs[i + 1] : 0);
            i += is_together ? 2 : 0;
        }
    }

    void add_pair(Rank row, Rank below, Count joint) {
        if (joint < min_joint_) {
            return;
        }
        const Count support = items_.supports[below];
        add_if_essential(row, {below, joint, support, support}, items_.supports[row] + support - joint);
    }

    void add_if_essential(Node node, const Candidate& candidate, Count support) {
        ++report_.frequent;
        const Count without_one = std::max(tree_.support(node), candidate.largest_part);
        if (support - without_one >= options_.min_own) {
            ++report_.essential;
            tree_.add(node, candidate.rank, candidate.joint, support);
        }
    }

    // Levels.

    void begin_level() { report_ = {.size = size_}; }

    /// Ends a level, whose numbers are told in all processes.
    void end_level() {
        const Processes::Usage usage = processes_.usage_since();
        report_.bytes = usage.bytes;
        report_.slowest = usage.slowest;
        report_.fastest = usage.fastest;
        if (processes_.is_first() && events_.level_done) {
            events_.level_done(report_);
        }
        is_stopped_ = processes_.sum((is_stopped_ || wants_to_stop_) ? 1 : 0) > 0;
    }

    /// Looks at the itemsets of one size: their closures, and those with one item more.
    void walk_level() {
        const Node end = end_of_level_;
        std::optional<Batch> before;
        Node node = begin_of_level_;
        while (node < end && !is_stopped_) {
            Batch batch;
            node = ask(node, end, batch);
            begin_to_tell(batch);
            if (before) {
                answer(*before);
            }
            before = std::move(batch);
        }
        if (before) {
            answer(*before);
        }
        asking_path_.move_to(
            EssentialTree::none, [](Node) {}, [this] { leave_asking(); });
        answering_path_.move_to(
            EssentialTree::none, [](Node) {}, [this] { answering_.leave(); });
        end_level();
        keep_level();
        begin_of_level_ = end;
        end_of_level_ = static_cast<Node>(tree_.size());
        ++size_;
        begin_level();
    }

    /// Asks for itemsets from `node` on, as many as fit into a batch. Returns the next one.
    Node ask(Node node, Node end, Batch& batch) {
        for (; node < end && batch.candidates.size() < numbers_of_batch &&
               batch.outside.words().size() < words_of_batch;
             ++node) {
            ask_for(node, batch);
        }
        batch.counts.push_back(wants_to_stop_ ? 1 : 0);
        return node;
    }

    void ask_for(Node node, Batch& batch) {
        const Node parent = tree_.parent(node);
        asking_path_.move_to(
            parent, [this](Node each) { enter_asking(each); }, [this] { leave_asking(); });
        asking_.enter();
        if (size_ > 1 && size_ < options_.max_size) {
            asking_.find_candidates(node);
        }
        std::vector<Candidate>& candidates = asking_.candidates();
        const bool is_entered = !candidates.empty();
        if (is_entered) {
            part_.enter(tree_.rank(node));
            part_.count(candidates);
            for (const Candidate& candidate : candidates) {
                batch.counts.push_back(candidate.joint);
            }
            if (part_.counts_own(size_)) {
                for (const Candidate& candidate : candidates) {
                    batch.counts.push_back(part_.own(candidate.rank));
                }
            }
            batch.candidates.insert(batch.candidates.end(), candidates.begin(), candidates.end());
        }
        const std::size_t ranks_before = batch.ranks.size();
        const bool asks_all = part_.tell_closure(tree_.rank(node), is_entered, batch.ranks, batch.outside);
        batch.itemsets.push_back({node, static_cast<std::uint32_t>(candidates.size()),
                                  static_cast<std::uint32_t>(batch.ranks.size() - ranks_before), asks_all});
        if (is_entered) {
            part_.leave();
        }
        asking_.leave();
    }

    void enter_asking(Node node) {
        if (tree_.parent(node) == EssentialTree::none) {
            part_.set_root(node, tree_);
        }
        part_.enter(tree_.rank(node));
        asking_.enter();
        asking_.find_largest_parts(node);
    }

    void leave_asking() {
        part_.leave();
        asking_.leave();
    }

    void begin_to_tell(Batch& batch) {
        batch.sum = processes_.begin_sum(batch.counts);
        batch.united = processes_.begin_union(batch.outside.words());
    }

    /// Makes nodes and closures of what all processes told.
    void answer(Batch& batch) {
        processes_.wait(batch.sum);
        processes_.wait(batch.united);
        is_stopped_ = is_stopped_ || batch.counts.back() > 0;
        if (is_stopped_) {
            return;
        }
        add_nodes(batch);
        if (processes_.is_first() && !wants_to_stop_) {
            close(batch);
            go_on(batch.itemsets.back().node);
        }
    }

    void add_nodes(Batch& batch) {
        auto candidate = batch.candidates.begin();
        auto count = batch.counts.begin();
        const bool has_own = part_.counts_own(size_);
        for (const Batch::Asked& asked : batch.itemsets) {
            report_.candidates += asked.candidates;
            const auto own = count + asked.candidates;
            for (std::uint32_t i = 0; i < asked.candidates; ++i, ++candidate) {
                candidate->joint = count[i];
                if (candidate->joint >= min_joint_) {
                    const Count support = has_own ? tree_.support(asked.node) + own[i]
                                                  : support_by_parts(asked.node, *candidate);
                    add_if_essential(asked.node, *candidate, support);
                }
            }
            count += std::ptrdiff_t{asked.candidates} * (has_own ? 2 : 1);
        }
    }

    Count support_by_parts(Node node, const Candidate& candidate) {
        answering_path_.move_to(
            node,
            [this](Node each) {
                answering_.enter();
                answering_.find_parts(each);
            },
            [this] { answering_.leave(); });
        return answering_.support_by_parts(node, candidate);
    }

    void close(const Batch& batch) {
        std::size_t bit = 0;
        auto rank = batch.ranks.begin();
        for (const Batch::Asked& asked : batch.itemsets) {
            closure_ranks_.clear();
            if (asked.asks_all) {
                bit = BitStream::next_word(bit);
                put_inside(batch.outside.words(), bit / word_bits);
                bit += words_for(items_.size()) * word_bits;
            } else {
                put_itemset(asked.node);
                for (const auto end = rank + asked.ranks; rank != end; ++rank, ++bit) {
                    if (!batch.outside[bit]) {
                        closure_ranks_.push_back(*rank);
                    }
                }
            }
            add_class(asked.node);
            if (wants_to_stop_) {
                return;
            }
        }
    }

    void put_itemset(Node node) {
        for (Node each = node; each != EssentialTree::none; each = tree_.parent(each)) {
            closure_ranks_.push_back(tree_.rank(each));
        }
    }

    /// Appends the ranks whose bits are 0.
    void put_inside(const std::vector<BitWord>& words, std::size_t first) {
        for (std::size_t word = 0; word < words_for(items_.size()); ++word) {
            const std::size_t behind = items_.size() - word * word_bits;
            const BitWord all = behind >= word_bits ? ~BitWord{0} : bit_of(behind) - 1;
            for (BitWord inside = ~words[first + word] & all; inside != 0; inside &= inside - 1) {
                closure_ranks_.push_back(static_cast<Rank>(lowest_number(word, inside)));
            }
        }
    }

    void add_class(Node node) {
        closure_.clear();
        std::size_t rare_bytes = 0;
        for (const Rank rank : closure_ranks_) {
            closure_.insert(closure_.end(), items_.items[rank].begin(), items_.items[rank].end());
            rare_bytes += items_.supports[rank] < options_.min_support ? classes_.closure_bytes(rank) : 0;
        }
        std::ranges::sort(closure_);
        wants_to_stop_ = !classes_.add(node, tree_, closure_, rare_bytes);
        if (events_.keeps_closures) {
            append_encoded(closure_, closures_.emplace_back());
        }
    }

    void go_on(Node last) {
        const LevelProgress progress = {.size = size_,
                                        .itemsets = last + 1 - begin_of_level_,
                                        .of_itemsets = end_of_level_ - begin_of_level_,
                                        .essentials = classes_.essentials(),
                                        .classes = classes_.size(),
                                        .file_bytes = classes_.file_bytes()};
        wants_to_stop_ = (events_.go_on && !events_.go_on(progress)) || wants_to_stop_;
    }

    // What is kept for another run.

    void keep_level() {
        if (processes_.is_first() && events_.level_kept && !is_stopped_) {
            events_.level_kept(tree_, {.size = size_, .closed = end_of_level_}, closures_);
        }
        closures_.clear();
    }

    /// Goes on from what an earlier run kept, if there is anything.
    void take_up(const KeptLevels* kept) {
        end_of_level_ = items_.frequent;
        std::uint64_t size = kept != nullptr ? kept->state.size : 0;
        processes_.broadcast_value(size);
        if (size == 0) {
            return;
        }
        std::vector<KeptLevels::Node> nodes;
        if (kept != nullptr) {
            nodes = kept->nodes;
            end_of_level_ = kept->state.closed;
        }
        processes_.broadcast(nodes);
        processes_.broadcast_value(end_of_level_);
        for (std::size_t i = tree_.size() - items_.frequent; i < nodes.size(); ++i) {
            tree_.add(nodes[i].parent, nodes[i].rank, nodes[i].joint, nodes[i].support);
        }
        if (kept != nullptr) {
            for (Node node = 0; node < end_of_level_; ++node) {
                decode(kept->closures[node], closure_);
                classes_.add(node, tree_, closure_);
            }
        }
        begin_of_level_ = end_of_level_;
        end_of_level_ = static_cast<Node>(tree_.size());
        size_ = size + 1;
        begin_level();
    }

    Processes& processes_;
    const RankedItems& items_;
    const MiningOptions& options_;
    Count min_joint_;
    const LevelEvents& events_;
    Part part_;
    EssentialTree tree_;
    CandidateSearch asking_;     ///< for candidates
    CandidateSearch answering_;  ///< for parts
    Path asking_path_;
    Path answering_path_;
    MinedClasses classes_;  ///< in the first process

    std::size_t size_ = 1;        ///< of the itemsets that are looked at
    Node begin_of_level_ = 0;     ///< the first of them
    Node end_of_level_ = 0;       ///< behind the last of them
    bool wants_to_stop_ = false;  ///< in the first process: the others are told with the next batch
    bool is_stopped_ = false;     ///< all processes know it
    LevelReport report_;
    std::vector<std::string> closures_;  ///< of this level, where they are kept

    std::vector<Count> together_;      ///< by rank: set and used in one call, otherwise 0
    std::vector<Rank> touched_;        ///< set and used in one call
    std::vector<Rank> closure_ranks_;  ///< set and used in one call
    Itemset closure_;                  ///< set and used in one call
};

}  // namespace

MiningResult mine_by_levels(Processes& processes, const PartItems& items, const MiningOptions& options,
                            const LevelEvents& events, const KeptLevels* kept) {
    return is_dense(items) ? LevelWalk<DensePart>(processes, items, options, events).run(kept)
                           : LevelWalk<SparsePart>(processes, items, options, events).run(kept);
}

}  // namespace korv::tools
