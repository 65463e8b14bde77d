#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/itemset.h"
#include "rules/rule_request.h"
#include "rules/summary_lines.h"

namespace korv::tools {

/// The steps that leave rules out, in their order.
enum class Step : std::size_t {
    chance,          ///< lift
    forms,           ///< another form
    kinds,           ///< another kind
    columns,         ///< true by the columns of the table alone
    items,           ///< not the items asked for
    size,            ///< too many items
    where,           ///< not as --where asks
    one_column,      ///< a column on both sides, of which --test can say nothing
    insignificant,   ///< what --test leaves out
    same_fact,       ///< the same fact in other words
    reading,         ///< another reading of an association
    turned_round,    ///< the contrapositive of a rule without exception
    weaker,          ///< dominated
    unproductive,    ///< hardly better than a shorter one
    per_conclusion,  ///< beyond --per-conclusion
    top,             ///< beyond --top
    not_confirmed,   ///< what --holdout leaves out
};

inline constexpr std::size_t number_of_steps = static_cast<std::size_t>(Step::not_confirmed) + 1;

/// What became of every rule.
struct Accounting {
    std::uint64_t classes = 0;
    std::uint64_t rule_files = 0;  ///< where the rules come from rule files, not from classes
    Count transactions = 0;        ///< 0 where that is not known
    std::uint64_t pairs = 0;       ///< that were looked at
    std::uint64_t derived = 0;     ///< rules that reach the minimum support and confidence
    std::array<std::uint64_t, number_of_steps> left_out = {};
    /// What was done of what was asked, since it decides on the words of the steps.
    Prune prune = Prune::none;

    std::uint64_t& operator[](Step step) { return left_out[static_cast<std::size_t>(step)]; }
    std::uint64_t operator[](Step step) const { return left_out[static_cast<std::size_t>(step)]; }

    /// Adds what became of the rules of other pairs.
    void add(const Accounting& others);

    /// How many rules are left.
    std::uint64_t left() const;
};

/// Where the rules come from: "119 classes, 2,201 transactions".
std::string origin_text(const Accounting& accounting);

/// A line for each step that left rules out, in their order, with the option that undoes it; but for --top
/// where it is the last one, which beyond_text tells.
std::vector<SummaryLine> step_lines(const Accounting& accounting, const RuleRequest& request);

/// Which option tells the rules beyond those that are told, or what else does: "--top 0 shows all 420". Empty
/// where there are none.
std::string beyond_text(const Accounting& accounting, const RuleRequest& request);

/// A sentence, with its line end: where no rule is left, which step took the last ones and what brings them
/// back; else, where less was pruned than is usual, that it was. Empty where neither is so.
std::string closing_note(const Accounting& accounting, const RuleRequest& request);

/// The accounting in words, for standard error: a line for each step that left rules out, with the option
/// that undoes it; then, where less was pruned than is usual, a sentence that says so, or, where no rule is
/// left, one that says which step took the last ones and what brings them back.
std::string accounting_text(const Accounting& accounting, const RuleRequest& request);

}  // namespace korv::tools
