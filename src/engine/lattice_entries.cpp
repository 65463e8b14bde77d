#include "engine/lattice_entries.h"

#include <algorithm>
#include <cstddef>

namespace korv {

LatticeEntries lattice_entries(const ClassMap& classes) {
    LatticeEntries entries;
    entries.reserve(classes.size());
    for (NodeRef node = classes.begin(); node != classes.end(); ++node) {
        entries.push_back({static_cast<Count>(node->first.size()), node, {}});
    }
    // Stable: classes of one cardinality stay in the order of the map.
    std::ranges::stable_sort(entries, {}, &LatticeEntry::cardinality);
    return entries;
}

std::vector<const Itemset*> closed_itemsets(const LatticeEntries& entries) {
    std::vector<const Itemset*> itemsets;
    itemsets.reserve(entries.size());
    for (const LatticeEntry& entry : entries) {
        itemsets.push_back(&entry.itemset());
    }
    return itemsets;
}

LatticeEntries::const_iterator find_closed(const LatticeEntries& entries, const Itemset& itemset) {
    const auto precedes = [](const LatticeEntry& entry, const Itemset& other) {
        const std::size_t cardinality = other.size();
        return entry.cardinality < cardinality ||
               (entry.cardinality == cardinality && entry.itemset() < other);
    };
    const auto found = std::lower_bound(entries.begin(), entries.end(), itemset, precedes);
    return found != entries.end() && found->itemset() == itemset ? found : entries.end();
}

LatticeEntries::const_iterator find_entry(const LatticeEntries& entries, NodeRef node) {
    const auto found = find_closed(entries, node->first);
    return found != entries.end() && found->node == node ? found : entries.end();
}

}  // namespace korv
