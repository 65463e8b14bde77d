#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/itemset.h"
#include "engine/rule_catalogue.h"
#include "rules/itemset_pool.h"

namespace korv::tools {

/// A side of a rule as it is worded: an itemset of a pool, plain (a transaction holds one of its items) or
/// negated (it holds none of them).
class Side {
public:
    Side(ItemsetId itemset, bool is_negated) : packed_(itemset << 1 | (is_negated ? 1U : 0U)) {}

    ItemsetId itemset() const { return packed_ >> 1; }
    bool is_negated() const { return (packed_ & 1) != 0; }

    auto operator<=>(const Side&) const = default;  // NOLINT(modernize-use-nullptr): no pointer here

private:
    std::uint32_t packed_;
};

/// The counts of a rule, in transactions. With N, the whole of its fourfold table follows.
struct Contingency {
    Count premise;     ///< meet the premise: x
    Count conclusion;  ///< meet the conclusion: y
    Count both;        ///< meet both, which is the support of the rule: a

    bool operator==(const Contingency&) const = default;
};

/// A rule with its sides in words and its counts.
///
/// Where a support of its pair is known only within bounds, so are some of the counts: each of them is linear
/// in that support, with a slope of 1, 0 or -1. The two tables are those at the ends of the bounds. (Of a
/// rule from a rule file they bound support and confidence, see recorded_counts.h.)
struct FoundRule {
    Side premise;
    Side conclusion;
    Contingency at_low;   ///< where the unknown support is smallest
    Contingency at_high;  ///< where it is largest; the same where every count is known
    Form form;            ///< as korv prints the rule
    Count wordings = 1;   ///< how many rules say the same of every transaction; this is the first of them
    Count readings = 1;   ///< how many rules tell of the same association; this is the best of them

    bool is_known() const { return at_low == at_high; }
};

/// What is known of a rule, as users choose and read it.
enum class Certainty {
    exact,          ///< it has no exception, and its support is known
    approximative,  ///< it has exceptions; support and confidence are known
    bounded,        ///< support or confidence is known only within bounds
};

inline constexpr std::array all_certainties = {Certainty::exact, Certainty::approximative,
                                               Certainty::bounded};

/// The word for a kind of rules, on the command line and in columns.
constexpr std::string_view name_of(Certainty kind) {
    constexpr std::array<std::string_view, all_certainties.size()> names = {"exact", "approximative",
                                                                            "bounded"};
    return names[static_cast<std::size_t>(kind)];
}

/// The certainty of a rule with these tables. One of which only the support of the conclusion is open is not
/// bounded. One of support 0 is approximative.
constexpr Certainty certainty(const Contingency& at_low, const Contingency& at_high) {
    if (at_low.both != at_high.both || at_low.premise != at_high.premise) {
        return Certainty::bounded;
    }
    return at_low.both == at_low.premise && at_low.both != 0 ? Certainty::exact : Certainty::approximative;
}

/// The certainty of a rule.
constexpr Certainty certainty(const FoundRule& rule) {
    return certainty(rule.at_low, rule.at_high);
}

}  // namespace korv::tools
