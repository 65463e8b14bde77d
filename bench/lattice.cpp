// Loads a class file and builds its lattice, as korv does before it looks for rules: what korv-check is
// compared with.
//
// usage: korv_lattice CLASSFILE

#include <fstream>
#include <iostream>

#include "engine/lattice_building.h"
#include "engine/lattice_entries.h"
#include "io/class_loading.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: korv_lattice CLASSFILE\n";
        return 1;
    }
    std::ifstream input(argv[1], std::ios::binary);  // NOLINT(*-pointer-arithmetic): the arguments
    const korv::ClassMap classes = korv::read_classes(input);
    korv::LatticeEntries entries = korv::lattice_entries(classes);
    korv::link_successors(entries);
    std::cout << entries.size() << '\n';
    return 0;
}
