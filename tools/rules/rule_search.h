#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "common/workers.h"
#include "engine/lattice_entries.h"
#include "rules/accounting.h"
#include "rules/column_facts.h"
#include "rules/found_rule.h"
#include "rules/holdout.h"
#include "rules/itemset_pool.h"
#include "rules/measures.h"
#include "rules/phase.h"
#include "rules/rule_derivation.h"
#include "rules/rule_filter.h"
#include "rules/rule_input.h"
#include "rules/rule_request.h"
#include "rules/size_count.h"

namespace korv::tools {

/// Where it is not said what to leave out, unproductive rules are looked for as long as that takes no more
/// than about 10 s on one core: among up to 5 million rules of at most 8 items, or 330,000 longer ones, each
/// of which takes about 15 times as long. (Measured: 7 s for 3.7 million rules of at most 6 items; 8 s for
/// 340,000 short and 160,000 long ones; 12 s for 150,000 and 480,000.)
inline constexpr std::size_t most_work_for_productive = 5'000'000;
inline constexpr std::size_t work_for_a_long_rule = 15;

/// What korv itself would make of the classes, with the same minimum support and confidence.
struct KorvOutput {
    SizeCount rules;
    std::uint64_t bytes_of_lattice = 0;  ///< of the lattice file
};

/// Rules that were asked for, in their order.
struct SearchResult {
    std::vector<FoundRule> rules;
    ItemsetPool itemsets;                ///< of their sides
    ColumnFacts columns;                 ///< by which they are worded
    std::vector<HoldoutCounts> holdout;  ///< of the rules, in other transactions; empty without these
    Accounting accounting;
    LatticeEntries lattice;  ///< of the classes of the input; empty unless it was asked for
    Knowledge known = {};    ///< what can be told of the rules
};

/// Told what phase the search is in, from that of the lattice to that of sorting, and how many of how many
/// classes are done where it derives.
struct SearchProgress {
    std::function<void(Phase phase)> begin;
    std::function<void(const Accounting& accounting, std::size_t done, std::size_t classes)> derived;
};

/// The filter that `request` asks for. Throws Error where the request does not go with the input, such as for
/// an item that there is not.
RuleFilter rule_filter(const RuleInput& input, const RuleRequest& request);

/// What is wanted besides rules.
struct SearchExtras {
    KorvOutput* korv = nullptr;  ///< is filled; may be null
    bool keeps_lattice = false;  ///< which takes memory, also while rules are compared
};

/// Finds the rules that `request` asks for; `filter` is its filter. Where the input has other transactions
/// to confirm them, only the rules that these confirm at the error rate of the request are left. Throws Error
/// where classes contradict each other.
SearchResult search_rules(const RuleInput& input, const RuleRequest& request, const RuleFilter& filter,
                          const SearchProgress& progress, const SearchExtras& extras = {});

/// Takes out of the rules of a result what the request leaves out as weaker, or what goes without saying of
/// so many rules.
void prune(SearchResult& result, const RuleRequest& request, Count transactions, Workers& workers);

}  // namespace korv::tools
