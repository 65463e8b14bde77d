#include <algorithm>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <utility>
#include <vector>

#include "app/lattice.h"

namespace korv {

namespace {

/// Records of the class file: closed itemset and data.
using Records = std::vector<std::pair<Itemset, data>>;

/// The first items of an itemset as one number. Where the numbers of two itemsets differ, they are in the
/// order of the itemsets; so most comparisons need no more.
std::uint64_t beginning(const Itemset& itemset) {
    constexpr std::size_t items = 4;
    constexpr std::size_t item_bits = 16;
    constexpr Item too_large = 0xFFFE;
    std::uint64_t number = 0;  // of a missing item, too
    for (std::size_t i = 0; i < std::min(items, itemset.size()); ++i) {
        const Item item = std::min(itemset[i], too_large);
        number |= std::uint64_t{item + 1} << (items - 1 - i) * item_bits;
        if (item == too_large) {
            break;  // equal here to other large items, whatever follows
        }
    }
    return number;
}

/// The positions of the records by their closed itemsets; of equal ones the later record comes last.
std::vector<std::size_t> in_order(const Records& records) {
    std::vector<std::pair<std::uint64_t, std::size_t>> keys;
    keys.reserve(records.size());
    for (std::size_t position = 0; position < records.size(); ++position) {
        keys.emplace_back(beginning(records[position].first), position);
    }
    std::ranges::sort(keys, [&records](const auto& a, const auto& b) {
        if (a.first != b.first) {
            return a.first < b.first;
        }
        const auto order = records[a.second].first <=> records[b.second].first;
        return std::is_eq(order) ? a.second < b.second : std::is_lt(order);
    });
    std::vector<std::size_t> positions(keys.size());
    std::ranges::transform(keys, positions.begin(), &std::pair<std::uint64_t, std::size_t>::second);
    return positions;
}

}  // namespace

std::vector<const Itemset*> closed_itemsets(const std::map<Itemset, data>& classes) {
    std::vector<const Itemset*> itemsets;
    itemsets.reserve(classes.size());
    for (const auto& [itemset, of_class] : classes) {
        itemsets.push_back(&itemset);
    }
    return itemsets;
}

void Lattice::Load_DCI() {
    lattice_io.rewind();
    // Asks the output side, whose end-of-file flag is never set on a fresh file: an empty class file is not
    // stopped here but where the lattice is built.
    if (lattice_io.eof()) {
        std::cout << "Erreur: aucune classe disjonctive n'a ete lue." << std::endl;
        std::exit(1);
    }
    Records records(1);
    while (lattice_io.read_in_a_line(records.back().first, records.back().second.support,
                                     records.back().second.essentials)) {
        records.emplace_back();
    }
    records.pop_back();
    // A map is filled fastest in its order, and read fastest afterwards.
    for (const std::size_t position : in_order(records)) {
        auto& [itemset, of_class] = records[position];
        dci_map.insert_or_assign(dci_map.end(), std::move(itemset), std::move(of_class));
    }
}

void Lattice::Load_Hash_table() {
    hash_table.reserve(dci_map.size());
    for (NodeRef node = dci_map.begin(); node != dci_map.end(); ++node) {
        hash_table.push_back({static_cast<Count>(node->first.size()), node, {}});
    }
    // Stable: classes of one cardinality stay in the order of the map.
    std::ranges::stable_sort(hash_table, {}, &LatticeEntry::cardinality);
}

}  // namespace korv
