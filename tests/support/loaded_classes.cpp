#include "support/loaded_classes.h"

#include <sstream>
#include <stdexcept>
#include <utility>

#include "io/class_loading.h"

namespace korv::test {

ClassMap classes_of(const std::string& class_file) {
    std::istringstream input(class_file);
    return read_classes(input);
}

ClassMap classes_of_itemsets(const std::vector<Itemset>& closed_itemsets) {
    ClassMap classes;
    for (const Itemset& itemset : closed_itemsets) {
        classes[itemset];
    }
    return classes;
}

LoadedClasses::LoadedClasses(ClassMap map) : classes(std::move(map)), entries(lattice_entries(classes)) {}

NodeRef LoadedClasses::node(const Itemset& itemset) const {
    const NodeRef found = classes.find(itemset);
    if (found == classes.end()) {
        throw std::invalid_argument("no class of this closed itemset");
    }
    return found;
}

LatticeEntry& LoadedClasses::entry(const Itemset& itemset) {
    const auto position = find_entry(entries, node(itemset)) - entries.cbegin();
    return entries.at(static_cast<std::size_t>(position));
}

const LatticeEntry& LoadedClasses::entry(const Itemset& itemset) const {
    return *find_entry(entries, node(itemset));
}

std::vector<Itemset> LoadedClasses::successors(const Itemset& itemset) const {
    return itemsets(entry(itemset).successors);
}

std::vector<std::vector<Itemset>> LoadedClasses::all_successors() const {
    std::vector<std::vector<Itemset>> lists;
    for (const LatticeEntry& each : entries) {
        lists.push_back(itemsets(each.successors));
    }
    return lists;
}

std::vector<Itemset> itemsets(const SuccessorList& successors) {
    std::vector<Itemset> result;
    for (const NodeRef successor : successors) {
        result.push_back(successor->first);
    }
    return result;
}

}  // namespace korv::test
