#pragma once

#include <map>
#include <random>
#include <string>
#include <vector>

#include "app/lattice.h"

namespace korv::test {

/// Classes without sense, of up to five items: any supports, 0 among them, any essential itemsets within
/// them, now and then an empty one or one that sticks out, repeated items.
std::map<Itemset, data> contradictory_classes(std::mt19937& random);

/// At most `most` transactions, at least one, over the items from 1 on.
std::vector<Itemset> random_transactions(Item items, std::size_t most, std::mt19937& random);

/// Some of the classes of a database: the closures of random itemsets, each with the itemset as its essential
/// one (not always a smallest one, which does not matter) when that is smaller.
std::map<Itemset, data> some_classes(const std::vector<Itemset>& transactions, Item items, std::size_t tries,
                                     std::mt19937& random);

/// Classes of a database of many items, of which few classes hold any but the first: unions of up to four
/// twins, 2 * k and 2 * k + 1 for k below `twins`. Twins are in the same transactions, no two others in a
/// common one. A class has one essential itemset, one of each pair of twins.
std::map<Itemset, data> sparse_classes(std::size_t count, Item twins, std::mt19937& random);

/// Classes as the text of a class file. A class without essential itemsets has itself as one.
std::string class_file(const std::map<Itemset, data>& classes);

}  // namespace korv::test
