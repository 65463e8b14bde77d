#pragma once

#include <cstdint>
#include <limits>

#include "rules/itemset_pool.h"

namespace korv::tools {

/// How strong a rule is, as its position among the strengths that are compared, from 1.
using Rank = std::uint32_t;

/// The strength that no rule reaches: a claim that has it as `high` is outdone by none.
inline constexpr Rank unreachable = std::numeric_limits<Rank>::max();

/// A rule as far as pruning looks at it: two itemsets, and bounds of its strength.
///
/// A claim outdoes another one when its first itemset stands to the first of the other as an Outdoing says,
/// its second to the second likewise, not both are the same, and its `low` is at least the other's `high`.
/// A claim that is outdone still outdoes others, so it does not matter in which order claims are looked at.
///
/// Among claims whose `low` is at most their `high`, that is a strict partial order: both containment and
/// "low is at least high" are transitive, since what is in between has low <= high. So a claim that is
/// outdone by any other is then outdone by one that none outdoes.
struct Claim {
    ItemsetId first;
    ItemsetId second;
    Rank low;
    Rank high;
    std::uint32_t rule;  ///< its number with the caller
};

/// How an itemset stands to that of a claim that is outdone.
enum class Stand {
    contains,  ///< every item of the other one is in it
    within,    ///< it lies within the other one
    equals,    ///< it is the same itemset: the same number in the pool
};

/// What it takes to outdo a claim. `first` is `contains` or `within`. Where one is `contains` and the other
/// `within`, `contains` is the first.
struct Outdoing {
    Stand first;
    Stand second;
};

}  // namespace korv::tools
