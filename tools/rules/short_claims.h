#pragma once

#include <span>
#include <vector>

#include "rules/claim.h"
#include "rules/itemset_parts.h"
#include "rules/itemset_pool.h"

namespace korv::tools {

/// Finds which of many short claims are outdone by another one of them, by looking up the parts of their
/// itemsets.
///
/// - Where both itemsets must be contained, each claim looks for those that it outdoes, by pairs of parts of
///   its two itemsets.
/// - Where both must lie within, each claim looks for one that outdoes it: the same pairs.
/// - Where the first must be contained and the second lie within, they meet half way: each claim leaves its
///   `low` at every pair of a part of its first itemset and its whole second one, and asks at every pair of
///   its whole first itemset and a part of its second one.
///
/// Invariant: a part is looked up only if it is an itemset of a claim at the same place, so there are hardly
/// more look-ups than claims that stand to each other as asked in one of their itemsets. The table of the
/// third case is made in several passes, each for some of the first itemsets, so that it does not take more
/// than some 400 MiB.
class ShortClaims {
public:
    /// About the most pairs that a pass keeps in its table.
    static constexpr std::size_t default_pairs_of_a_pass = std::size_t{1} << 24;

    /// `parts`: of itemsets of a pool of `itemsets` itemsets. Refers to them.
    ShortClaims(const ItemsetParts& parts, std::size_t itemsets,
                std::size_t pairs_of_a_pass = default_pairs_of_a_pass)
        : parts_(parts), itemsets_(itemsets), pairs_of_a_pass_(pairs_of_a_pass) {}

    /// Sets `is_outdone` of the rule of each claim that is outdone. No two claims have the same itemsets
    /// unless both must lie within; all itemsets that are not to be equal have parts. At most 255 look-ups
    /// for each claim of up to 8 items.
    void mark_outdone(std::span<const Claim> claims, Outdoing outdoing, std::vector<char>& is_outdone);

private:
    class Table;

    void mark_contained(std::span<const Claim> claims, std::vector<char>& is_outdone) const;
    void mark_containing(std::span<const Claim> claims, std::vector<char>& is_outdone) const;
    void mark_half_way(std::span<const Claim> claims, std::vector<char>& is_outdone) const;
    template <typename IsOfPass>
    void meet_half_way(std::span<const Claim> claims, Table& lows, IsOfPass is_of_pass,
                       std::vector<char>& is_outdone) const;
    void note_places(std::span<const Claim> claims);
    template <typename Visit>
    void for_each_pair_of_parts(const Claim& claim, Visit visit) const;

    const ItemsetParts& parts_;
    std::size_t itemsets_;
    std::size_t pairs_of_a_pass_;
    bool is_second_equal_ = false;
    std::vector<char> is_first_;   ///< by itemset: whether it is the first of a claim
    std::vector<char> is_second_;  ///< by itemset: whether it is the second of a claim
};

}  // namespace korv::tools
