// What is left of an itemset without another, and a count of rules by form.

#include <iostream>

#include "base/itemset.h"
#include "engine/rule_catalogue.h"

int main() {
    for (const korv::Item item : korv::difference({1, 4, 4, 7}, {4, 7})) {
        std::cout << item << '\n';
    }
    korv::RuleCounts counts;
    counts.add(korv::Form::R432, korv::Kind::appro);
    counts.add(korv::Form::R111, korv::Kind::appro);
    std::cout << korv::kind_name(korv::Kind::appro) << ' ' << counts.column_sum(korv::Kind::appro) << '\n';
}
