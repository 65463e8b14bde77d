#include "engine/lattice_building.h"

#include "base/itemset_table.h"
#include "engine/frontier_walk.h"
#include "index/hasse_diagram.h"
#include "index/item_numbering.h"

namespace korv {

namespace {

/// The itemset by which to look up the supersets of an entry: its shortest essential itemset, since hardly
/// any other class holds that and not the entry. Only one within the entry, and not empty, will do.
const Itemset& seed(const LatticeEntry& entry) {
    const Itemset* shortest = &entry.itemset();
    for (const Itemset& essential : entry.essentials()) {
        if (!essential.empty() && essential.size() < shortest->size() &&
            is_contained(essential, entry.itemset())) {
            shortest = &essential;
        }
    }
    return *shortest;
}

HasseDiagram hasse_diagram(const LatticeEntries& entries, const WorkSharing& sharing) {
    const ItemNumbering numbering(closed_itemsets(entries));
    ItemsetTable itemsets;
    ItemsetTable seeds;
    Itemset numbers;
    for (const LatticeEntry& entry : entries) {
        numbering.translate(entry.itemset(), numbers);
        itemsets.push_back(numbers);
        numbering.translate(seed(entry), numbers);
        seeds.push_back(numbers);
    }
    return {itemsets, seeds, numbering.size(), sharing};
}

}  // namespace

void link_successors(LatticeEntries& entries, const WorkSharing& sharing) {
    if (entries.empty()) {
        return;
    }
    if (entries.front().itemset().empty()) {
        Frontier frontier;
        VisitedNodes visited;
        walk_frontier(entries, frontier, visited);
        return;
    }
    const HasseDiagram diagram = hasse_diagram(entries, sharing);
    for (Column position = 0; position < entries.size(); ++position) {
        SuccessorList& successors = entries[position].successors;
        for (const Column lower : diagram.lower_neighbours(position)) {
            successors.push_back(entries[lower].node);
        }
    }
}

}  // namespace korv
