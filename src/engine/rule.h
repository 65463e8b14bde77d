#pragma once

#include <optional>

#include "base/itemset.h"
#include "engine/pair.h"
#include "engine/rule_catalogue.h"

namespace korv {

/// A number that is known, or bounds on it.
template <typename Number>
struct Estimate {
    Number low;
    Number high;
    bool is_known;  ///< `low` is the number, and so is `high`. Bounds that meet are bounds nevertheless.

    bool operator==(const Estimate&) const = default;
};

/// A number that is known.
template <typename Number>
constexpr Estimate<Number> known(Number number) {
    return {number, number, true};
}

/// Bounds on a number.
template <typename Number>
constexpr Estimate<Number> between(Number low, Number high) {
    return {low, high, false};
}

/// A rule between the itemsets of a pair. The form says which of them is the premise, and how either is read
/// (see premise and conclusion).
struct Rule {
    Form form;        ///< as it is printed
    Form counted_as;  ///< as it is counted: of some rules another form, see the makers
    Kind kind;
    Estimate<Count> support;  ///< in transactions
    /// Nothing for a rule without exception: its confidence is 1, and is not printed.
    std::optional<Estimate<double>> confidence;

    bool operator==(const Rule&) const = default;
};

/// Takes rules, pair after pair.
class RuleSink {
public:
    RuleSink() = default;
    virtual ~RuleSink() = default;
    RuleSink(const RuleSink&) = delete;
    RuleSink& operator=(const RuleSink&) = delete;

    /// The rules that follow are between the itemsets of `pair`. There may be none. The itemsets last only
    /// until the last of these rules was added: copy what is needed later.
    virtual void begin(const Pair& pair) = 0;

    /// A rule of the pair begun last.
    virtual void add(const Rule& rule) = 0;
};

}  // namespace korv
