#include "app/lattice.h"

#include <iostream>

#include "app/globals.h"
#include "app/time_stamp.h"

namespace korv {

Lattice::Lattice(std::istream& input, double minimum_confidence, Count minimum_support)
    : minsupp(minimum_support),
      minconf(minimum_confidence),
      intra_exact_out(S1),
      intra_approx_out(S2),
      inter_exact_out(S3),
      inter_approx_out(S4),
      number_rules_out(S6),
      lattice_io(input, S5) {}

void Lattice::LATTICE() {
    Load_DCI();
    std::cout << std::endl << "DCI loaded" << std::endl;

    Load_Hash_table();
    std::cout << " hash_table loaded" << std::endl;

    build_lattice();
    std::cout << " Lattice built" << std::endl;

    Output_Lattice();
    en1 = time_stamp();
    std::cout << " Lattice written" << std::endl
              << " Size of the map: " << dci_map.size() << std::endl
              << " Closed itemsets processed" << std::endl;

    index_supports();
    Output_Rules();
    std::cout << " Rules generted " << std::endl;  // "generted", and a blank at the end

    write_rule_counts();
    std::cout << "Number of exact rules: " << rule_counts.exact_total << std::endl
              << "Number of approximative rules: " << rule_counts.appro_total << std::endl
              << "Number of approximated rules: " << rule_counts.apped_total
              << std::endl
              // Three blanks before y, two before z.
              << "x=" << rule_counts.column_sum(Kind::exact) << "   y=" << rule_counts.column_sum(Kind::appro)
              << "  z=" << rule_counts.column_sum(Kind::apped) << std::endl;
}

}  // namespace korv
