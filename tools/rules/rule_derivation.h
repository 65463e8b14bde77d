#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <unordered_set>
#include <vector>

#include "base/itemset.h"
#include "base/itemset_hash.h"
#include "common/workers.h"
#include "engine/lattice_entries.h"
#include "engine/pair.h"
#include "engine/supports.h"
#include "rules/accounting.h"
#include "rules/association_merge.h"
#include "rules/column_facts.h"
#include "rules/found_rule.h"
#include "rules/itemset_pool.h"
#include "rules/pair_rules.h"
#include "rules/rule_filter.h"
#include "rules/rule_request.h"
#include "rules/wording.h"

namespace korv::tools {

/// Makes what a thread asks for supports.
using MakeSupports = std::function<std::unique_ptr<Supports>()>;

/// What rules are derived from.
struct RuleSource {
    const LatticeEntries& entries;  ///< with their successors
    MakeSupports make_supports;     ///< called by each thread
    const ColumnFacts& columns;
    const ShortestWording* wording;  ///< null for the items as korv writes them
    Count transactions;
    /// Gets every pair, too, before any rule is derived from it; may be null. It keeps the work in one
    /// thread.
    PairSink* listener = nullptr;
};

/// Told how far the derivation has come: after every few classes, with how many are done.
using DerivationProgress = std::function<void(std::size_t classes)>;

/// Throws what is to be said of a pair whose supports contradict each other. Called by any thread.
using Contradiction = std::function<void(const Pair& pair)>;

/// Derives the rules of all pairs, chooses, words and merges them. `add` gets those that are left, in no
/// order that means anything; `accounting` what became of the others. The threads of `workers` share the
/// work, of which `add` and `progress` see nothing: they are called one at a time, and in the same order
/// however many there are. The first contradiction in the order of the classes is the one that is thrown.
///
/// Memory grows with the itemsets in `pool`, those of the sides of rules that are left or wait, and with what
/// `add` keeps: rules that say the same, or tell of the same association, come from the same class. (The
/// union of their sides is met by the same transactions as the class, so the class is the closure of that
/// union.) Only rules with a side within one exhaustive column, which its rest can word, come from several;
/// they wait until the end. Each thread needs memory for what it remembers of supports, and for some classes
/// at a time.
void derive_rules(const RuleSource& source, const RuleRequest& request, const RuleFilter& filter,
                  ItemsetPool& pool, Accounting& accounting, const AddRule& add,
                  const DerivationProgress& progress, const Contradiction& contradiction, Workers& workers);

}  // namespace korv::tools
