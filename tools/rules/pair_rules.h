#pragma once

#include <array>
#include <cstddef>

#include "base/itemset.h"
#include "engine/pair.h"
#include "engine/rule_catalogue.h"
#include "rules/found_rule.h"

namespace korv::tools {

inline constexpr std::size_t rules_of_a_pair = 8;

/// The forms of the eight rules of a pair, in the order of the catalogue.
constexpr std::array<Form, rules_of_a_pair> forms_of(PairKind kind) {
    // In each group two forms for each kind of pair, in the order of the kinds.
    constexpr std::size_t forms_of_a_kind = 2;
    std::array<Form, rules_of_a_pair> forms = {};
    for (std::size_t i = 0; i < forms.size(); ++i) {
        forms[i] = static_cast<Form>(i / forms_of_a_kind * forms_in_a_group +
                                     static_cast<std::size_t>(kind) * forms_of_a_kind + i % forms_of_a_kind);
    }
    return forms;
}

/// The supports of a pair in a database: everything about its eight rules. See Pair.
struct PairSupports {
    Count transactions;  ///< N
    Count support;       ///< of the union
    Count base;
    Count difference;
};

/// How many transactions meet a side, if `meeting` meet its itemset.
constexpr Count meeting_side(Count meeting, Mode mode, Count transactions) {
    return mode == Mode::disjunction ? meeting : transactions - meeting;
}

/// How many transactions meet the base as `base` reads it, and the difference as `difference` does.
constexpr Count meeting_both(const PairSupports& pair, Mode base, Mode difference) {
    const bool is_base_plain = base == Mode::disjunction;
    const bool is_difference_plain = difference == Mode::disjunction;
    if (is_base_plain) {
        return is_difference_plain ? pair.base + pair.difference - pair.support
                                   : pair.support - pair.difference;
    }
    return is_difference_plain ? pair.support - pair.base : pair.transactions - pair.support;
}

/// The counts of the rule of a form.
constexpr Contingency contingency(Form form, const PairSupports& pair) {
    const bool is_base_premise = premise(form).part == Part::base;
    const Mode base = is_base_premise ? premise(form).mode : conclusion(form).mode;
    const Mode difference = is_base_premise ? conclusion(form).mode : premise(form).mode;
    const Count base_meets = meeting_side(pair.base, base, pair.transactions);
    const Count difference_meets = meeting_side(pair.difference, difference, pair.transactions);
    return {is_base_premise ? base_meets : difference_meets, is_base_premise ? difference_meets : base_meets,
            meeting_both(pair, base, difference)};
}

}  // namespace korv::tools
