#include <cstdlib>
#include <iostream>

#include "lattice.h"

namespace korv {

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
        dci_map[itemset] = read;
    }
}

}  // namespace korv
