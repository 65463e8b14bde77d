#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "rules/accounting.h"
#include "rules/found_rule.h"
#include "rules/itemset_pool.h"
#include "rules/rule_order.h"

namespace korv::tools {

/// Keeps the first rules of an order, or all of them, each once: of rules that have the same sides and counts
/// one is left, with the wordings of all. What comes is put behind what is kept; when that is too much, all
/// is put in order, and what is beyond the first ones is forgotten, with its itemsets.
class DistinctRules {
public:
    /// `most`: how many to keep; 0 for all. Refers to the order, and to the pool, which it alone may use.
    DistinctRules(const RuleOrder& order, ItemsetPool& itemsets, std::size_t most, Accounting& accounting)
        : order_(order), itemsets_(itemsets), most_(most), accounting_(accounting) {}

    /// `items`: of both sides. `make_sides` puts them into the pool; it is called only for a rule that may be
    /// among the first ones. O(log kept) on the average.
    template <typename MakeSides>
    void add(FoundRule rule, std::size_t items, const MakeSides& make_sides) {
        RuleOrder::Ranked ranked = order_.ranked(rule);
        if (is_beyond(ranked, items)) {
            ++accounting_[Step::top];
            return;
        }
        make_sides(ranked.rule);
        kept_.push_back(ranked);
        constexpr std::size_t room = 8192;
        if (most_ > 0 && kept_.size() > 2 * most_ + room) {
            settle();
        }
    }

    /// The rules in their order. Nothing is left here.
    std::vector<FoundRule> take();

private:
    bool is_beyond(const RuleOrder::Ranked& ranked, std::size_t items) const;
    void settle();
    void forget_other_itemsets();

    const RuleOrder& order_;
    ItemsetPool& itemsets_;
    std::size_t most_;
    Accounting& accounting_;
    std::vector<RuleOrder::Ranked> kept_;
    std::optional<RuleOrder::Ranked> last_;  ///< of the first ones, once they are so many
    std::size_t items_of_last_ = 0;
};

}  // namespace korv::tools
