#pragma once

#include <string>
#include <vector>

#include "engine/lattice_entries.h"

namespace korv::test {

/// The classes of the text of a class file.
ClassMap classes_of(const std::string& class_file);

/// Classes of these closed itemsets, of support 0 and without essential itemsets.
ClassMap classes_of_itemsets(const std::vector<Itemset>& closed_itemsets);

/// Classes and their entries in the lattice.
class LoadedClasses {
public:
    explicit LoadedClasses(ClassMap map);
    explicit LoadedClasses(const std::string& class_file) : LoadedClasses(classes_of(class_file)) {}
    LoadedClasses(const LoadedClasses&) = delete;
    LoadedClasses& operator=(const LoadedClasses&) = delete;

    /// The node of a closed itemset; throws when there is none, as do the operations below.
    NodeRef node(const Itemset& itemset) const;

    LatticeEntry& entry(const Itemset& itemset);
    const LatticeEntry& entry(const Itemset& itemset) const;

    /// The closed itemsets of the successors of a closed itemset, in list order.
    std::vector<Itemset> successors(const Itemset& itemset) const;

    /// Those of each entry.
    std::vector<std::vector<Itemset>> all_successors() const;

    const ClassMap classes;
    LatticeEntries entries;  ///< without successors at first
};

/// The itemsets of successors, in list order.
std::vector<Itemset> itemsets(const SuccessorList& successors);

}  // namespace korv::test
