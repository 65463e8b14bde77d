#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <utility>
#include <vector>

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
    std::vector<std::pair<Itemset, data>> records;
    std::pair<Itemset, data> record;
    while (lattice_io.read_in_a_line(record.first, record.second.support, record.second.essentials)) {
        records.push_back(std::move(record));
    }
    // A map is filled fastest in its order, and read fastest afterwards. Stable: of two records of the same
    // closed itemset the later one comes last and stays.
    std::ranges::stable_sort(records, {}, &std::pair<Itemset, data>::first);
    for (auto& [itemset, of_class] : records) {
        dci_map.insert_or_assign(dci_map.end(), std::move(itemset), std::move(of_class));
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
