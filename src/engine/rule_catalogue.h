#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace korv {

/// How much is known of a rule; at the same time the column of its counter.
enum class Kind : std::size_t {
    exact,  ///< confidence 1
    appro,  ///< "approximative": support and confidence known; confidence below 1, or not tested for 1
    apped,  ///< "approximated": support or confidence known as an interval only
};

inline constexpr std::array all_kinds = {Kind::exact, Kind::appro, Kind::apped};

/// The word that stands for a kind in the reports.
constexpr std::string_view kind_name(Kind kind) {
    constexpr std::array<std::string_view, all_kinds.size()> names = {"exact", "appro", "apped"};
    return names[static_cast<std::size_t>(kind)];
}

/// The forms of a rule, Rxyz: x is the group (1 both sides plain, 2 both negated, 3 negated conclusion,
/// 4 negated premise); y the pair of itemsets (1: e1 and f1-e1, 2: e1 and f2-e1, 3: f1 and f2-f1); z the
/// direction (1: the first of the pair is the premise), except that R421 and R422 are the other way round.
///
/// f1 is a closed itemset, e1 one of its essential itemsets, f2 a closed itemset of which f1 is a successor.
// clang-format off
enum class Form : std::size_t {
    R111, R112, R121, R122, R131, R132,
    R211, R212, R221, R222, R231, R232,
    R311, R312, R321, R322, R331, R332,
    R411, R412, R421, R422, R431, R432,
};
// clang-format on

/// How a side of a rule is read and written.
enum class Mode : char {
    disjunction = 'O',  ///< a transaction holds at least one of the items: "1 v 4"
    negation = '!',     ///< it holds none of them: "not(1)not(4)"
};

/// The itemsets of a pair: a base (f1 or e1) and the difference, the rest of the class.
enum class Part { base, difference };

/// A side of the rules of a form.
struct FormSide {
    Part part;
    Mode mode;

    bool operator==(const FormSide&) const = default;
};

/// A line of the catalogue.
struct FormDescription {
    Form form;
    std::string_view label;
    std::string_view text;
    Part premise;  ///< the other part is the conclusion
    /// Row of the form in RuleCounts::counters. A numbering of its own, not the order of the labels.
    std::size_t counter_row;
};

inline constexpr std::size_t forms_in_a_group = 6;

/// All forms in the order of their labels, which is the order of the report: group after group.
// clang-format off
inline constexpr std::array<FormDescription, 24> rule_catalogue = {{
    {Form::R111, "R111", "e1-->(f1-e1)",           Part::base,       1},
    {Form::R112, "R112", "(f1-e1)-->e1",           Part::difference, 0},
    {Form::R121, "R121", "e1-->(f2-e1)",           Part::base,       17},
    {Form::R122, "R122", "(f2-e1)-->e1",           Part::difference, 16},
    {Form::R131, "R131", "f1-->(f2-f1)",           Part::base,       9},
    {Form::R132, "R132", "(f2-f1)-->f1",           Part::difference, 8},

    {Form::R211, "R211", "not(e1)-->not(f1-e1)",   Part::base,       2},
    {Form::R212, "R212", "not(f1-e1)-->not(e1)",   Part::difference, 3},
    {Form::R221, "R221", "not(e1)-->not(f2-e1)",   Part::base,       18},
    {Form::R222, "R222", "not(f2-e1)-->not(e1)",   Part::difference, 19},
    {Form::R231, "R231", "not(f1)-->not(f2-f1)",   Part::base,       10},
    {Form::R232, "R232", "not(f2-f1)-->not(f1)",   Part::difference, 11},

    {Form::R311, "R311", "e1-->not(f1-e1)",        Part::base,       4},
    {Form::R312, "R312", "(f1-e1)-->not(e1)",      Part::difference, 7},
    {Form::R321, "R321", "e1-->not(f2-e1)",        Part::base,       20},
    {Form::R322, "R322", "(f2-e1)-->not(e1)",      Part::difference, 23},
    {Form::R331, "R331", "f1-->not(f2-f1)",        Part::base,       12},
    {Form::R332, "R332", "(f2-f1)-->not(f1)",      Part::difference, 15},

    {Form::R411, "R411", "not(e1)-->(f1-e1)",      Part::base,       6},
    {Form::R412, "R412", "not(f1-e1)-->e1",        Part::difference, 5},
    {Form::R421, "R421", "not(f2-e1)-->e1",        Part::difference, 21},
    {Form::R422, "R422", "not(e1)-->(f2-e1)",      Part::base,       22},
    {Form::R431, "R431", "not(f1)-->(f2-f1)",      Part::base,       14},
    {Form::R432, "R432", "not(f2-f1)-->f1",        Part::difference, 13},
}};
// clang-format on

/// The line of a form.
constexpr const FormDescription& description(Form form) {
    return rule_catalogue[static_cast<std::size_t>(form)];
}

/// The row of RuleCounts::counters in which a form is counted.
constexpr std::size_t counter_row(Form form) {
    return description(form).counter_row;
}

/// The group of a form, from 1: the first digit of its label.
constexpr std::size_t group(Form form) {
    return static_cast<std::size_t>(form) / forms_in_a_group + 1;
}

/// The premise of the rules of a form.
constexpr FormSide premise(Form form) {
    const bool is_plain = group(form) == 1 || group(form) == 3;
    return {description(form).premise, is_plain ? Mode::disjunction : Mode::negation};
}

/// The conclusion of the rules of a form.
constexpr FormSide conclusion(Form form) {
    const bool is_plain = group(form) == 1 || group(form) == 4;
    return {description(form).premise == Part::base ? Part::difference : Part::base,
            is_plain ? Mode::disjunction : Mode::negation};
}

}  // namespace korv
