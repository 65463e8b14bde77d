#include "difference_supports.h"

#include <algorithm>
#include <ranges>

#include "lattice.h"

namespace korv {

DifferenceSupports::Classes::Classes(const std::map<Itemset, data>& classes)
    : numbering(korv::closed_itemsets(classes)) {
    std::vector<NodeRef> by_support;
    by_support.reserve(classes.size());
    for (NodeRef node = classes.begin(); node != classes.end(); ++node) {
        by_support.push_back(node);
    }
    std::ranges::stable_sort(by_support, {}, [](NodeRef node) { return node->second.support; });
    for (const NodeRef node : by_support) {
        add(node->first, node->second);
    }
    for (const NodeRef node : by_support) {
        add_keys(node->first, node->second);
    }
}

void DifferenceSupports::Classes::add(const Itemset& itemset, const data& of_class) {
    Itemset numbers;
    numbering.translate(itemset, numbers);
    closed_itemsets.push_back(numbers);
    supports.push_back(of_class.support);
    well_formed = well_formed && !itemset.empty() &&
                  std::ranges::all_of(of_class.essentials, [&itemset](const Itemset& essential) {
                      return !essential.empty() && is_contained(essential, itemset);
                  });
}

void DifferenceSupports::Classes::add_keys(const Itemset& itemset, const data& of_class) {
    if (!well_formed) {
        return;
    }
    Itemset numbers;
    const auto add_key = [&](const Itemset& key) {
        numbering.translate(key, numbers);
        keys.push_back(numbers);
        key_supports.push_back(of_class.support);
    };
    if (of_class.essentials.empty()) {
        add_key(itemset);
    }
    std::ranges::for_each(of_class.essentials, add_key);
}

DifferenceSupports::DifferenceSupports(const std::map<Itemset, data>& classes)
    : classes_(classes),
      class_index_(classes_.closed_itemsets, classes_.numbering.size()),
      key_index_(classes_.keys, classes_.key_supports, classes_.numbering.size()),
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
