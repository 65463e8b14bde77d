#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <iostream>

#include "app/lattice.h"
#include "base/itemset_table.h"
#include "index/hasse_diagram.h"
#include "index/item_numbering.h"

namespace korv {

namespace {

[[noreturn]] void stop_without_classes() {
    // Where an accented letter belongs stands the replacement character, U+FFFD. It stays: the messages are
    // compared byte for byte.
    std::cerr << "Erreur: le nombre de classes doit \xEF\xBF\xBDtre non null" << std::flush;
    std::cerr << "Arr\xEF\xBF\xBDt du programme" << std::flush;
    std::exit(2);
}

/// The itemset by which to look up the supersets of an entry: its shortest essential itemset, since hardly
/// any other class holds that and not the entry. Only one within the entry, and not empty, will do.
const Itemset& seed(const LatticeEntry& entry) {
    const Itemset* shortest = &entry.itemset();
    for (const Itemset& essential : entry.node->second.essentials) {
        if (!essential.empty() && essential.size() < shortest->size() &&
            is_contained(essential, entry.itemset())) {
            shortest = &essential;
        }
    }
    return *shortest;
}

HasseDiagram hasse_diagram(const std::vector<LatticeEntry>& entries, const ItemNumbering& numbering) {
    ItemsetTable itemsets;
    ItemsetTable seeds;
    Itemset numbers;
    for (const LatticeEntry& entry : entries) {
        numbering.translate(entry.itemset(), numbers);
        itemsets.push_back(numbers);
        numbering.translate(seed(entry), numbers);
        seeds.push_back(numbers);
    }
    return {itemsets, seeds, numbering.size()};
}

}  // namespace

void Lattice::build_lattice() {
    if (hash_table.empty()) {
        stop_without_classes();
    }
    // The empty itemset shares no item with any other, and the walk reaches it by other rules.
    if (hash_table.front().itemset().empty()) {
        walk_frontier();
        return;
    }
    const HasseDiagram diagram = hasse_diagram(hash_table, ItemNumbering(closed_itemsets(dci_map)));
    for (Column position = 0; position < hash_table.size(); ++position) {
        SuccessorList& successors = hash_table[position].successors;
        for (const Column lower : diagram.lower_neighbours(position)) {
            successors.push_back(hash_table[lower].node);
        }
    }
}

void Lattice::walk_frontier() {
    frontier.clear();
    frontier.reserve(hash_table.size());
    if (hash_table.empty()) {
        return;
    }
    // Itemsets of the smallest cardinality have no proper subset among the classes.
    const Count smallest = hash_table.front().cardinality;
    for (auto entry = hash_table.begin(); entry != hash_table.end(); ++entry) {
        if (entry->cardinality != smallest) {
            link_successors(*entry);
        }
        frontier.emplace_back(entry);
    }
}

/// Finds the successors of `entry` below the frontier, and takes those entries off it that `entry` contains.
void Lattice::link_successors(LatticeEntry& entry) {
    visited.clear();
    for (auto position = frontier.begin(); position != frontier.end();) {
        const LatticeEntry& other = **position;
        if (is_contained(other.itemset(), entry.itemset())) {
            insert_succ(other.node, entry.successors);
            position = frontier.erase(position);
            continue;
        }
        if (intersects(other.itemset(), entry.itemset())) {
            processing_succ(other, entry);
        }
        ++position;
    }
}

void Lattice::processing_succ(const LatticeEntry& other, LatticeEntry& entry) {
    for (const NodeRef successor : other.successors) {
        if (visited.contains(successor)) {
            continue;
        }
        if (is_contained(successor->first, entry.itemset())) {
            // What lies below this successor is contained in it, so not immediate for the entry.
            insert_succ(successor, entry.successors);
        } else if (intersects(successor->first, entry.itemset())) {
            processing_succ(*find_dci_node(successor), entry);
        }
        visited.insert(successor);
    }
}

bool Lattice::insert_succ(NodeRef x, SuccessorList& list) {
    for (auto listed = list.begin(); listed != list.end();) {
        // First, so that an equal itemset is refused and the listed one keeps its place.
        if (is_contained(x->first, (*listed)->first)) {
            return false;
        }
        if (is_contained((*listed)->first, x->first)) {
            listed = list.erase(listed);
        } else {
            ++listed;
        }
    }
    list.push_back(x);
    return true;
}

std::vector<LatticeEntry>::const_iterator Lattice::find_dci_node(NodeRef node) const {
    // The order of the entries: by cardinality, then as in the map.
    const auto precedes = [](const LatticeEntry& entry, NodeRef other) {
        const std::size_t cardinality = other->first.size();
        return entry.cardinality < cardinality ||
               (entry.cardinality == cardinality && less{}(entry.node, other));
    };
    const auto found = std::lower_bound(hash_table.begin(), hash_table.end(), node, precedes);
    return found != hash_table.end() && found->node == node ? found : hash_table.end();
}

}  // namespace korv
