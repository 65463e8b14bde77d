#pragma once

#include <vector>

#include "engine/lattice_entries.h"
#include "io/Output_Manager.h"

namespace korv {

/// Writes the whole lattice file: a banner and, for each entry, a block of the three pieces below.
void write_lattice(const LatticeEntries& entries, Output_Manager& out);

/// Writes the banner of a class, its closed itemset and its support.
void afficher_IFD_supp(NodeRef node, Output_Manager& out);

/// Writes the line of the essential itemsets.
void afficher_essentiels(const std::vector<Itemset>& essentials, Output_Manager& out);

/// Writes the line of the successors, and the empty line that ends a block.
void afficher_list_succ(const SuccessorList& successors, Output_Manager& out);

}  // namespace korv
