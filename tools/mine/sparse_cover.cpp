#include "mine/sparse_cover.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace korv::tools {

namespace {

constexpr std::uint32_t no_row = std::numeric_limits<std::uint32_t>::max();

}  // namespace

SparseCover::SparseCover(const RankedItems& items)
    : items_(items),
      index_(items),
      partners_(items),
      partner_search_(items),
      is_in_itemset_(items.size()),
      row_of_(items.size(), no_row),
      closure_ends_(1),
      is_in_closure_(items.size()),
      covered_(items),
      together_(items.frequent),
      looked_at_(items.size()) {
    for (Rank rare = items.frequent; rare < items.size(); ++rare) {
        count_below(items.frequent, lines(rare));
        for (const Rank frequent : touched_) {
            partners_.add(frequent, rare, together_[frequent]);
        }
        forget_counts();
    }
}

void SparseCover::pairs_of(Rank rank, Count least, std::vector<Candidate>& candidates) {
    candidates.clear();
    count_below(rank, lines(rank));
    for (const Rank below : touched_) {
        partners_.add(rank, below, together_[below]);
        if (least > 0 && together_[below] >= least) {
            candidates.push_back({below, together_[below]});
        }
    }
    for (Rank below = 0; least == 0 && below < rank; ++below) {
        candidates.push_back({below, together_[below]});
    }
    std::ranges::sort(candidates, {}, &Candidate::rank);
    forget_counts();
    knows_partners_ = rank + 1 == items_.frequent && partners_.is_complete();
}

/// Sets `together_` for the items below `rank`, and `touched_`.
void SparseCover::count_below(Rank rank, std::span<const Transaction> of_lines) {
    touched_.clear();
    index_.for_each(of_lines, [&](Transaction line, std::span<const Rank> ranks) {
        const Count weight = items_.weight(line);
        for (const Rank below : ranks) {
            if (below >= rank) {
                break;
            }
            if (together_[below] == 0) {
                touched_.push_back(below);
            }
            together_[below] += weight;
        }
    });
}

void SparseCover::forget_counts() {
    for (const Rank rank : touched_) {
        together_[rank] = 0;
    }
}

const std::vector<Rank>& SparseCover::enter(Rank rank) {
    push(rank);
    find_gain();
    for (const Rank gained : gained_) {
        is_in_closure_[gained] = 1;
        closure_.push_back(gained);
    }
    closure_ends_.push_back(closure_.size());
    all_.resize(std::max(all_.size(), itemset_.size() + 1));
    all_[itemset_.size()].is_made = false;
    return gained_;
}

void SparseCover::leave() {
    closure_ends_.pop_back();
    for (; closure_.size() > closure_ends_.back(); closure_.pop_back()) {
        is_in_closure_[closure_.back()] = 0;
    }
    pop();
}

const std::vector<Rank>& SparseCover::gain(Rank rank) {
    push(rank);
    find_gain();
    pop();
    return gained_;
}

void SparseCover::push(Rank rank) {
    itemset_.push_back(rank);
    is_in_itemset_[rank] = 1;
}

void SparseCover::pop() {
    is_in_itemset_[itemset_.back()] = 0;
    itemset_.pop_back();
}

/// Sets `gained_` for the item that was added last.
void SparseCover::find_gain() {
    gained_.clear();
    ++search_;
    if (knows_partners_ && itemset_.size() <= Partners::least_share) {
        gained_.push_back(itemset_.back());
        find_gain_among_partners();
    } else {
        find_gain_in_new_lines();
    }
}

void SparseCover::find_gain_among_partners() {
    partner_search_.for_each_open(partners_, itemset_, [this](Rank other) {
        if (is_in_closure_[other] == 0 && is_in_itemset_[other] == 0 && covers(other)) {
            gained_.push_back(other);
        }
    });
}

/// Whether each line of an item holds an item of the itemset.
bool SparseCover::covers(Rank rank) const {
    return std::ranges::all_of(lines(rank), [this](Transaction line) {
        return std::ranges::any_of(index_[line], [this](Rank held) { return is_in_itemset_[held] != 0; });
    });
}

/// An item is only gained if it is in a line that no other item of the itemset is in.
void SparseCover::find_gain_in_new_lines() {
    covered_.cover(itemset_);
    for (const Transaction added : covered_.added_last()) {
        for (const Rank other : index_[added]) {
            if (is_in_closure_[other] != 0 || looked_at_[other] == search_) {
                continue;
            }
            looked_at_[other] = search_;
            if (std::ranges::all_of(lines(other),
                                    [this](Transaction line) { return covered_.holds(line); })) {
                gained_.push_back(other);
            }
        }
    }
}

Count SparseCover::own(Rank rank) {
    covered_.cover(itemset_);
    Count sum = 0;
    for (const Transaction line : lines(rank)) {
        sum += covered_.holds(line) ? 0 : items_.weight(line);
    }
    return sum;
}

void SparseCover::announce(const std::vector<Rank>& children, std::uint64_t joint_supports) {
    if (itemset_.size() > 1) {
        return;  // these are children of the first item, too
    }
    for (const Rank child : children_) {
        row_of_[child] = no_row;
    }
    children_ = children;
    joint_supports_ = joint_supports;
    has_joint_lines_ = false;
}

void SparseCover::keep_frequent(Count least, std::vector<Candidate>& candidates) {
    if (!has_joint_lines_) {
        make_joint_lines();
    }
    const JointLines::Set& together = all(itemset_.size());
    std::size_t kept = 0;
    for (Candidate candidate : candidates) {
        candidate.joint = joint_lines_.joint(together, row_of_[candidate.rank]);
        if (candidate.joint >= least) {
            candidates[kept++] = candidate;
        }
    }
    candidates.resize(kept);
}

void SparseCover::make_joint_lines() {
    const std::span<const Transaction> of_first = lines(itemset_.front());
    std::vector<Count> weights;
    if (!items_.weights.empty()) {
        std::ranges::transform(of_first, std::back_inserter(weights),
                               [this](Transaction line) { return items_.weight(line); });
    }
    joint_lines_.reset(suitable_rows(children_.size(), of_first.size(), joint_supports_), children_.size(),
                       of_first.size(), weights);
    for (std::size_t row = 0; row < children_.size(); ++row) {
        row_of_[children_[row]] = static_cast<std::uint32_t>(row);
    }
    std::size_t number = 0;
    index_.for_each(of_first, [&](Transaction, std::span<const Rank> ranks) {
        for (const Rank rank : ranks) {
            if (row_of_[rank] != no_row) {
                joint_lines_.insert(row_of_[rank], number);
            }
        }
        ++number;
    });
    has_joint_lines_ = true;
}

/// The lines that hold all items of the prefix of this size, which is at least 2, among those of the first.
const JointLines::Set& SparseCover::all(std::size_t size) {
    Together& together = all_[size];
    if (!together.is_made) {
        const std::uint32_t row = row_of_[itemset_[size - 1]];
        if (size == 2) {
            joint_lines_.assign(row, together.lines);
        } else {
            joint_lines_.intersect(all(size - 1), row, together.lines);
        }
        together.is_made = true;
    }
    return together.lines;
}

}  // namespace korv::tools
