#include <fstream>
#include <iostream>

#include "app/globals.h"
#include "app/lattice.h"
#include "app/process_arguments.h"
#include "app/time_stamp.h"

namespace {

/// The fourth line of the box ends where its tabs take it, not below the others.
void print_banner() {
    std::cout << "\n  ****************************************************************"
                 "\n  ***                                                          ***"
                 "\n  ***                  The KORV tool                           ***"
                 "\n  ***      Korvane\t\t        ***"
                 "\n  ***                                                          ***"
                 "\n  ****************************************************************"
              << std::endl
              << std::endl;
}

void print_timings(double start, double end) {
    std::cout << "Time spent by Building Lattice step = " << korv::en1 - start << std::endl
              << "Time spent by KOR Deriver step = " << end - korv::en1 << std::endl
              << "Time spent by Disjunctive Lattice Builder = " << end - start << std::endl;
}

/// The whole run. Returns the exit status: 0, also after an argument error.
int run(int argc, char** argv) {
    const double start = korv::time_stamp();
    std::ifstream input;
    print_banner();  // before the arguments are looked at: also above a message about them

    korv::Count minsupp = 0;
    double minconf = 0.0;
    if (korv::process_arguments(argc, argv, input, minconf, minsupp) != 0) {
        return 0;
    }
    std::cout << "Minimum support threshold = " << minsupp << std::endl
              << "Minimum confiance threshold = " << minconf << std::endl;

    korv::Lattice lattice(input, minconf, minsupp);
    lattice.LATTICE();
    input.close();
    std::cout << "Execution ended successfully!!!" << std::endl;
    print_timings(start, korv::time_stamp());
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (...) {
        // Nothing is handled here. But an exception that is caught unwinds the stack, which writes the
        // buffered output files to disk before the program is ended.
        throw;
    }
}
