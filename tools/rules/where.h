#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "base/itemset.h"
#include "rules/found_rule.h"
#include "rules/measures.h"

namespace korv::tools {

/// A condition on the measures and counts of a rule, as --where takes it.
///
/// It consists of comparisons (< <= > >= = == !=), joined by "or", "and" and "not" and parentheses; "and"
/// binds more tightly than "or". Either side of a comparison is a number ("0.8", "80%", "inf"), a measure, or
/// a count: support, premise_count, conclusion_count, transactions, items (of both sides together).
/// So `support` is a number of transactions here, as in the output; a percentage beside a count of
/// transactions is one of all transactions. Case does not matter.
///
/// A condition holds when it holds for certain: a comparison when it holds for every two values within the
/// bounds of its sides, and `not` turns the comparisons within it. What is not defined makes no comparison
/// hold, nor its negation.
class Where {
public:
    /// The condition that always holds.
    Where() = default;

    /// Whether the condition holds for a rule of `items` items, both sides together, in a database of so many
    /// transactions. O(comparisons).
    bool holds(const FoundRule& rule, std::size_t items, Count transactions) const;

    /// A measure or count in it that cannot be told, the first one in the text; nothing where there is none.
    std::optional<std::string_view> untold(const Knowledge& knowledge) const;

private:
    friend class WhereParser;

    enum class Quantity : std::uint8_t {
        number,
        percentage,  ///< of all transactions
        measure,
        support,
        premise_count,
        conclusion_count,
        transactions,
        items,
    };

    enum class Comparator : std::uint8_t { less, at_most, more, at_least, equal, unequal };

    struct Operand {
        Quantity quantity = Quantity::number;
        Measure measure = Measure::support;
        double number = 0;
    };

    /// The next step of the evaluation.
    using Step = std::uint32_t;
    static constexpr Step holds_for_certain = 0;
    static constexpr Step does_not_hold = 1;
    static constexpr Step first_comparison = 2;

    struct Comparison {
        Operand left;
        Operand right;
        Comparator comparator = Comparator::less;
        Step if_it_holds = holds_for_certain;
        Step otherwise = does_not_hold;
    };

    struct Subject;

    static MeasureBounds bounds_of(const Operand& operand, const Subject& subject);
    static std::optional<std::string_view> untold(const Operand& operand, const Knowledge& knowledge);
    static bool holds(const Comparison& comparison, const Subject& subject);

    /// From the last one of the text to the first.
    std::vector<Comparison> comparisons_;
    Step first_ = holds_for_certain;
};

/// Parses a condition. Throws Error, which names the column (bytes from 1), what was found and what was
/// expected, for a text that is none, such as an unknown name, a comparison of two numbers or of a count with
/// a measure, or more than 100 parentheses within each other.
Where parse_where(std::string_view text);

}  // namespace korv::tools
