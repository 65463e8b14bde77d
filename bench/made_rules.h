// Rules that are made for benchmarks. The same call makes the same rules on every machine.

#pragma once

#include <cstddef>
#include <vector>

#include "base/itemset.h"
#include "rules/found_rule.h"
#include "rules/itemset_pool.h"

namespace korv::tools {

/// Of the database that made rules could be of, about.
inline constexpr Count made_transactions = 100'000;

struct MadeRules {
    ItemsetPool itemsets;
    std::vector<FoundRule> rules;
};

/// Rules of two to six items of 500, the more frequent ones more often; the sides are of one to five items,
/// in all four combinations of plain and negated sides. Of these rules, and of the long ones, one in eight
/// has no exception and one in eight is bounded; the other confidences are random.
MadeRules short_rules(std::size_t count);

/// Rules of about 62 items of 119, whose sides are those of 300 nested families, as the rules of dense data
/// are before they are worded in few items.
MadeRules long_rules(std::size_t count);

}  // namespace korv::tools
