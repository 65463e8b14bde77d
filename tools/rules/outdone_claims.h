#pragma once

#include <span>
#include <vector>

#include "rules/claim.h"
#include "rules/itemset_parts.h"
#include "rules/itemset_pool.h"
#include "rules/itemset_signatures.h"
#include "rules/short_claims.h"

namespace korv::tools {

/// Finds which claims are outdone: short ones by short ones with ShortClaims, all others with LongClaims.
///
/// A claim is short when its itemsets have parts (see ItemsetParts), and not too many pairs of them; one that
/// has to be equal does not count.
class OutdoneClaims {
public:
    /// `is_wanted`: for each itemset of the pool, whether claims have it. Refers to the pool.
    OutdoneClaims(const ItemsetPool& itemsets, const std::vector<char>& is_wanted);
    OutdoneClaims(const OutdoneClaims&) = delete;
    OutdoneClaims& operator=(const OutdoneClaims&) = delete;
    ~OutdoneClaims() = default;

    /// Sets `is_outdone` of the rule of each claim that is outdone by another one. No two claims have the
    /// same itemsets, unless the first must lie within. The order of `claims` is lost.
    void mark(std::span<Claim> claims, Outdoing outdoing, std::vector<char>& is_outdone);

private:
    static constexpr std::size_t most_pairs_of_parts = 256;

    void mark_long(std::span<Claim> claims, std::size_t shorts, Outdoing outdoing,
                   std::vector<char>& is_outdone) const;
    void mark_long_of_equal_second(std::span<Claim> claims, Outdoing outdoing,
                                   std::vector<char>& is_outdone) const;
    bool is_short(const Claim& claim, Outdoing outdoing) const;

    const ItemsetPool& itemsets_;
    ItemsetParts parts_;
    ItemsetSignatures signatures_;
    ShortClaims short_claims_;
};

}  // namespace korv::tools
