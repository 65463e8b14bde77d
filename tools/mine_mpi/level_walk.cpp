#include "mine_mpi/level_walk.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "base/bit_words.h"
#include "mine/candidate_search.h"
#include "mine_mpi/bit_stream.h"
#include "mine_mpi/closure_builder.h"
#include "mine_mpi/dense_part.h"
#include "mine_mpi/level_stretches.h"
#include "mine_mpi/pair_sums.h"
#include "mine_mpi/sparse_part.h"

namespace korv::tools {

namespace {

using Node = EssentialTree::Node;
using Numbers = std::vector<std::uint32_t>;

/// What is asked of the lines of all processes about an itemset.
struct Question {
    std::span<const Rank> candidates;  ///< whose joint supports with it are asked for, ascending
    std::span<const Rank> open;        ///< which may be in its closure
    bool asks_all = false;             ///< whether it is about all ranks instead
};

/// Questions one behind the other, as processes tell them each other: for each itemset two sizes, the
/// candidates, and what is open.
class QuestionReader {
public:
    /// `all`: takes the place of the second size where all ranks are asked for.
    QuestionReader(const Numbers& numbers, std::uint32_t all) : left_(numbers), all_(all) {}

    Question take_question() {
        const std::span<const std::uint32_t> sizes = take(2);
        const std::span<const Rank> candidates = take(sizes[0]);
        const bool asks_all = sizes[1] == all_;
        return {candidates, take(asks_all ? 0 : sizes[1]), asks_all};
    }

private:
    std::span<const std::uint32_t> take(std::size_t size) {
        const std::span<const std::uint32_t> taken = left_.first(size);
        left_ = left_.subspan(size);
        return taken;
    }

    std::span<const std::uint32_t> left_;
    std::uint32_t all_;
};

/// What the lines of a process, or of all, say of some stretches of itemsets.
struct Answers {
    Numbers counts;  ///< for each itemset: joint supports, then own counts where they are asked for
    std::vector<BitWord> outside;       ///< for each itemset: what is outside its closure
    std::vector<int> sizes_of_counts;   ///< by stretch
    std::vector<int> sizes_of_outside;  ///< by stretch
};

/// The supports of the parts of an itemset with a candidate: see Candidate.
struct Parts {
    Count largest;
    Count sum;
};

/// Appends something of each candidate.
template <typename T, typename Of>
void append(const std::vector<Candidate>& candidates, std::vector<T>& to, Of of) {
    const auto before = std::ssize(to);
    to.resize(to.size() + candidates.size());
    std::ranges::transform(candidates, to.begin() + before, of);
}

/// Closures one behind the other, as append_encoded writes them.
struct Closures {
    Numbers sizes;  ///< in bytes
    std::string bytes;
};

/// Goes along paths of a tree: enters and leaves items until a path is that of a node.
class Path {
public:
    explicit Path(const EssentialTree& tree) : tree_(tree) {}

    /// Calls leave() and enter(node) until the path is that of `node`, or of nothing.
    template <typename Enter, typename Leave>
    void move_to(Node node, Enter enter, Leave leave) {
        if (!path_.empty() && path_.back() == node) {
            return;
        }
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
          largest_support_(items_.frequent == 0 ? 0 : items_.supports[items_.frequent - 1]),
          asks_all_(items_.size() + 1),
          events_(events),
          part_(items, static_cast<std::size_t>(processes.size())),
          tree_(std::span(items.ranked.supports).first(items.ranked.frequent)),
          asking_(tree_, items.ranked.supports),
          concluding_(tree_, items.ranked.supports),
          asking_path_(tree_),
          answering_path_(tree_),
          concluding_path_(tree_),
          closures_(items.ranked, items.order, options.min_support),
          classes_(processes, items.ranked.items, options.max_classes) {}

    LevelResult run(KeptLevels kept) {
        keeps_closures_ = events_.keeps_closures;
        processes_.broadcast_value(keeps_closures_);
        begin_level();
        find_pairs();
        take_up(std::move(kept));
        while (end_of_level_ > begin_of_level_ && !is_stopped_) {
            walk_level();
        }
        classes_.finish(std::move(tree_));
        return {std::move(classes_), !is_stopped_};
    }

private:
    // Pairs.

    void find_pairs() {
        PairSums<Part> sums(processes_, part_, items_.frequent, min_joint_);
        const Rank rows = options_.max_size > 1 || Part::closes_by_pairs ? part_.rows() : 0;
        const auto width = std::max<std::size_t>(items_.frequent, 1);
        const auto at_once =
            static_cast<Rank>(std::clamp<std::size_t>((std::size_t{1} << 22) / width, 1, 4096));
        for (Rank begin = 0; begin < rows && !is_stopped_; begin += at_once) {
            const Rank end = std::min(rows, begin + at_once);
            sums.for_each_row(begin, end,
                              [this](Rank row, std::span<const Candidate> pairs) { add_row(row, pairs); });
            if (end < rows) {
                go_on({.itemsets = end, .of_itemsets = rows});
            }
        }
    }

    void add_row(Rank row, std::span<const Candidate> pairs) {
        for (const Candidate& pair : pairs) {
            part_.add_pair(row, pair.rank, pair.joint);
        }
        if (row < items_.frequent && options_.max_size > 1) {
            report_.candidates += row;
            add_pairs_to_tree(row, pairs);
        }
    }

    void add_pairs_to_tree(Rank row, std::span<const Candidate> pairs) {
        if (min_joint_ > 0) {
            for (const Candidate& pair : pairs) {
                add_pair(row, pair.rank, pair.joint);
            }
            return;
        }
        auto pair = pairs.begin();
        for (Rank below = 0; below < row; ++below) {
            const bool is_together = pair != pairs.end() && pair->rank == below;
            add_pair(row, below, is_together ? pair->joint : 0);
            pair += is_together ? 1 : 0;
        }
    }

    void add_pair(Rank row, Rank below, Count joint) {
        const Count support = items_.supports[below];
        const Count of_both = items_.supports[row] + support - joint;
        if (joint >= min_joint_ && is_essential(row, {below, joint, support, support}, of_both)) {
            tree_.add(row, below, joint, of_both);
        }
    }

    /// Whether an itemset is essential: that of a node with a frequent candidate. Counts it for the report.
    bool is_essential(Node node, const Candidate& candidate, Count support) {
        const Count without_one = std::max(tree_.support(node), candidate.largest_part);
        const bool is_essential = support - without_one >= options_.min_own;
        ++report_.frequent;
        report_.essential += is_essential ? 1 : 0;
        return is_essential;
    }

    // Levels.

    void begin_level() { report_ = {.size = size_}; }

    void end_level() {
        const Processes::Usage usage = processes_.usage_since();
        if (size_ > 1) {  // of the pairs, all processes count all
            report_.candidates = processes_.sum(report_.candidates);
            report_.frequent = processes_.sum(report_.frequent);
            report_.essential = processes_.sum(report_.essential);
        }
        report_.bytes = usage.bytes;
        report_.slowest = usage.slowest;
        report_.fastest = usage.fastest;
        if (processes_.is_first() && events_.level_done) {
            events_.level_done(report_);
        }
    }

    /// Looks at the itemsets of one size: their closures, and those with one item more.
    void walk_level() {
        const Node end = end_of_level_;
        const auto processes = static_cast<std::size_t>(processes_.size());
        const std::vector<Node> begins =
            stretches_of_level(tree_, begin_of_level_, end, part_.words_of_closure(size_), processes);
        std::size_t first = 0;
        ask(begins, first);
        for (; first + 1 < begins.size() && !is_stopped_; first += processes) {
            walk_round(begins, first);
        }
        leave_paths();
        const bool is_whole = first + 1 >= begins.size() && !has_too_many_classes_;
        end_level();
        keep_level(is_whole);
        begin_of_level_ = end;
        end_of_level_ = static_cast<Node>(tree_.size());
        ++size_;
        begin_level();
    }

    /// Looks at a stretch of itemsets for each process; the first of them begins at `begins[first]`. Each
    /// process has asked about its own. All answer from their lines, and each concludes what becomes of its
    /// own. It also asks about its stretch of the next round then, so that processes wait for each other as
    /// seldom as possible.
    void walk_round(const std::vector<Node>& begins, std::size_t first) {
        const auto processes = static_cast<std::size_t>(processes_.size());
        const std::span<const Node> round = std::span(begins).subspan(first, processes + 1);
        Answers answers = answer(processes_.all_of(questions_, asks_all_), round);
        answers.counts =
            processes_.sums(std::move(answers.counts), answers.sizes_of_counts, largest_support_);
        answers.outside = processes_.unions(std::move(answers.outside), answers.sizes_of_outside);
        const Numbers nodes = conclude(begins, first, answers);
        ask(begins, first + processes);
        add_nodes(round.front(), round.back(), processes_.all_of(nodes));
        has_too_many_classes_ = !classes_.add(tree_, round.back() - round.front());
        collect_closures();
        go_on(progress_at(round.back()));
    }

    /// The itemsets of this process in the round that begins with a stretch; none behind the last round.
    std::pair<Node, Node> stretch(const std::vector<Node>& begins, std::size_t first) const {
        const std::size_t own = first + static_cast<std::size_t>(processes_.number());
        return own + 1 < begins.size() ? std::pair(begins[own], begins[own + 1])
                                       : std::pair(Node{0}, Node{0});
    }

    void leave_paths() {
        const auto enter = [](Node) {};
        asking_path_.move_to(EssentialTree::none, enter, [this] { asking_.leave(); });
        answering_path_.move_to(EssentialTree::none, enter, [this] { part_.leave(); });
        concluding_path_.move_to(EssentialTree::none, enter, [this] { concluding_.leave(); });
    }

    // Asking.

    /// Sets the questions of this process about its itemsets of a round, and the candidates.
    void ask(const std::vector<Node>& begins, std::size_t first) {
        const auto [begin, end] = stretch(begins, first);
        questions_.clear();
        parts_.clear();
        for (Node node = begin; node < end; ++node) {
            const std::vector<Candidate>& found = find_candidates(node);
            const bool asks_all = !put_open(node);
            questions_.push_back(static_cast<std::uint32_t>(found.size()));
            questions_.push_back(asks_all ? asks_all_ : static_cast<std::uint32_t>(open_.size()));
            append(found, questions_, &Candidate::rank);
            append(found, parts_, [](const Candidate& candidate) {
                return Parts{candidate.largest_part, candidate.sum_of_parts};
            });
            questions_.insert(questions_.end(), open_.begin(), open_.end());
            asking_.leave();
        }
    }

    /// Enters a node, and returns its candidates.
    const std::vector<Candidate>& find_candidates(Node node) {
        asking_path_.move_to(
            tree_.parent(node),
            [this](Node each) {
                asking_.enter();
                asking_.find_largest_parts(each);
            },
            [this] { asking_.leave(); });
        asking_.enter();
        if (size_ > 1 && size_ < options_.max_size) {
            asking_.find_candidates(node);
        }
        return asking_.candidates();
    }

    /// Sets `open_`. Returns false where all ranks are to be asked for.
    bool put_open(Node node) {
        open_.clear();
        if constexpr (Part::asks_for_all_ranks) {
            return false;
        }
        put_itemset(node);
        return part_.put_open(itemset_, open_);
    }

    /// Sets `itemset_`, from the root item on.
    void put_itemset(Node node) {
        itemset_.clear();
        for (Node each = node; each != EssentialTree::none; each = tree_.parent(each)) {
            itemset_.push_back(tree_.rank(each));
        }
        std::ranges::reverse(itemset_);
    }

    // Answering.

    Answers answer(const Numbers& questions, std::span<const Node> begins) {
        Answers answers;
        QuestionReader reader(questions, asks_all_);
        for (std::size_t process = 0; process + 1 < begins.size(); ++process) {
            const std::size_t counts_before = answers.counts.size();
            BitStream outside;
            const bool is_own = process == static_cast<std::size_t>(processes_.number());
            for (Node node = begins[process]; node < begins[process + 1]; ++node) {
                answer(node, reader.take_question(), is_own, answers.counts, outside);
            }
            answers.sizes_of_counts.push_back(static_cast<int>(answers.counts.size() - counts_before));
            answers.sizes_of_outside.push_back(static_cast<int>(outside.words().size()));
            answers.outside.insert(answers.outside.end(), outside.words().begin(), outside.words().end());
        }
        return answers;
    }

    /// `is_own`: whether this process asked. Then its lines show nothing of what it left open.
    void answer(Node node, const Question& question, bool is_own, Numbers& counts, BitStream& outside) {
        const bool is_extended = !question.candidates.empty();
        const bool looks = question.asks_all || (!is_own && !question.open.empty());
        if (is_extended || looks) {
            answering_path_.move_to(
                tree_.parent(node), [this](Node each) { enter_answering(each); }, [this] { part_.leave(); });
        }
        const Rank rank = tree_.rank(node);
        if (question.asks_all) {
            part_.tell_outside(rank, outside);
        } else if (looks) {
            part_.tell_outside_of(question.open, rank, outside);
        } else {
            outside.append_zeros(question.open.size());
        }
        if (is_extended) {
            part_.enter_to_count(rank);
            count(question.candidates, counts);
            part_.leave();
        }
    }

    void enter_answering(Node node) {
        if (tree_.parent(node) == EssentialTree::none) {
            part_.set_root(node, tree_);
        }
        part_.enter(tree_.rank(node));
    }

    void count(std::span<const Rank> candidates, Numbers& counts) {
        const std::size_t before = counts.size();
        counts.resize(before + numbers_for(candidates));
        const std::span<Count> joint = std::span(counts).subspan(before);
        part_.count(candidates, joint.first(candidates.size()));
        if (part_.counts_own(size_)) {
            std::ranges::transform(candidates, joint.begin() + std::ssize(candidates),
                                   [this](Rank rank) { return part_.own(rank); });
        }
    }

    /// How many numbers answer a question about these candidates: their joint supports, and their own counts
    /// behind them where these are asked for.
    std::size_t numbers_for(std::span<const Rank> candidates) const {
        return candidates.size() * (part_.counts_own(size_) ? 2 : 1);
    }

    // Concluding.

    /// What becomes of the itemsets of this process in a round, by the answers of all lines: returns, for
    /// each itemset, how many children it has, and the rank, the joint support and the support of each. Puts
    /// the closures to their classes.
    Numbers conclude(const std::vector<Node>& begins, std::size_t first, const Answers& answers) {
        Numbers nodes;
        QuestionReader reader(questions_, asks_all_);
        std::span<const std::uint32_t> counts = answers.counts;
        std::span<const Parts> parts = parts_;
        std::size_t bit = 0;
        const auto [begin, end] = stretch(begins, first);
        for (Node node = begin; node < end; ++node) {
            const Question question = reader.take_question();
            const std::size_t numbers = numbers_for(question.candidates);
            find_children(node, question.candidates, parts, counts.first(numbers), nodes);
            parts = parts.subspan(question.candidates.size());
            counts = counts.subspan(numbers);
            bit = close(node, question, answers.outside, bit);
        }
        return nodes;
    }

    /// `parts`: of the candidates, and others behind them.
    void find_children(Node node, std::span<const Rank> candidates, std::span<const Parts> parts,
                       std::span<const Count> counts, Numbers& nodes) {
        const std::size_t before = nodes.size();
        nodes.push_back(0);
        for (std::size_t i = 0; i < candidates.size(); ++i) {
            if (counts[i] < min_joint_) {
                continue;
            }
            const Candidate candidate = {candidates[i], counts[i], parts[i].largest, parts[i].sum};
            const Count support = part_.counts_own(size_)
                                      ? tree_.support(node) + counts[candidates.size() + i]
                                      : support_by_parts(node, candidate);
            if (is_essential(node, candidate, support)) {
                ++nodes[before];
                nodes.insert(nodes.end(), {candidate.rank, candidate.joint, support});
            }
        }
        report_.candidates += candidates.size();
    }

    Count support_by_parts(Node node, const Candidate& candidate) {
        concluding_path_.move_to(
            node,
            [this](Node each) {
                concluding_.enter();
                concluding_.find_parts(each);
            },
            [this] { concluding_.leave(); });
        return concluding_.support_by_parts(node, candidate);
    }

    /// Puts the closure of an itemset, whose first bit is at `bit`, to its class. Returns where the next one
    /// begins.
    std::size_t close(Node node, const Question& question, std::span<const BitWord> outside,
                      std::size_t bit) {
        if (question.asks_all) {
            const std::size_t first = words_for(bit);
            const std::size_t words = words_for(items_.size());
            put(node, closures_.without(outside.subspan(first, words)));
            return (first + words) * word_bits;
        }
        put_itemset(node);
        for (const Rank rank : itemset_) {
            closures_.add(rank);
        }
        for (const Rank rank : question.open) {
            if ((outside[word_of(bit)] & bit_of(bit)) == 0) {
                closures_.add(rank);
            }
            ++bit;
        }
        put(node, closures_.finish());
        return bit;
    }

    void put(Node node, const EncodedClosure& closure) {
        classes_.put(node, closure);
        if (keeps_closures_) {
            kept_.sizes.push_back(static_cast<std::uint32_t>(closure.bytes.size()));
            kept_.bytes += closure.bytes;
        }
    }

    // What all know then.

    /// Adds the children of itemsets to the tree. `numbers`: see conclude.
    void add_nodes(Node begin, Node end, const Numbers& numbers) {
        std::size_t i = 0;
        for (Node node = begin; node < end; ++node) {
            for (std::uint32_t left = numbers[i++]; left > 0; --left, i += 3) {
                tree_.add(node, numbers[i], numbers[i + 1], numbers[i + 2]);
            }
        }
    }

    /// `end`: behind the last itemset that was looked at.
    LevelProgress progress_at(Node end) const {
        return {.size = size_,
                .itemsets = end - begin_of_level_,
                .of_itemsets = end_of_level_ - begin_of_level_,
                .found = classes_.figures()};
    }

    /// Asks the first process whether to go on, and tells all.
    void go_on(const LevelProgress& progress) {
        const bool wants_to_stop = processes_.is_first() && events_.go_on && !events_.go_on(progress);
        is_stopped_ = processes_.sum((wants_to_stop || has_too_many_classes_) ? 1 : 0) > 0;
    }

    // What is kept for another run.

    /// Gives the closures of a round, where they are kept, to the first process.
    void collect_closures() {
        if (!keeps_closures_) {
            return;
        }
        const std::vector<Numbers> sizes = processes_.gathered(std::exchange(kept_.sizes, {}));
        const std::vector<std::string> bytes = processes_.gathered(std::exchange(kept_.bytes, {}));
        for (std::size_t process = 0; process < sizes.size(); ++process) {
            std::size_t begin = 0;
            for (const std::uint32_t size : sizes[process]) {
                kept_closures_.push_back(bytes[process].substr(begin, size));
                begin += size;
            }
        }
    }

    /// `is_whole`: whether all of the level was done, and has its classes.
    void keep_level(bool is_whole) {
        if (processes_.is_first() && events_.level_kept && is_whole) {
            events_.level_kept(tree_, {.size = size_, .closed = end_of_level_}, kept_closures_);
        }
        kept_closures_.clear();
    }

    /// Goes on from what an earlier run kept, if there is anything.
    void take_up(KeptLevels kept) {
        end_of_level_ = items_.frequent;
        processes_.broadcast_value(kept.state);
        if (kept.state.size == 0) {
            return;
        }
        end_of_level_ = kept.state.closed;
        processes_.broadcast(kept.nodes);
        for (std::size_t i = tree_.size() - items_.frequent; i < kept.nodes.size(); ++i) {
            const KeptLevels::Node& node = kept.nodes[i];
            tree_.add(node.parent, node.rank, node.joint, node.support);
        }
        take_up_classes(kept.closures);
        begin_of_level_ = end_of_level_;
        end_of_level_ = static_cast<Node>(tree_.size());
        size_ = kept.state.size + 1;
        if (has_too_many_classes_) {
            go_on(progress_at(begin_of_level_));  // now, since there may be no level left
        }
        begin_level();
    }

    /// `closures`: in the first process, which tells the others how many it adds at once.
    void take_up_classes(const std::vector<std::string>& closures) {
        constexpr std::size_t bytes_at_once = std::size_t{1} << 24;
        for (Node begin = 0; begin < end_of_level_ && !has_too_many_classes_;) {
            Node end = begin;
            for (std::size_t bytes = 0; end < closures.size() && bytes < bytes_at_once; ++end) {
                classes_.put(end, closures_.decoded(closures[end]));
                bytes += closures[end].size();
            }
            processes_.broadcast_value(end);
            has_too_many_classes_ = !classes_.add(tree_, end - begin);
            begin = end;
        }
    }

    Processes& processes_;
    const RankedItems& items_;
    const MiningOptions& options_;
    Count min_joint_;
    Count largest_support_;   ///< of the frequent items
    std::uint32_t asks_all_;  ///< see QuestionReader; larger than all other numbers of questions
    const LevelEvents& events_;
    Part part_;
    EssentialTree tree_;
    CandidateSearch asking_;      ///< for candidates
    CandidateSearch concluding_;  ///< for parts
    Path asking_path_;
    Path answering_path_;
    Path concluding_path_;
    ClosureBuilder closures_;
    DividedClasses classes_;

    std::size_t size_ = 1;     ///< of the itemsets that are looked at
    Node begin_of_level_ = 0;  ///< the first of them
    Node end_of_level_ = 0;    ///< behind the last of them
    bool has_too_many_classes_ = false;
    bool is_stopped_ = false;
    LevelReport report_;                      ///< until the end of a level, of what this process counts
    bool keeps_closures_ = false;             ///< whether the first process keeps them for another run
    Closures kept_;                           ///< of this process in a round, where they are kept
    std::vector<std::string> kept_closures_;  ///< in the first process: of this level, where they are kept

    Numbers questions_;          ///< of this process: one for each of its itemsets in a round
    std::vector<Parts> parts_;   ///< of their candidates
    std::vector<Rank> itemset_;  ///< set and used in one call
    std::vector<Rank> open_;     ///< likewise
};

}  // namespace

LevelResult mine_by_levels(Processes& processes, const PartItems& items, const MiningOptions& options,
                           const LevelEvents& events, KeptLevels kept) {
    return is_dense(items) ? LevelWalk<DensePart>(processes, items, options, events).run(std::move(kept))
                           : LevelWalk<SparsePart>(processes, items, options, events).run(std::move(kept));
}

}  // namespace korv::tools
