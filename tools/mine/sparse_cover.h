#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "mine/cover.h"
#include "mine/covered_lines.h"
#include "mine/joint_lines.h"
#include "mine/line_index.h"
#include "mine/partners.h"

namespace korv::tools {

/// A cover (see cover.h) of items that are in few transactions.
///
/// Most essential itemsets cover nothing but their own items, and that is seen from the lists of partners
/// (see partners.h). Lines are only marked as covered for itemsets of more items than the lists are for, and
/// where somebody asks for own transactions.
class SparseCover {
public:
    /// `items` must outlive the cover.
    explicit SparseCover(const RankedItems& items);

    void pairs_of(Rank rank, Count least, std::vector<Candidate>& candidates);
    const std::vector<Rank>& enter(Rank rank);
    void leave();
    const std::vector<Rank>& gain(Rank rank);
    void announce(const std::vector<Rank>& children, std::uint64_t joint_supports);
    void keep_frequent(Count least, std::vector<Candidate>& candidates);
    Count own(Rank rank);
    std::size_t own_nanoseconds(Rank rank) const { return items_.transactions[rank].size(); }

private:
    /// The lines that hold all of a prefix of the itemset, among those of its first item.
    struct Together {
        JointLines::Set lines;
        bool is_made = false;
    };

    std::span<const Transaction> lines(Rank rank) const { return items_.transactions[rank]; }
    void count_below(Rank rank, std::span<const Transaction> of_lines);
    void forget_counts();
    void push(Rank rank);
    void pop();
    void find_gain();
    void find_gain_among_partners();
    void find_gain_in_new_lines();
    bool covers(Rank rank) const;
    void make_joint_lines();
    const JointLines::Set& all(std::size_t size);

    const RankedItems& items_;
    LineIndex index_;
    Partners partners_;
    PartnerSearch partner_search_;
    bool knows_partners_ = false;  ///< of all items
    std::vector<Rank> itemset_;
    std::vector<char> is_in_itemset_;    ///< by rank
    std::vector<Rank> children_;         ///< of the first item of the itemset, ascending
    std::uint64_t joint_supports_ = 0;   ///< of the first item with each of them, summed up
    std::vector<std::uint32_t> row_of_;  ///< by rank: that of a child in `joint_lines_`
    JointLines joint_lines_;             ///< of the first item, a row for each child; made when needed
    bool has_joint_lines_ = false;
    std::vector<Together> all_;  ///< by size of a prefix, from 2 on
    std::vector<Rank> gained_;   ///< what enter or gain returned last

    std::vector<Rank> closure_;              ///< of the itemset, as it grew
    std::vector<std::size_t> closure_ends_;  ///< by size of a prefix: how much of `closure_` is its closure
    std::vector<char> is_in_closure_;        ///< by rank

    CoveredLines covered_;  ///< of the itemset, where they are asked for

    std::vector<Count> together_;           ///< by rank: set and used in one call, otherwise 0
    std::vector<Rank> touched_;             ///< ranks whose `together_` is not 0
    std::vector<std::uint64_t> looked_at_;  ///< by rank: the last search for gains that looked at it
    std::uint64_t search_ = 0;              ///< the number of the current one
};

}  // namespace korv::tools
