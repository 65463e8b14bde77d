#include <algorithm>

#include "app/lattice.h"

namespace korv {

namespace {

bool holds_an_essential(const Itemset& itemset, const std::vector<Itemset>& essentials) {
    return std::ranges::any_of(
        essentials, [&itemset](const Itemset& essential) { return is_contained(essential, itemset); });
}

/// What a class smaller than the itemset says: its support is a lower bound when the class, or one of its
/// essential itemsets, is contained in the itemset.
///
/// The essential itemsets are tested against the common part. In a damaged file they may stick out of their
/// class, and then one contained in the itemset alone does not count.
bool smaller_class_bounds_below(const LatticeEntry& smaller, const Itemset& itemset) {
    const Itemset common = intersection(smaller.itemset(), itemset);
    if (common.size() == smaller.cardinality) {
        return true;
    }
    return !common.empty() && holds_an_essential(common, smaller.node->second.essentials);
}

}  // namespace

Count Lattice::generate_difference_support(const Itemset& itemset, Count& lower, Count& upper) const {
    for (const LatticeEntry& entry : hash_table) {
        const Count support = entry.node->second.support;
        bool bounds_below = false;
        if (entry.cardinality < itemset.size()) {
            bounds_below = smaller_class_bounds_below(entry, itemset);
        } else {
            if (entry.itemset() == itemset) {
                return support;
            }
            if (is_contained(itemset, entry.itemset())) {
                upper = std::min(upper, support);
            }
            bounds_below = holds_an_essential(itemset, entry.node->second.essentials);
        }
        if (bounds_below) {
            lower = std::max(lower, support);
        }
        // Only after the whole entry: one that lowers the one and raises the other can make the bounds cross.
        if (lower == upper) {
            return lower;
        }
    }
    return 0;
}

void Lattice::index_supports() {
    difference_supports_.emplace(dci_map);
}

/// The support of a difference as generate_difference_support finds it, from the indexes where they have an
/// answer.
Count Lattice::support_of_difference(const Itemset& difference, Count& lower, Count& upper) {
    if (difference_supports_) {
        if (const auto settled = difference_supports_->settle(difference, lower, upper)) {
            return *settled;
        }
    }
    return generate_difference_support(difference, lower, upper);
}

}  // namespace korv
