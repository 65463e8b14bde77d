#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/rule_catalogue.h"
#include "mine/threshold.h"
#include "rules/found_rule.h"
#include "rules/measures.h"

namespace korv::tools {

/// How sides are worded.
enum class Wording {
    shortest,  ///< by the shortest itemset that says the same of every transaction
    full,      ///< as korv writes them
};

/// Which rules of an association are kept.
enum class Readings {
    one,  ///< the best one
    all,
};

/// Which rules are left out because another one says more. Each goes on where the one before it ends.
enum class Prune {
    none,
    same,        ///< weaker than a rule of the same conclusion
    full,        ///< weaker than any other rule
    productive,  ///< hardly better than a rule of fewer items, whichever of its sides is the premise
};

/// What is left out, by its word on the command line.
inline constexpr std::array<std::pair<std::string_view, Prune>, 4> prunes = {{
    {"none", Prune::none},
    {"same", Prune::same},
    {"full", Prune::full},
    {"productive", Prune::productive},
}};

/// The groups of forms in words, from the first.
inline constexpr std::array<std::string_view, 4> form_groups = {"or-or", "none-none", "or-none", "none-or"};

/// Where a pattern of items is looked for.
enum class PatternPlace { either, premise, conclusion };

/// A pattern of --with, --without, --if, --if-not, --then or --then-not, as it was typed.
struct PatternWord {
    std::string option;
    std::string text;
    PatternPlace place;
    bool is_wanted;  ///< whether a rule must have such an item there, or must not
};

/// Which of the options that have a default were given.
struct GivenOptions {
    bool min_support = false;
    bool min_confidence = false;
    bool wording = false;
    bool readings = false;
    bool sort = false;
};

/// The most rules that a page takes.
inline constexpr std::size_t most_page_limit = 1'000'000;

/// Which rules are wanted, and how they are told.
struct RuleRequest {
    GivenOptions given = {};  ///< of rule files, other things go without saying than of classes
    /// In a small database, 1 % is a transaction or two, which make no pattern, but itemsets without end.
    Threshold min_support = {1, true, 3};
    double min_confidence = 0.8;

    std::vector<PatternWord> patterns;
    std::vector<Form> forms;            ///< in the order of the catalogue; empty for all
    std::vector<Certainty> kinds;       ///< empty for all
    std::size_t max_items = 6;          ///< of both sides together; 0 for any
    std::size_t max_premise_items = 0;  ///< 0 for any
    std::size_t max_conclusion_items = 0;
    /// The smallest lift, inclusive. Nothing: more than 1. 0: any, also one that is not defined.
    std::optional<double> min_lift;
    std::string where;  ///< empty for none

    bool is_tested = false;     ///< --test: no rules that could be chance
    bool is_confirmed = false;  ///< --holdout: only rules that other transactions confirm
    double alpha = 0.05;        ///< how probable it may be that chance brings a rule through either; up to 1

    Wording wording = Wording::shortest;
    Readings readings = Readings::one;
    std::optional<Prune> prune;  ///< nothing: productive, or same where the rules are too many

    Measure sort = Measure::leverage;
    bool is_ascending = false;
    std::size_t top = 0;             ///< 0 for all
    std::size_t per_conclusion = 0;  ///< 0 for all
    std::size_t page_limit = 0;      ///< how many rules a page takes; 0 where there is to be none

    std::size_t threads = 1;  ///< that derive them; the rules are the same with any number, from 1

    /// How many rules are told at most; 0 for all.
    std::size_t most_told() const { return is_limited_by_page() ? page_limit : top; }

    /// Whether it is the page, and not `top`, that decides on how many rules are told.
    bool is_limited_by_page() const { return page_limit > 0 && (top == 0 || page_limit < top); }
};

}  // namespace korv::tools
