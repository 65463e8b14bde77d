#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "rules/claim.h"
#include "rules/itemset_pool.h"
#include "rules/itemset_signatures.h"

namespace korv::tools {

/// Finds claims that outdo others, whatever the sizes of their itemsets.
///
/// The claims stand in blocks of 256 by the signatures of their itemsets, so that those of a block resemble
/// each other. A block is passed over where its strongest claim is too weak, or where what all its claims
/// have, or any of them has, cannot be in the right relation. In the other blocks 256 claims are compared at
/// a time, column of the signature by column, until none is left. Those that are left at the end are compared
/// by their items.
///
/// Invariant: a block has one bit for each claim and column, for the first itemset and for the second; the
/// claims of a block stand by `low`, descending, so that those that are strong enough are the first ones. In
/// `present`, the columns that most claims of the block have come first.
///
/// A few claims are compared one by one.
///
/// Costs at worst O(claims) for each question, divided by some hundreds: hardly more with long itemsets than
/// with short ones. Takes at most some 70 bytes for each claim, besides the claim.
class LongClaims {
public:
    /// Refers to the first two. Where the second itemsets have to be equal, those of `claims` should be:
    /// blocks are not passed over for that.
    LongClaims(const ItemsetPool& itemsets, const ItemsetSignatures& signatures,
               std::span<const Claim> claims, Outdoing outdoing);

    /// Whether one of the claims outdoes `claim`.
    bool outdo(const Claim& claim) const;

private:
    static constexpr std::size_t block_words = 4;
    static constexpr std::size_t block_claims = 64 * block_words;
    static constexpr std::size_t group_blocks = 16;
    static constexpr std::size_t few_claims = 32;

    using Bits = std::array<std::uint64_t, block_words>;

    /// What the claims of a block, or of a group of blocks, have in common. A question looks at all of these,
    /// so they are small.
    struct Limits {
        Rank largest_low;
        /// Of the columns of the first itemsets, and of the second ones: those that any claim has where an
        /// itemset must contain that of another claim, elsewhere those that all claims have.
        std::array<Signature, 2> places;
    };
    /// What the claims of a block have at one place, the first or the second.
    struct Place {
        std::vector<std::uint8_t> present;                           ///< the columns that a claim has
        std::vector<Bits> claims_with_column;                        ///< in the order of `present`
        std::array<std::uint8_t, Signature::columns> position = {};  ///< by column: in `present`
    };
    struct Block {
        std::size_t begin;  ///< of its claims
        std::size_t end;
        std::array<Place, 2> places;
    };

    void sort_by_signature();
    Block block_of(std::size_t begin, std::size_t end);
    void fill(Place& place, std::size_t number, std::span<const Claim> claims) const;
    Limits limits_of(std::size_t begin, std::size_t end) const;
    void widen(Limits& limits, const Limits& others) const;
    bool may_outdo(const Limits& limits, Rank high, const std::array<const Signature*, 2>& signatures) const;
    bool outdoes(const Block& block, const Claim& claim) const;
    std::size_t strong_enough(const Block& block, Rank high) const;
    static bool keep_those_with(const Place& place, const Signature& signature, Bits& left);
    static bool keep_those_within(const Place& place, const Signature& signature, Bits& left);
    bool stands(ItemsetId itemset, Stand stand, ItemsetId other) const;
    bool is_outdone_by(const Claim& claim, const Claim& other) const;

    const ItemsetPool& itemsets_;
    const ItemsetSignatures& signatures_;
    std::array<Stand, 2> stands_;
    std::vector<Claim> claims_;  ///< block by block
    std::vector<Block> blocks_;
    std::vector<Limits> limits_;        ///< of each block
    std::vector<Limits> group_limits_;  ///< of each `group_blocks` blocks
};

}  // namespace korv::tools
