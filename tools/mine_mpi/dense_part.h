#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "mine/cover.h"
#include "mine/dense_cover.h"
#include "mine/essential_tree.h"
#include "mine_mpi/bit_stream.h"
#include "mine_mpi/level_part.h"
#include "mine_mpi/part_items.h"

namespace korv::tools {

/// A level part (see level_part.h) of items that are in many lines: a DenseCover of the lines here.
class DensePart {
public:
    /// `items` must outlive it. `processes`: how many there are.
    DensePart(const PartItems& items, std::size_t processes);

    static constexpr bool closes_by_pairs = false;
    static constexpr bool asks_for_all_ranks = true;
    Rank rows() const { return frequent_; }
    void pairs_of(Rank rank, std::vector<Candidate>& pairs) const { cover_.pairs_of(rank, 1, pairs); }
    static bool is_wanted(Rank, Rank, Count) { return false; }
    static void add_pair(Rank, Rank, Count) {}
    static void set_root(Rank, const EssentialTree&) {}
    void enter(Rank rank) { cover_.enter(rank); }
    void enter_to_count(Rank rank) { cover_.enter_to_count(rank); }
    void leave() { cover_.leave(); }
    void count(std::span<const Rank> candidates, std::span<Count> counts);
    Count own(Rank rank) { return cover_.own(rank); }
    bool counts_own(std::size_t size) const;
    std::size_t words_of_closure(std::size_t) const { return words_of_closure_; }
    static bool put_open(std::span<const Rank>, std::vector<Rank>&) { return false; }
    void tell_outside(Rank rank, BitStream& outside) { outside.append(cover_.outside_with(rank)); }
    static void tell_outside_of(std::span<const Rank>, Rank, BitStream&) {}

private:
    DenseCover cover_;
    Rank frequent_;
    std::size_t nanoseconds_of_own_;
    std::size_t words_of_closure_;
};

}  // namespace korv::tools
