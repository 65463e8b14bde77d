#pragma once

#include <map>
#include <string>
#include <utility>

#include "rules/found_rule.h"
#include "rules/item_names.h"
#include "rules/itemset_pool.h"
#include "rules/rule_writer.h"

namespace korv::tools {

/// Sides of rules between named items, and what writers want to know of them.
class MadeRules {
public:
    explicit MadeRules(std::map<Item, std::string> names) : names_(std::move(names)) {}

    Side any(const Itemset& items) { return {pool_.intern(items), false}; }
    Side none(const Itemset& items) { return {pool_.intern(items), true}; }

    const ItemsetPool& pool() const { return pool_; }
    const ItemNames& names() const { return names_; }

    RuleBook book(Count transactions, std::vector<Measure> measures = {}) const {
        return {pool_, names_, transactions, std::move(measures)};
    }

private:
    ItemsetPool pool_;
    ItemNames names_;
};

/// A rule of which everything is known.
inline FoundRule known_rule(Side premise, Side conclusion, const Contingency& counts,
                            Form form = Form::R131) {
    return {.premise = premise, .conclusion = conclusion, .at_low = counts, .at_high = counts, .form = form};
}

/// The 2,201 persons aboard the Titanic.
inline const std::map<Item, std::string> titanic_names = {
    {1, "class=1st"},  {2, "class=2nd"}, {3, "class=3rd"}, {4, "class=crew"},  {5, "sex=male"},
    {6, "sex=female"}, {7, "age=child"}, {8, "age=adult"}, {9, "survived=no"}, {10, "survived=yes"},
};

/// What a writer makes of rules.
inline std::string written(RuleFormat format, const RuleBook& book, const std::vector<FoundRule>& rules,
                           const TerminalStyle& style = {}) {
    std::string text;
    const auto writer = rule_writer(format, book, style, [&text](std::string_view piece) { text += piece; });
    for (const FoundRule& rule : rules) {
        writer->write(rule);
    }
    writer->finish();
    return text;
}

}  // namespace korv::tools
