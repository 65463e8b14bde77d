#include "engine/difference_supports.h"

#include <algorithm>
#include <ranges>

#include "app/lattice.h"

namespace korv {

namespace {

/// Whether an itemset has items, and every essential itemset has items and lies within it.
bool is_well_formed(const Itemset& itemset, const data& of_class) {
    return !itemset.empty() && std::ranges::all_of(of_class.essentials, [&](const Itemset& essential) {
        return !essential.empty() && is_contained(essential, itemset);
    });
}

}  // namespace

DifferenceSupports::Classes::Classes(const std::map<Itemset, data>& classes)
    : numbering(korv::closed_itemsets(classes)) {
    std::vector<NodeRef> by_support;
    by_support.reserve(classes.size());
    for (NodeRef node = classes.begin(); node != classes.end(); ++node) {
        by_support.push_back(node);
        well_formed = well_formed && is_well_formed(node->first, node->second);
    }
    std::ranges::stable_sort(by_support, {}, [](NodeRef node) { return node->second.support; });
    Itemset numbers;
    for (const NodeRef node : by_support) {
        numbering.translate(node->first, numbers);
        closed_itemsets.push_back(numbers);
        supports.push_back(node->second.support);
    }
}

/// The keys of well-formed classes; of others, of which some cannot be numbered, none.
KeyIndex DifferenceSupports::make_key_index(const std::map<Itemset, data>& of, const Classes& classes) {
    ItemsetTable keys;
    std::vector<Count> supports;
    Itemset numbers;
    const auto add = [&](const Itemset& key, Count support) {
        classes.numbering.translate(key, numbers);
        keys.push_back(numbers);
        supports.push_back(support);
    };
    for (const auto& [itemset, of_class] : of) {
        if (!classes.well_formed) {
            break;
        }
        if (of_class.essentials.empty()) {
            add(itemset, of_class.support);
        }
        for (const Itemset& essential : of_class.essentials) {
            add(essential, of_class.support);
        }
    }
    return {keys, supports, classes.numbering.size()};
}

DifferenceSupports::DifferenceSupports(const std::map<Itemset, data>& classes)
    : classes_(classes),
      class_index_(classes_.closed_itemsets, classes_.numbering.size()),
      key_index_(make_key_index(classes, classes_)),
      consistent_(classes_.well_formed && classes_agree()) {}

bool DifferenceSupports::classes_agree() {
    for (std::size_t position = 0; position < classes_.supports.size(); ++position) {
        const Count support = classes_.supports[position];
        if (key_index_.largest_support_within(classes_.closed_itemsets[position], support) != support) {
            return false;
        }
    }
    return true;
}

/// The first class of at least this support, or the number of classes.
Column DifferenceSupports::first_class_of_support(Count support) const {
    return static_cast<Column>(std::ranges::lower_bound(classes_.supports, support) -
                               classes_.supports.begin());
}

/// The largest support of a key within an itemset and the smallest of a class around it.
SupportBounds DifferenceSupports::find_bounds(const Itemset& itemset) {
    classes_.numbering.translate(itemset, numbers_);
    const Count lower = key_index_.largest_support_within(numbers_);
    // Around a key there is no class of less support.
    const Column around = class_index_.first_superset(numbers_, first_class_of_support(lower),
                                                      static_cast<Column>(classes_.supports.size()));
    return {lower, classes_.supports[around]};
}

std::optional<Count> DifferenceSupports::settle(const Itemset& itemset, Count& lower, Count& upper) {
    if (!consistent_ || itemset.empty()) {
        return std::nullopt;
    }
    const auto [known, is_new] = known_.try_emplace(itemset);
    if (is_new) {
        known = find_bounds(itemset);
    }
    const Count low = std::max(lower, known.lower);
    const Count high = std::min(upper, known.upper);
    // A closed itemset of support 0 ends the walk when it comes to its class, with bounds as far as they were
    // narrowed by then.
    if (low > high || high == 0) {
        return std::nullopt;
    }
    lower = low;
    upper = high;
    return low == high ? low : 0;
}

}  // namespace korv
