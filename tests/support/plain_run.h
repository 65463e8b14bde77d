#pragma once

#include "app/lattice.h"

namespace korv::test {

/// A whole run as Lattice::LATTICE makes it, but by the plain walks alone and without a word on standard
/// output.
inline void run_by_plain_walks(Lattice& lattice) {
    lattice.Load_DCI();
    lattice.Load_Hash_table();
    lattice.walk_frontier();
    lattice.Output_Lattice();
    lattice.Output_Rules();
    lattice.write_rule_counts();
}

}  // namespace korv::test
