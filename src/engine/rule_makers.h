#pragma once

#include "base/itemset.h"
#include "engine/pair.h"
#include "engine/rule.h"

namespace korv {

/// What decides which rules pairs yield.
struct RuleSettings {
    Count minsupp;       ///< a rule's support must be at least this, in transactions
    double minconf;      ///< a rule's confidence must be at least this
    Count transactions;  ///< of the database
};

// The rule makers. Each hands the rules of one pair to the sink, in the order of the rule files; the pair was
// begun there before. Nothing is validated: differences of supports wrap, quotients may be infinite or NaN.

/// A pair within a node, the support of whose difference f1-e1 is known. 0 only where two essential itemsets
/// partition a class of support 0.
void get_rules_intra_node(const Pair& pair, const RuleSettings& settings, RuleSink& sink);

/// A pair within a node, the support of whose difference is only known within bounds.
void get_rules_intra_supp_approx(const Pair& pair, const RuleSettings& settings, RuleSink& sink);

/// A pair between nodes, the support of whose difference f2-f1 or f2-e1 is known. 0 only where two successors
/// partition a class and the second has support 0.
void get_rules_inter_itemset(const Pair& pair, const RuleSettings& settings, RuleSink& sink);

/// A pair between nodes, the support of whose difference is only known within bounds.
void get_rules_inter_supp_approx(const Pair& pair, const RuleSettings& settings, RuleSink& sink);

/// Makes the rules of each pair that it takes.
class RuleMaker final : public PairSink {
public:
    /// Refers to the sink.
    RuleMaker(const RuleSettings& settings, RuleSink& sink) : settings_(settings), sink_(sink) {}

    void add(const Pair& pair) override;

private:
    const RuleSettings settings_;
    RuleSink& sink_;
};

}  // namespace korv
