#include "support/lattice_fixture.h"

#include <stdexcept>

#include "app/globals.h"

namespace korv::test {

namespace {

std::string flushed(std::ofstream& out, const std::string& name) {
    out.flush();
    return read_file(name);
}

}  // namespace

LatticeFixture::LatticeFixture() {
    const std::string prefix = directory_.path().string() + "/";
    S1 = prefix + "intra_exact.txt";
    S2 = prefix + "intra_approx.txt";
    S3 = prefix + "inter_exact.txt";
    S4 = prefix + "inter_approx.txt";
    S5 = prefix + "Lattice.txt";
    S6 = prefix + "number_rules.txt";
}

Lattice& LatticeFixture::make_lattice(const std::string& classes, const RunSettings& settings) {
    input_.str(classes);
    nbrtransaction = settings.transactions;
    lattice_ = std::make_unique<Lattice>(input_, settings.minconf, settings.minsupp);
    return *lattice_;
}

Lattice& LatticeFixture::load(const std::string& classes, const RunSettings& settings) {
    Lattice& lattice = make_lattice(classes, settings);
    lattice.Load_DCI();
    lattice.Load_Hash_table();
    return lattice;
}

Lattice& LatticeFixture::build(const std::string& classes, const RunSettings& settings) {
    Lattice& lattice = load(classes, settings);
    lattice.build_lattice();
    return lattice;
}

std::string LatticeFixture::intra_exact() {
    return flushed(lattice_->intra_exact_out, S1);
}

std::string LatticeFixture::intra_approx() {
    return flushed(lattice_->intra_approx_out, S2);
}

std::string LatticeFixture::inter_exact() {
    return flushed(lattice_->inter_exact_out, S3);
}

std::string LatticeFixture::inter_approx() {
    return flushed(lattice_->inter_approx_out, S4);
}

std::string LatticeFixture::lattice_file() {
    return flushed(lattice_->lattice_io, S5);
}

std::string LatticeFixture::rule_counts_file() {
    return flushed(lattice_->number_rules_out, S6);
}

NodeRef LatticeFixture::node(const Itemset& itemset) const {
    const NodeRef found = lattice_->dci_map.find(itemset);
    if (found == lattice_->dci_map.end()) {
        throw std::invalid_argument("no class of this closed itemset");
    }
    return found;
}

std::vector<Itemset> LatticeFixture::successors(const Itemset& itemset) const {
    return itemsets(lattice_->find_dci_node(node(itemset))->successors);
}

CounterCells nonzero_counters(const Lattice& lattice) {
    CounterCells cells;
    for (const FormDescription& description : rule_catalogue) {
        for (const Kind kind : all_kinds) {
            const Count count =
                lattice.rule_counts.counters[description.counter_row][static_cast<std::size_t>(kind)];
            if (count != 0) {
                cells[{description.form, kind}] = count;
            }
        }
    }
    return cells;
}

std::array<Count, 3> run_totals(const Lattice& lattice) {
    const RuleCounts& counts = lattice.rule_counts;
    return {counts.exact_total, counts.appro_total, counts.apped_total};
}

std::vector<std::string> rule_lines(const std::string& rule_file) {
    std::vector<std::string> rules;
    std::istringstream lines(rule_file);
    for (std::string line; std::getline(lines, line);) {
        if (line.find("-->") != std::string::npos) {
            rules.push_back(line);
        }
    }
    return rules;
}

}  // namespace korv::test
