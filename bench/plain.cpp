// A whole run by the plain walks, for comparison: the same arguments, the same six files.

#include <fstream>

#include "app/process_arguments.h"
#include "support/plain_run.h"

int main(int argc, char** argv) {
    std::ifstream input;
    korv::Count minsupp = 0;
    double minconf = 0.0;
    if (korv::process_arguments(argc, argv, input, minconf, minsupp) != 0) {
        return 1;
    }
    korv::Lattice lattice(input, minconf, minsupp);
    korv::test::run_by_plain_walks(lattice);
    return 0;
}
