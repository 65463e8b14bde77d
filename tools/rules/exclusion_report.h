#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "base/itemset.h"
#include "rules/rule_request.h"

namespace korv::tools {

/// The steps that leave pairs and triples of items out, in their order.
enum class ExclusionStep : std::size_t {
    columns,    ///< values of one column, which exclude each other by nature
    chance,     ///< together as often as by chance
    uncertain,  ///< more often than by chance, but chance could give as few
    items,      ///< not the items asked for
    top,        ///< beyond --top
};

inline constexpr std::size_t number_of_exclusion_steps = static_cast<std::size_t>(ExclusionStep::top) + 1;

/// What became of every pair and every triple.
struct ExclusionAccounting {
    std::uint64_t items = 0;  ///< that reach the minimum support
    Count transactions = 0;
    std::uint64_t pairs = 0;    ///< all of these items
    std::uint64_t triples = 0;  ///< those of which each two items meet in enough transactions
    std::array<std::uint64_t, number_of_exclusion_steps> left_out = {};
    std::uint64_t kept = 0;             ///< of both, by all steps but --top
    bool has_too_many_triples = false;  ///< so that none was looked at

    std::uint64_t& operator[](ExclusionStep step) { return left_out[static_cast<std::size_t>(step)]; }
    std::uint64_t operator[](ExclusionStep step) const { return left_out[static_cast<std::size_t>(step)]; }

    /// How many exclusions are left.
    std::uint64_t left() const;
};

/// The accounting in words, for standard error: a line for each step that left any out, with the option that
/// undoes it, if there is one; then, where none is left, a sentence that says which step took the last ones.
std::string exclusion_report(const ExclusionAccounting& accounting, const RuleRequest& request);

}  // namespace korv::tools
