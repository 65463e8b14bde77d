#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "base/bit_words.h"
#include "mine/cover.h"
#include "mine/covered_lines.h"
#include "mine/essential_tree.h"
#include "mine/joint_lines.h"
#include "mine/line_index.h"
#include "mine/partners.h"
#include "mine_mpi/bit_stream.h"
#include "mine_mpi/level_part.h"
#include "mine_mpi/part_items.h"

namespace korv::tools {

/// A level part (see level_part.h) of items that are in few lines.
///
/// What may be in a closure is seen from the partners of its items (see partners.h), which are those of the
/// whole database and the same in all processes; for larger itemsets, and where there are too many partners,
/// from the lines of one process. Where that leaves many ranks open, all are asked for.
class SparsePart {
public:
    /// `items` must outlive it. `processes`: how many there are.
    SparsePart(const PartItems& items, std::size_t processes);

    static constexpr bool closes_by_pairs = true;
    static constexpr bool asks_for_all_ranks = false;
    Rank rows() const { return items_.size(); }
    void pairs_of(Rank rank, std::vector<Candidate>& pairs);
    bool is_wanted(Rank rank, Rank below, Count together) const;
    void add_pair(Rank rank, Rank below, Count together) { partners_.add(below, rank, together); }
    void set_root(Rank root, const EssentialTree& tree);
    void enter(Rank rank);
    void enter_to_count(Rank rank) { enter(rank); }
    void leave();
    void count(std::span<const Rank> candidates, std::span<Count> counts);
    Count own(Rank rank);
    static bool counts_own(std::size_t size);
    std::size_t words_of_closure(std::size_t size) const;
    bool put_open(std::span<const Rank> itemset, std::vector<Rank>& open);
    void tell_outside(Rank rank, BitStream& outside);
    void tell_outside_of(std::span<const Rank> open, Rank rank, BitStream& outside);

private:
    /// The lines that hold all of a prefix of the itemset, among those of the root item.
    struct Together {
        JointLines::Set lines;
        bool is_made = false;
    };

    std::span<const Transaction> lines(Rank rank) const { return items_.transactions[rank]; }
    void push(Rank rank);
    void pop();
    JointLines made_joint_lines() const;
    const JointLines& joint_lines();
    const JointLines::Set& all(std::size_t size);
    bool asks_partners(std::size_t size) const;
    bool is_covered(const std::vector<char>& is_in, Transaction line) const;
    bool covers(const std::vector<char>& is_in, Rank rank) const;
    void put_open_partners(std::span<const Rank> itemset, std::vector<Rank>& open);
    void put_open_by_lines(std::span<const Rank> itemset, std::vector<Rank>& open);
    template <typename Visit>
    void for_each_covered(Visit visit);

    const RankedItems& items_;
    const std::vector<Rank>& places_;
    std::size_t processes_;
    LineIndex index_;
    Partners partners_;
    PartnerSearch partner_search_;
    std::vector<Rank> itemset_;
    std::vector<char> is_in_itemset_;   ///< by rank
    std::vector<char> is_asked_about_;  ///< by rank: set and used in one call, otherwise 0

    Rank root_ = 0;
    std::vector<Rank> children_;         ///< of the root item, ascending
    std::uint64_t joint_supports_ = 0;   ///< of the root item with each of them, summed up
    std::vector<std::uint32_t> row_of_;  ///< by rank: that of a child in the joint lines
    std::unordered_map<Rank, JointLines>
        kept_lines_;  ///< by root item, as many as the memory for them allows
    std::size_t kept_bytes_ = 0;
    JointLines other_lines_;  ///< of a root item for which there is no more room
    bool has_other_lines_ = false;
    std::vector<Together> all_;  ///< by size of a prefix, from 2 on

    CoveredLines covered_;                  ///< of the itemset that was looked at last
    std::vector<Rank> absent_;              ///< ranks without lines here, ascending
    std::vector<BitWord> present_;          ///< the others, as tell_outside tells ranks
    std::vector<std::uint64_t> looked_at_;  ///< by rank: the last search in lines that looked at it
    std::uint64_t search_ = 0;              ///< the number of the current one

    std::vector<Count> together_;  ///< by rank: set and used in one call, otherwise 0
};

}  // namespace korv::tools
