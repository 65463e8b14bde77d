#pragma once

#include <array>
#include <cstddef>
#include <random>
#include <vector>

#include "rules/claim.h"
#include "rules/itemset_pool.h"

namespace korv::test {

/// Claims of which no two have the same itemsets, in an order of no meaning. The number of a rule is the
/// position of its claim.
struct ClaimSet {
    tools::ItemsetPool itemsets;
    std::vector<tools::Claim> claims;
};

/// What random claims are like.
struct ClaimSetShape {
    Item items = 6;              ///< from 1
    std::size_t claims = 50;     ///< at most
    std::size_t most_items = 4;  ///< of an itemset
};

/// Claims whose itemsets are often parts of others, with a few strengths, some of them not to be outdone.
ClaimSet random_claims(const ClaimSetShape& shape, std::mt19937& random);

/// For each claim whether another one outdoes it, by definition.
std::vector<char> outdone_by_definition(const ClaimSet& set, tools::Outdoing outdoing);

/// Each that there is.
inline constexpr std::array every_outdoing = {
    tools::Outdoing{tools::Stand::contains, tools::Stand::contains},
    tools::Outdoing{tools::Stand::contains, tools::Stand::within},
    tools::Outdoing{tools::Stand::contains, tools::Stand::equals},
    tools::Outdoing{tools::Stand::within, tools::Stand::within},
    tools::Outdoing{tools::Stand::within, tools::Stand::equals},
};

}  // namespace korv::test
