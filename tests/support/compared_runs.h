#pragma once

#include <map>
#include <random>

#include "app/lattice.h"
#include "support/lattice_fixture.h"

namespace korv::test {

/// Thresholds of all kinds; fewer transactions than some supports, or more than all of a small database.
RunSettings random_settings(std::mt19937& random);

/// Expects the six files of a whole run by index to be those of one by plain walks, byte for byte. Prints the
/// classes where they are not. There must be a class.
void expect_same_files(const std::map<Itemset, data>& classes, const RunSettings& settings);

}  // namespace korv::test
