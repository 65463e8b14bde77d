#include "support/random_classes.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "io/class_record.h"

namespace korv::test {

namespace {

Itemset random_part(const Itemset& itemset, std::mt19937& random) {
    Itemset part;
    std::ranges::copy_if(itemset, std::back_inserter(part), [&](Item) { return random() % 2 == 0; });
    return part;
}

Count disjunctive_support(const Itemset& itemset, const std::vector<Itemset>& transactions) {
    return static_cast<Count>(std::ranges::count_if(
        transactions, [&itemset](const Itemset& transaction) { return intersects(transaction, itemset); }));
}

}  // namespace

std::map<Itemset, data> contradictory_classes(std::mt19937& random) {
    std::map<Itemset, data> classes;
    for (std::size_t i = 1 + random() % 9; i > 0; --i) {
        Itemset itemset;
        for (Item item = 1; item <= 5; ++item) {
            itemset.insert(itemset.end(), random() % 12 == 0 ? 2 : random() % 2, item);
        }
        if (itemset.empty()) {
            continue;
        }
        data& of_class = classes[itemset];
        of_class.support = static_cast<Count>(random() % 8);
        for (std::size_t k = random() % 3; k > 0; --k) {
            Itemset essential = random_part(itemset, random);
            if (essential.empty() && random() % 8 != 0) {
                essential = {itemset.front()};
            }
            if (random() % 40 == 0) {
                essential = {6};
            }
            of_class.essentials.push_back(essential);
        }
    }
    return classes;
}

std::vector<Itemset> random_transactions(Item items, std::size_t most, std::mt19937& random) {
    std::vector<Itemset> transactions(1 + random() % most);
    for (Itemset& transaction : transactions) {
        for (Item item = 1; item <= items; ++item) {
            if (random() % 3 == 0) {
                transaction.push_back(item);
            }
        }
    }
    return transactions;
}

std::map<Itemset, data> some_classes(const std::vector<Itemset>& transactions, Item items, std::size_t tries,
                                     std::mt19937& random) {
    std::map<Itemset, data> classes;
    for (; tries > 0; --tries) {
        Itemset itemset;
        for (Item item = 1; item <= items; ++item) {
            if (random() % 3 == 0) {
                itemset.push_back(item);
            }
        }
        const Count support = disjunctive_support(itemset, transactions);
        Itemset closed;
        for (Item item = 1; item <= items; ++item) {
            Itemset with_item = itemset;
            with_item.push_back(item);
            std::ranges::sort(with_item);
            if (disjunctive_support(with_item, transactions) == support) {
                closed.push_back(item);
            }
        }
        if (itemset.empty() || closed.empty()) {
            continue;
        }
        data& of_class = classes[closed];
        of_class.support = support;
        if (itemset.size() < closed.size() && random() % 4 != 0) {
            of_class.essentials.push_back(itemset);
        }
    }
    return classes;
}

std::map<Itemset, data> sparse_classes(std::size_t count, Item twins, std::mt19937& random) {
    std::map<Itemset, data> classes;
    while (classes.size() < count) {
        std::set<Item> chosen;
        for (std::size_t i = 1 + random() % 4; i > 0; --i) {
            // The smaller ones come up more often.
            chosen.insert(static_cast<Item>(random() % (1 + random() % (1 + random() % twins))));
        }
        Itemset itemset;
        Itemset essential;
        Count support = 0;
        for (const Item each : chosen) {
            itemset.insert(itemset.end(), {2 * each, 2 * each + 1});
            essential.push_back(2 * each + static_cast<Item>(random() % 2));
            support += 1 + each % 20;  // transactions with the twins
        }
        classes[itemset] = {support, {essential}};
    }
    return classes;
}

std::string class_file(const std::map<Itemset, data>& classes) {
    std::string text;
    for (const auto& [itemset, of_class] : classes) {
        const std::vector<Itemset> itself = {itemset};
        append_class_record(itemset, of_class.support,
                            of_class.essentials.empty() ? itself : of_class.essentials, text);
    }
    return text;
}

}  // namespace korv::test
