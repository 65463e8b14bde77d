#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/itemset.h"
#include "rules/found_rule.h"

namespace korv::tools {

/// What can be measured of a rule.
enum class Measure : std::size_t {
    support,
    coverage,
    prevalence,
    confidence,
    recall,
    lift,
    leverage,
    added_value,
    conviction,
    certainty,
    zhang,
    phi,
    kappa,
    yule_q,
    odds_ratio,
    relative_risk,
    jaccard,
    cosine,
    kulczynski,
    imbalance,
    laplace,
    chi2,
    p,
};

inline constexpr std::size_t number_of_measures = static_cast<std::size_t>(Measure::p) + 1;

/// The name of a measure on the command line and in columns, such as "added_value".
std::string_view name_of(Measure measure);

/// The names of all measures, in their order.
std::vector<std::string> names_of_measures();

/// The measure of this name; nothing for any other text.
std::optional<Measure> measure_named(std::string_view name);

/// Which counts are known, of all rules alike: support and premise always are, as a number or as bounds.
struct Knowledge {
    bool has_conclusion = true;    ///< how many transactions meet the conclusion
    bool has_transactions = true;  ///< how many there are
    bool has_forms = true;         ///< from which pair of itemsets a rule comes

    /// Whether a measure can be told.
    bool tells(Measure measure) const;

    bool operator==(const Knowledge&) const = default;
};

/// The smallest and the largest value that a measure can have, as far as the counts are known; equal where
/// it is known. Infinity is a value. NaN, both, where no value is defined (0/0).
struct MeasureBounds {
    double low;
    double high;
};

/// The value of a measure for one table of a database of N transactions. Infinite, or NaN where it is not
/// defined.
double value_of(Measure measure, const Contingency& table, Count transactions);

/// The bounds of a measure over all tables between the two of a rule. O(1).
MeasureBounds bounds_of(Measure measure, const FoundRule& rule, Count transactions);

/// What a measure does where a count of the rule is not known, from one end of its range to the other.
enum class Course {
    monotonic,            ///< it only rises, or only falls
    turns_at_chance,      ///< it turns where the sides are independent
    turns_at_equal_sides  ///< it turns where the counts of the sides are equal
};

/// A measure as it is explained.
struct MeasureExplanation {
    std::string_view formula;  ///< of the letters that letters_of_formulas tells
    std::string_view says;     ///< in a few words, the beginning of no sentence
    Course course;
};

MeasureExplanation explanation(Measure measure);

/// What the letters in formulas stand for, in two lines.
std::string_view letters_of_formulas();

/// The text of --help-measures: a line for each measure with its name, its formula and what it says.
std::string_view help_on_measures();

}  // namespace korv::tools
