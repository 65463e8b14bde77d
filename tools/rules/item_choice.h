#pragma once

#include <span>
#include <vector>

#include "base/bit_words.h"
#include "base/itemset.h"
#include "rules/item_names.h"
#include "rules/rule_request.h"

namespace korv::tools {

/// What --with, --without, --if, --if-not, --then and --then-not ask of the items of a rule: each that wants
/// items finds one at its place, none of the others finds any. Plain and negated sides are alike.
class ItemChoice {
public:
    /// The choice of every rule.
    ItemChoice() = default;

    /// `items`: those that there are; `names`: theirs. Throws Error as matching_items does.
    ItemChoice(std::span<const PatternWord> patterns, ItemSpan items, const ItemNames& names);

    /// Whether it is the choice of every rule.
    bool is_of_all() const { return demands_.empty(); }

    /// Whether a rule with these items, as its sides are worded, is wanted. O(patterns * items).
    bool holds(ItemSpan premise, ItemSpan conclusion) const;

private:
    /// A set of items: small ones as a bitmap, large ones in order.
    class ItemSet {
    public:
        explicit ItemSet(const Itemset& items);

        bool meets(ItemSpan items) const;

    private:
        bool contains(Item item) const;

        std::vector<BitWord> small_;
        Itemset large_;
    };

    struct Demand {
        ItemSet items;
        PatternPlace place;
        bool is_wanted;
    };

    static bool is_met(const Demand& demand, ItemSpan premise, ItemSpan conclusion);

    std::vector<Demand> demands_;
};

}  // namespace korv::tools
