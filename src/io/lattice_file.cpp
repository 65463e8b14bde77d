#include "io/lattice_file.h"

namespace korv {

void write_lattice(const LatticeEntries& entries, Output_Manager& out) {
    constexpr const char* stars = "\t\t\t**************************************************\n";
    constexpr const char* blank = "\t\t\t****                                          ****\n";
    // Lopsided: one blank line above the title, two below.
    out << stars << stars << blank << "\t\t\t****      Disjunctive Search Space\t\t****\n"
        << blank << blank << stars << stars;
    for (const LatticeEntry& entry : entries) {
        afficher_IFD_supp(entry.node, out);
        afficher_essentiels(entry.essentials(), out);
        afficher_list_succ(entry.successors, out);
    }
}

void afficher_IFD_supp(NodeRef node, Output_Manager& out) {
    // The second line is shorter than its neighbours, and "Disjonctive" is spelt so.
    out.put(
        "******************************\n"
        "**   Equivalence class:  **\n"
        "**                          **\n"
        "******************************\n"
        "DCP:  ");
    out.write_out_basket(node->first);
    out.put("\nDisjonctive support: ").put(node->second.support).put("\n");
}

void afficher_essentiels(const std::vector<Itemset>& essentials, Output_Manager& out) {
    out.put("les essentiels:  ");
    if (essentials.empty()) {
        out.put("VIDE");
    }
    for (const Itemset& essential : essentials) {
        out.write_out_basket(essential);
        out.put(" ; ");
    }
    out.put("\n");
}

void afficher_list_succ(const SuccessorList& successors, Output_Manager& out) {
    out.put("les successeurs: ");
    if (successors.empty()) {
        out.put("VIDE");
    }
    for (const NodeRef successor : successors) {
        out.write_out_basket(successor->first);
        // No blank around it, unlike between essential itemsets.
        out.put(";");
    }
    out.put("\n\n");
}

}  // namespace korv
