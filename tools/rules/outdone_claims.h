#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "rules/claim.h"
#include "rules/itemset_parts.h"
#include "rules/itemset_pool.h"
#include "rules/itemset_signatures.h"

namespace korv::tools {

/// Finds which claims are outdone: short ones by short ones with ShortClaims, all others with LongClaims.
///
/// A claim is short when its itemsets have parts (see ItemsetParts), and not too many pairs of them; one that
/// has to be equal does not count.
class OutdoneClaims {
public:
    /// `is_wanted`: for each itemset of the pool, whether claims have it. `threads`: how many of them mark
    /// claims at a time; they share the memory that one would take. Refers to the pool.
    OutdoneClaims(const ItemsetPool& itemsets, const std::vector<char>& is_wanted, std::size_t threads = 1);
    OutdoneClaims(const OutdoneClaims&) = delete;
    OutdoneClaims& operator=(const OutdoneClaims&) = delete;
    ~OutdoneClaims() = default;

    /// Sets `is_outdone` of the rule of each claim that is outdone by another one. No two claims have the
    /// same itemsets, unless the first must lie within. The order of `claims` is lost.
    /// Several threads can mark claims of different rules.
    void mark(std::span<Claim> claims, Outdoing outdoing, std::vector<char>& is_outdone) const;

private:
    static constexpr std::size_t most_pairs_of_parts = 256;

    void mark_long(std::span<Claim> claims, std::size_t shorts, Outdoing outdoing,
                   std::vector<char>& is_outdone) const;
    void mark_long_of_equal_second(std::span<Claim> claims, Outdoing outdoing,
                                   std::vector<char>& is_outdone) const;
    bool is_short(const Claim& claim, Outdoing outdoing) const;

    const ItemsetPool& itemsets_;
    const std::size_t pairs_of_a_pass_;  ///< of ShortClaims
    ItemsetParts parts_;
    ItemsetSignatures signatures_;
};

}  // namespace korv::tools
