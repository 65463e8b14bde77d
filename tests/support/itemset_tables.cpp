#include "support/itemset_tables.h"

#include <algorithm>
#include <cstdint>
#include <numeric>

namespace korv::test {

std::vector<Itemset> random_itemsets(std::size_t count, Item items, std::mt19937& random) {
    std::vector<Itemset> itemsets;
    while (itemsets.size() < count) {
        Itemset itemset;
        for (Item item = 0; item < items; ++item) {
            // From one in a thousand for the first item to one in three for the last.
            if (random() % 3000 < 3 + 997 * std::uint64_t{item} * item / (std::uint64_t{items} * items)) {
                itemset.push_back(item);
            }
        }
        if (!itemset.empty()) {
            itemsets.push_back(itemset);
        }
    }
    return rarest_first(itemsets, items);
}

std::vector<Item> numbers_rarest_first(const std::vector<Itemset>& itemsets, Item items) {
    std::vector<std::size_t> frequencies(items);
    for (const Itemset& itemset : itemsets) {
        for (const Item item : itemset) {
            ++frequencies[item];
        }
    }
    std::vector<Item> by_frequency(items);
    std::iota(by_frequency.begin(), by_frequency.end(), 0);
    std::ranges::stable_sort(by_frequency, {}, [&](Item item) { return frequencies[item]; });
    std::vector<Item> numbers(items);
    for (Item rank = 0; rank < items; ++rank) {
        numbers[by_frequency[rank]] = rank;
    }
    return numbers;
}

Itemset renumbered(Itemset itemset, const std::vector<Item>& numbers) {
    std::ranges::transform(itemset, itemset.begin(), [&](Item item) { return numbers[item]; });
    std::ranges::sort(itemset);
    return itemset;
}

std::vector<Itemset> rarest_first(const std::vector<Itemset>& itemsets, Item items) {
    const std::vector<Item> numbers = numbers_rarest_first(itemsets, items);
    std::vector<Itemset> result;
    for (const Itemset& itemset : itemsets) {
        result.push_back(renumbered(itemset, numbers));
    }
    return result;
}

}  // namespace korv::test
