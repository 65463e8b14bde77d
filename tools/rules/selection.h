#pragma once

#include <cstddef>
#include <vector>

#include "rules/accounting.h"
#include "rules/found_rule.h"
#include "rules/rule_order.h"
#include "rules/rule_request.h"

namespace korv::tools {

/// Takes the rules that are left after pruning, and keeps those that are told.
class Selection {
public:
    /// Refers to the order.
    Selection(const RuleOrder& order, const RuleRequest& request)
        : first_(order, request.most_told()),
          of_each_conclusion_(order, request.per_conclusion),
          is_per_conclusion_(request.per_conclusion > 0) {}

    void add(const FoundRule& rule) {
        ++added_;
        if (is_per_conclusion_) {
            of_each_conclusion_.add(rule);
        } else {
            first_.add(rule);
        }
    }

    /// The rules that are told, in their order. `accounting` gets how many are not. Call this once, last.
    std::vector<FoundRule> take(Accounting& accounting);

private:
    FirstRules first_;
    FirstOfEachConclusion of_each_conclusion_;
    bool is_per_conclusion_;
    std::size_t added_ = 0;
};

}  // namespace korv::tools
