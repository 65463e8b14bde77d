#include "engine/frontier_walk.h"

namespace korv {

namespace {

/// Finds the successors of `entry` below the frontier, and takes those entries off it that `entry` contains.
void find_successors(LatticeEntry& entry, const LatticeEntries& entries, Frontier& frontier,
                     VisitedNodes& visited) {
    visited.clear();
    for (auto position = frontier.begin(); position != frontier.end();) {
        const LatticeEntry& other = **position;
        if (is_contained(other.itemset(), entry.itemset())) {
            insert_succ(other.node, entry.successors);
            position = frontier.erase(position);
            continue;
        }
        if (intersects(other.itemset(), entry.itemset())) {
            processing_succ(other, entry, entries, visited);
        }
        ++position;
    }
}

}  // namespace

void walk_frontier(LatticeEntries& entries, Frontier& frontier, VisitedNodes& visited) {
    frontier.clear();
    frontier.reserve(entries.size());
    if (entries.empty()) {
        return;
    }
    // Itemsets of the smallest cardinality have no proper subset among the classes.
    const Count smallest = entries.front().cardinality;
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        if (entry->cardinality != smallest) {
            find_successors(*entry, entries, frontier, visited);
        }
        frontier.emplace_back(entry);
    }
}

void processing_succ(const LatticeEntry& other, LatticeEntry& entry, const LatticeEntries& entries,
                     VisitedNodes& visited) {
    for (const NodeRef successor : other.successors) {
        if (visited.contains(successor)) {
            continue;
        }
        if (is_contained(successor->first, entry.itemset())) {
            // What lies below this successor is contained in it, so not immediate for the entry.
            insert_succ(successor, entry.successors);
        } else if (intersects(successor->first, entry.itemset())) {
            processing_succ(*find_entry(entries, successor), entry, entries, visited);
        }
        visited.insert(successor);
    }
}

bool insert_succ(NodeRef x, SuccessorList& list) {
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

}  // namespace korv
