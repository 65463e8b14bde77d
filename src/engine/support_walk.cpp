#include "engine/support_walk.h"

#include <algorithm>

namespace korv {

namespace {

bool holds_an_essential(const Itemset& itemset, const std::vector<Itemset>& essentials) {
    return std::ranges::any_of(
        essentials, [&itemset](const Itemset& essential) { return is_contained(essential, itemset); });
}

}  // namespace

bool bounds_from_below(const LatticeEntry& entry, const Itemset& itemset) {
    if (entry.cardinality >= itemset.size()) {
        return holds_an_essential(itemset, entry.essentials());
    }
    // The essential itemsets are tested against the common part. In a damaged file they may stick out of
    // their class, and then one contained in the itemset alone does not count.
    const Itemset common = intersection(entry.itemset(), itemset);
    if (common.size() == entry.cardinality) {
        return true;
    }
    return !common.empty() && holds_an_essential(common, entry.essentials());
}

Count SupportWalk::settle(const Itemset& itemset, SupportBounds& bounds) {
    for (const LatticeEntry& entry : entries_) {
        if (entry.itemset() == itemset) {
            return entry.support();
        }
        if (entry.cardinality > itemset.size() && is_contained(itemset, entry.itemset())) {
            bounds.upper = std::min(bounds.upper, entry.support());
        }
        if (bounds_from_below(entry, itemset)) {
            bounds.lower = std::max(bounds.lower, entry.support());
        }
        // Only after the whole entry: one that lowers the one and raises the other can make the bounds cross.
        if (bounds.lower == bounds.upper) {
            return bounds.lower;
        }
    }
    return 0;
}

}  // namespace korv
