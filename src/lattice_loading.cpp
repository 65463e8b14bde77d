#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "lattice.h"

namespace korv {

std::vector<const Itemset*> closed_itemsets(const std::map<Itemset, data>& classes) {
    std::vector<const Itemset*> itemsets;
    itemsets.reserve(classes.size());
    for (const auto& [itemset, of_class] : classes) {
        itemsets.push_back(&itemset);
    }
    return itemsets;
}

void Lattice::Load_DCI() {
    lattice_io.rewind();
    // Asks the output side, whose end-of-file flag is never set on a fresh file: an empty class file is not
    // stopped here but where the lattice is built.
    if (lattice_io.eof()) {
        std::cout << "Erreur: aucune classe disjonctive n'a ete lue." << std::endl;
        std::exit(1);
    }
    Itemset itemset;
    data read;
    while (lattice_io.read_in_a_line(itemset, read.support, read.essentials)) {
        dci_map.insert_or_assign(itemset, read);
    }
}

void Lattice::Load_Hash_table() {
    hash_table.reserve(dci_map.size());
    for (NodeRef node = dci_map.begin(); node != dci_map.end(); ++node) {
        hash_table.push_back({static_cast<Count>(node->first.size()), node, {}});
    }
    // Stable: classes of one cardinality stay in the order of the map.
    std::ranges::stable_sort(hash_table, {}, &LatticeEntry::cardinality);
}

}  // namespace korv
