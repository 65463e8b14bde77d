#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "mine/database.h"
#include "rules/column_facts.h"
#include "rules/exclusion.h"
#include "rules/exclusion_report.h"
#include "rules/exclusion_request.h"
#include "rules/item_choice.h"
#include "rules/item_names.h"
#include "rules/rule_request.h"

namespace korv::tools {

/// What the search is doing.
enum class ExclusionPhase { pairs, triples };

/// Told, now and then, what the search does: how many of how many pairs or triples were looked at.
using ExclusionProgress = std::function<void(ExclusionPhase phase, const ExclusionAccounting& accounting,
                                             std::uint64_t done, std::uint64_t all)>;

/// Exclusions in their order (see comes_before).
struct ExclusionResult {
    std::vector<Exclusion> exclusions;
    ExclusionAccounting accounting;
};

/// Triples are not looked at by default where that would take more steps than these: some 10 s.
inline constexpr std::uint64_t most_steps_for_triples = 10'000'000'000;

/// Finds pairs and triples of items that are together in fewer transactions than chance would have it.
///
/// Items are those in at least request.min_support transactions. A pair is left out where `columns` say that
/// its items exclude each other as values of a column. It is an exclusion where the number of transactions
/// with both is below the product of their counts divided by N, and where Fisher's one-sided probability of
/// so few, times the number of pairs, is at most alpha. A triple is looked at where each two of its items are
/// together in at least request.min_support transactions; it is an exclusion where both hold of each of its
/// items and the two others together, with the number of triples. `choice` picks what is told and changes no
/// probability.
///
/// Counts item by item in the transactions of that item: O(sum of squares of the sizes of transactions) for
/// pairs, of cubes for triples, besides a few steps for each pair. Memory: the occurrences of the items once
/// more, the pairs that meet often enough for triples, and what is kept. Throws UsageError where the minimum
/// support is out of range.
ExclusionResult find_exclusions(const Database& database, const ItemNames& names, const ColumnFacts& columns,
                                const ItemChoice& choice, const RuleRequest& request,
                                const ExclusionRequest& exclusions, const ExclusionProgress& progress);

}  // namespace korv::tools
