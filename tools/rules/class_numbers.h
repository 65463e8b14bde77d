#pragma once

#include <cstddef>
#include <unordered_map>

#include "engine/lattice_entries.h"

namespace korv::tools {

/// The numbers of the classes of a lattice, from 1, in the order of its entries.
class ClassNumbers {
public:
    /// O(classes). The entries must stay as they are.
    explicit ClassNumbers(const LatticeEntries& entries) {
        numbers_.reserve(entries.size());
        for (const LatticeEntry& entry : entries) {
            numbers_.emplace(&entry.itemset(), numbers_.size() + 1);
        }
    }

    /// The number of a class of the lattice.
    std::size_t of(NodeRef node) const { return numbers_.at(&node->first); }

private:
    std::unordered_map<const Itemset*, std::size_t> numbers_;  ///< by closed itemset
};

}  // namespace korv::tools
