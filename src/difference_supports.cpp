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
    std::ranges::reverse(by_support);
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
      closed_itemsets_(classes_.closed_itemsets),
      key_index_(classes_.keys, classes_.key_supports, classes_.numbering.size()),
      consistent_(classes_.well_formed && keys_are_consistent()) {}

bool DifferenceSupports::keys_are_consistent() const {
    for (std::size_t key = 0; key < classes_.keys.size(); ++key) {
        const Column smaller_supports = first_class_of_support(classes_.key_supports[key]);
        if (class_index_.first_superset(classes_.keys[key], 0, smaller_supports) != smaller_supports) {
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

std::optional<Count> DifferenceSupports::settle(const Itemset& whole, Count support, const Itemset& part,
                                                Count& lower, Count& upper) {
    // Beyond this the keys within the part would have to be looked at above the support of the whole as well.
    if (!consistent_ || part.empty() || upper != support) {
        return std::nullopt;
    }
    if (selected_ != &whole) {
        classes_.numbering.translate(whole, numbers_);
        key_index_.select(numbers_, support);
        selected_ = &whole;
    }
    classes_.numbering.translate(part, numbers_);

    // The walk returns the support of a closed itemset when it comes to its class. A support of 0 would mean
    // "not known" there, with bounds as far as they were narrowed by then.
    if (const auto closed = closed_itemsets_.find(numbers_)) {
        const Count known = classes_.supports[*closed];
        return known != 0 && lower <= known && known <= upper ? std::optional(known) : std::nullopt;
    }

    const Count of_key = key_index_.largest_support_within(numbers_, lower);
    const Count low = std::max(lower, of_key);
    // Around a key there is no class of less support; around the starting bound there may be.
    const Column from = of_key == low ? first_class_of_support(low) : 0;
    const Column to = first_class_of_support(upper);
    const Column around = from < to ? class_index_.first_superset(numbers_, from, to) : to;
    const Count high = around < to ? classes_.supports[around] : upper;
    if (low > high) {
        return std::nullopt;
    }
    lower = low;
    upper = high;
    return low == high ? low : 0;
}

}  // namespace korv
