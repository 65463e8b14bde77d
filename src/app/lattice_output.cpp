#include <iostream>

#include "app/lattice.h"

namespace korv {

void Lattice::Output_Lattice() {
    constexpr const char* stars = "\t\t\t**************************************************\n";
    constexpr const char* blank = "\t\t\t****                                          ****\n";
    // Lopsided: one blank line above the title, two below.
    lattice_io << stars << stars << blank << "\t\t\t****      Disjunctive Search Space\t\t****\n"
               << blank << blank << stars << stars;
    for (const LatticeEntry& entry : hash_table) {
        afficher_IFD_supp(entry.node);
        afficher_essentiels(entry.node->second.essentials);
        afficher_list_succ(entry.successors);
    }
    lattice_io.flush();
}

void Lattice::afficher_IFD_supp(NodeRef node) {
    // The second line is shorter than its neighbours, and "Disjonctive" is spelt so.
    lattice_io.put(
        "******************************\n"
        "**   Equivalence class:  **\n"
        "**                          **\n"
        "******************************\n"
        "DCP:  ");
    lattice_io.write_out_basket(node->first);
    lattice_io.put("\nDisjonctive support: ").put(node->second.support).put("\n");
}

void Lattice::afficher_essentiels(const std::vector<Itemset>& essentials) {
    lattice_io.put("les essentiels:  ");
    if (essentials.empty()) {
        lattice_io.put("VIDE");
    }
    for (const Itemset& essential : essentials) {
        lattice_io.write_out_basket(essential);
        lattice_io.put(" ; ");
    }
    lattice_io.put("\n");
}

void Lattice::afficher_list_succ(const SuccessorList& successors) {
    lattice_io.put("les successeurs: ");
    if (successors.empty()) {
        lattice_io.put("VIDE");
    }
    for (const NodeRef successor : successors) {
        lattice_io.write_out_basket(successor->first);
        // No blank around it, unlike between essential itemsets.
        lattice_io.put(";");
    }
    lattice_io.put("\n\n");
}

void print_vector(const Itemset& itemset) {
    for (const Item item : itemset) {
        std::cout << item << " ";
    }
    std::cout << std::endl;
}

}  // namespace korv
