#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "rules/found_rule.h"
#include "rules/holdout.h"
#include "rules/itemset_pool.h"
#include "rules/page_arrays.h"
#include "rules/page_items.h"
#include "rules/rule_columns.h"

namespace korv::tools {

/// The sides of the rules of a page, each once, known by their positions from 0: first the plain ones, then
/// the negated ones, each in the lexicographic order of their items.
class PageSides {
public:
    struct CountedSide {
        Side side;
        CountRange count;  ///< of the transactions that meet it, as close as the rules tell
    };

    /// O(rules + sides * log sides), and memory for a number for each itemset of the pool.
    PageSides(const std::vector<FoundRule>& rules, const ItemsetPool& itemsets);

    const std::vector<CountedSide>& all() const { return sides_; }

    /// How many of them are plain.
    std::size_t plain() const;

    /// The position of a side of one of the rules.
    std::uint32_t position(Side side) const { return positions_[slot(side)]; }

    const CountRange& count(Side side) const { return sides_[position(side)].count; }

private:
    static std::size_t slot(Side side) {
        return 2 * std::size_t{side.itemset()} + (side.is_negated() ? 1 : 0);
    }

    void add(Side side, const CountRange& count);

    std::vector<CountedSide> sides_;
    std::vector<std::uint32_t> positions_;  ///< by slot
};

/// Adds the arrays of sides: their items, and how many transactions meet them.
void add_sides(const PageSides& sides, const ItemsetPool& itemsets, const PageItems& items,
               PageArrays& arrays);

/// Adds the arrays of rules: their sides, forms and counts. Most counts follow from those of the sides and
/// one more number; those of the other rules are told as they are.
void add_rules(const std::vector<FoundRule>& rules, const PageSides& sides, bool has_forms,
               PageArrays& arrays);

/// Adds the arrays of what other transactions say of the rules: none where they say nothing.
void add_holdout(const std::vector<HoldoutCounts>& holdout, PageArrays& arrays);

}  // namespace korv::tools
