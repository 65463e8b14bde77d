#include "io/class_loading.h"

#include <algorithm>
#include <compare>
#include <cstddef>
#include <cstdint>

#include "io/class_file_reader.h"

namespace korv {

namespace {

/// The positions of the records by their closed itemsets; of equal ones the later record comes last.
std::vector<std::size_t> in_order(const Records& records) {
    constexpr unsigned item_bits = 16;
    std::vector<std::pair<std::uint64_t, std::size_t>> keys;
    keys.reserve(records.size());
    for (std::size_t position = 0; position < records.size(); ++position) {
        keys.emplace_back(beginning(records[position].first, item_bits), position);
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

ClassMap to_classes(Records records) {
    ClassMap classes;
    // A map is filled fastest in its order, and read fastest afterwards.
    for (const std::size_t position : in_order(records)) {
        auto& [itemset, of_class] = records[position];
        classes.insert_or_assign(classes.end(), std::move(itemset), std::move(of_class));
    }
    return classes;
}

ClassMap read_classes(const std::function<bool(Itemset& itemset, data& of_class)>& read_record) {
    Records records(1);
    while (read_record(records.back().first, records.back().second)) {
        records.emplace_back();
    }
    records.pop_back();
    return to_classes(std::move(records));
}

ClassMap read_classes(std::istream& input) {
    ClassFileReader reader(input);
    return read_classes(
        [&reader](Itemset& itemset, data& of_class) { return reader.read(itemset, of_class); });
}

}  // namespace korv
