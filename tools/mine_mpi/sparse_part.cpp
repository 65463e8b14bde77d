#include "mine_mpi/sparse_part.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

#include "mine/candidate_search.h"

namespace korv::tools {

namespace {

constexpr std::uint32_t no_row = std::numeric_limits<std::uint32_t>::max();

/// For joint lines of root items, which every level needs again.
constexpr std::size_t most_kept_bytes = std::size_t{1} << 28;

/// Whether an item is a partner of another one: see Partners.
bool are_often_together(Count together, Count support) {
    return std::uint64_t{together} * Partners::least_share >= support;
}

}  // namespace

SparsePart::SparsePart(const PartItems& items, std::size_t processes)
    : items_(items.ranked),
      places_(items.order.places),
      processes_(processes),
      index_(items.ranked),
      partners_(items.ranked, static_cast<std::size_t>(items.occurrences / processes)),
      partner_search_(items.ranked),
      is_in_itemset_(items.ranked.size()),
      is_asked_about_(items.ranked.size()),
      row_of_(items.ranked.size(), no_row),
      covered_(items.ranked),
      present_(words_for(items.ranked.size())),
      looked_at_(items.ranked.size()),
      together_(items.ranked.frequent) {
    for (Rank rank = 0; rank < items_.size(); ++rank) {
        if (lines(rank).empty()) {
            absent_.push_back(rank);
        } else {
            present_[word_of(places_[rank])] |= bit_of(places_[rank]);
        }
    }
}

void SparsePart::pairs_of(Rank rank, std::vector<Candidate>& pairs) {
    const Rank end = std::min(rank, items_.frequent);
    pairs.clear();
    index_.for_each(lines(rank), [&](Transaction line, std::span<const Rank> ranks) {
        const Count weight = items_.weight(line);
        for (const Rank below : ranks) {
            if (below >= end) {
                break;
            }
            if (together_[below] == 0) {
                pairs.push_back({below});
            }
            together_[below] += weight;
        }
    });
    for (Candidate& pair : pairs) {
        pair.joint = std::exchange(together_[pair.rank], 0);
    }
}

bool SparsePart::is_wanted(Rank rank, Rank below, Count together) const {
    return are_often_together(together, items_.supports[rank]) ||
           (rank < items_.frequent && are_often_together(together, items_.supports[below]));
}

void SparsePart::set_root(Rank root, const EssentialTree& tree) {
    for (const Rank child : children_) {
        row_of_[child] = no_row;
    }
    children_.clear();
    joint_supports_ = 0;
    has_other_lines_ = false;
    root_ = root;
    for (EssentialTree::Node child = tree.first_child(root); child < tree.children_end(root); ++child) {
        row_of_[tree.rank(child)] = static_cast<std::uint32_t>(children_.size());
        children_.push_back(tree.rank(child));
        joint_supports_ += tree.joint(child);
    }
}

void SparsePart::push(Rank rank) {
    itemset_.push_back(rank);
    is_in_itemset_[rank] = 1;
}

void SparsePart::pop() {
    is_in_itemset_[itemset_.back()] = 0;
    itemset_.pop_back();
}

void SparsePart::enter(Rank rank) {
    push(rank);
    all_.resize(std::max(all_.size(), itemset_.size() + 1));
    all_[itemset_.size()].is_made = false;
}

void SparsePart::leave() {
    pop();
}

void SparsePart::count(std::span<const Rank> candidates, std::span<Count> counts) {
    const JointLines& joint_lines = this->joint_lines();
    const JointLines::Set& together = all(itemset_.size());
    std::ranges::transform(candidates, counts.begin(),
                           [&](Rank rank) { return joint_lines.joint(together, row_of_[rank]); });
}

/// The lines of the root item, made when they are first asked for.
const JointLines& SparsePart::joint_lines() {
    const auto kept = kept_lines_.find(root_);
    if (kept != kept_lines_.end()) {
        return kept->second;
    }
    if (has_other_lines_) {
        return other_lines_;
    }
    JointLines made = made_joint_lines();
    const std::size_t bytes = made.bytes();
    if (kept_bytes_ + bytes <= most_kept_bytes) {
        kept_bytes_ += bytes;
        return kept_lines_[root_] = std::move(made);
    }
    has_other_lines_ = true;
    return other_lines_ = std::move(made);
}

JointLines SparsePart::made_joint_lines() const {
    const std::span<const Transaction> of_root = lines(root_);
    std::vector<Count> weights;
    if (!items_.weights.empty()) {
        std::ranges::transform(of_root, std::back_inserter(weights),
                               [this](Transaction line) { return items_.weight(line); });
    }
    JointLines joint_lines;
    joint_lines.reset(suitable_rows(children_.size(), of_root.size(), joint_supports_ / processes_),
                      children_.size(), of_root.size(), weights);
    std::size_t number = 0;
    index_.for_each(of_root, [&](Transaction, std::span<const Rank> ranks) {
        for (const Rank rank : ranks) {
            if (row_of_[rank] != no_row) {
                joint_lines.insert(row_of_[rank], number);
            }
        }
        ++number;
    });
    return joint_lines;
}

/// The lines that hold all items of the prefix of this size, which is at least 2, among those of the root.
const JointLines::Set& SparsePart::all(std::size_t size) {
    Together& together = all_[size];
    if (!together.is_made) {
        const std::uint32_t row = row_of_[itemset_[size - 1]];
        if (size == 2) {
            joint_lines().assign(row, together.lines);
        } else {
            joint_lines().intersect(all(size - 1), row, together.lines);
        }
        together.is_made = true;
    }
    return together.lines;
}

Count SparsePart::own(Rank rank) {
    covered_.cover(itemset_);
    Count sum = 0;
    for (const Transaction line : lines(rank)) {
        sum += covered_.holds(line) ? 0 : items_.weight(line);
    }
    return sum;
}

/// Whether a line here holds an item of the itemset with these marks.
bool SparsePart::is_covered(const std::vector<char>& is_in, Transaction line) const {
    return std::ranges::any_of(index_[line], [&](Rank held) { return is_in[held] != 0; });
}

/// Whether all lines here of this item do.
bool SparsePart::covers(const std::vector<char>& is_in, Rank rank) const {
    return std::ranges::all_of(lines(rank), [&](Transaction line) { return is_covered(is_in, line); });
}

bool SparsePart::counts_own(std::size_t size) {
    return !CandidateSearch::has_parts(size);
}

/// Whether partners tell what may be in the closures of itemsets of this size.
bool SparsePart::asks_partners(std::size_t size) const {
    return partners_.is_complete() && size <= Partners::least_share;
}

/// Where lines have to tell it, many items may have none in some process.
std::size_t SparsePart::words_of_closure(std::size_t size) const {
    return asks_partners(size) ? 1 : words_for(items_.size());
}

/// Most items are in a line here that none of the itemset is in, so that nobody else is asked about them.
bool SparsePart::put_open(std::span<const Rank> itemset, std::vector<Rank>& open) {
    // Their numbers take no more bits than all ranks, or are few anyway.
    const std::size_t most = std::max<std::size_t>(items_.size() / 32, 16);
    const bool is_for_partners = asks_partners(itemset.size());
    if (!is_for_partners && absent_.size() > most) {
        return false;
    }
    for (const Rank rank : itemset) {
        is_asked_about_[rank] = 1;
    }
    if (is_for_partners) {
        put_open_partners(itemset, open);
    } else {
        put_open_by_lines(itemset, open);
    }
    for (const Rank rank : itemset) {
        is_asked_about_[rank] = 0;
    }
    if (open.size() > most) {
        open.clear();
        return false;
    }
    return true;
}

void SparsePart::put_open_partners(std::span<const Rank> itemset, std::vector<Rank>& open) {
    partner_search_.for_each_open(partners_, itemset, [&](Rank other) {
        if (is_asked_about_[other] == 0 && covers(is_asked_about_, other)) {
            open.push_back(other);
        }
    });
}

void SparsePart::put_open_by_lines(std::span<const Rank> itemset, std::vector<Rank>& open) {
    covered_.cover(itemset);
    const auto put = [&](Rank other) {
        if (is_asked_about_[other] == 0) {
            open.push_back(other);
        }
    };
    std::ranges::for_each(absent_, put);
    for_each_covered(put);
}

void SparsePart::tell_outside_of(std::span<const Rank> open, Rank rank, BitStream& outside) {
    push(rank);
    for (const Rank other : open) {
        outside.push_back(!covers(is_in_itemset_, other));
    }
    pop();
}

void SparsePart::tell_outside(Rank rank, BitStream& outside) {
    push(rank);
    covered_.cover(itemset_);
    pop();
    std::vector<BitWord> ranks = present_;
    for_each_covered([&](Rank other) { ranks[word_of(places_[other])] &= ~bit_of(places_[other]); });
    outside.append(ranks);
}

/// Calls `visit` with each rank that has lines here, all of which are covered. One of them is, so only
/// covered lines are looked through where there are fewer of them than items.
template <typename Visit>
void SparsePart::for_each_covered(Visit visit) {
    ++search_;
    const auto look_at = [&](Rank other) {
        if (std::ranges::all_of(lines(other), [this](Transaction line) { return covered_.holds(line); })) {
            visit(other);
        }
    };
    if (covered_.lines().size() >= items_.size()) {
        for (Rank other = 0; other < items_.size(); ++other) {
            if (!lines(other).empty()) {
                look_at(other);
            }
        }
        return;
    }
    for (const Transaction line : covered_.lines()) {
        for (const Rank other : index_[line]) {
            if (std::exchange(looked_at_[other], search_) != search_) {
                look_at(other);
            }
        }
    }
}

}  // namespace korv::tools
