// The rules of four classes, from the class file to a sink of one's own.

#include <iostream>
#include <sstream>

#include "engine/difference_supports.h"
#include "engine/lattice_building.h"
#include "engine/pairs.h"
#include "engine/rule_makers.h"
#include "io/class_loading.h"

class PrintedRules final : public korv::RuleSink {
public:
    void begin(const korv::Pair&) override {}
    void add(const korv::Rule& rule) override {
        std::cout << korv::description(rule.form).label << ' ' << rule.support.low << '\n';
    }
};

int main() {
    std::istringstream file("1\t2\t 1,\n2\t3\t 2,\n3\t2\t 3,\n1 2 3\t5\t 1 3, 2 3,\n");
    const korv::ClassMap classes = korv::read_classes(file);
    korv::LatticeEntries lattice = korv::lattice_entries(classes);
    korv::link_successors(lattice);
    korv::DifferenceSupports supports(lattice);
    PrintedRules rules;
    korv::RuleMaker maker({.minsupp = 2, .minconf = 0.5, .transactions = 6}, rules);
    korv::for_each_pair(classes, lattice, supports, maker);
}
