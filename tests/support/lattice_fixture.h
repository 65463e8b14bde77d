#pragma once

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "app/lattice.h"
#include "support/collected_rules.h"
#include "support/files.h"
#include "support/loaded_classes.h"

namespace korv::test {

/// Thresholds and number of transactions of a test's run.
struct RunSettings {
    Count minsupp = 1;
    double minconf = 0.0;
    Count transactions = 100;
};

/// A lattice over the text of a class file, with its output files in a temporary directory.
class LatticeFixture : public ::testing::Test {
protected:
    LatticeFixture();

    /// The lattice just constructed: nothing is read yet. One for each test.
    Lattice& make_lattice(const std::string& classes, const RunSettings& settings = {});

    /// The lattice with classes loaded and filed by cardinality.
    Lattice& load(const std::string& classes, const RunSettings& settings = {});

    /// The lattice with successors linked.
    Lattice& build(const std::string& classes, const RunSettings& settings = {});

    // What was written so far.
    std::string intra_exact();
    std::string intra_approx();
    std::string inter_exact();
    std::string inter_approx();
    std::string lattice_file();
    std::string rule_counts_file();

    /// The node of a closed itemset of the lattice.
    NodeRef node(const Itemset& itemset) const;

    /// The closed itemsets of the successors of a closed itemset, in list order.
    std::vector<Itemset> successors(const Itemset& itemset) const;

private:
    TemporaryDirectory directory_;
    std::istringstream input_;
    std::unique_ptr<Lattice> lattice_;
};

/// Counters by form and kind.
using CounterCells = std::map<std::pair<Form, Kind>, Count>;

/// The counters of a lattice that are not 0.
CounterCells nonzero_counters(const Lattice& lattice);

/// The run totals of a lattice: exact, appro, apped.
std::array<Count, 3> run_totals(const Lattice& lattice);

/// The rule lines of a rule file, in order, without their line ends.
std::vector<std::string> rule_lines(const std::string& rule_file);

}  // namespace korv::test
