#pragma once

#include <cstdint>
#include <iterator>
#include <random>
#include <set>

#include "base/itemset.h"

namespace korv::test {

/// An itemset as a bit for each item: bit 0 is item 1.
using Bits = std::uint32_t;

inline Itemset itemset_of(Bits bits) {
    Itemset itemset;
    for (Item item = 1; bits != 0; ++item, bits >>= 1U) {
        if ((bits & 1U) != 0) {
            itemset.push_back(item);
        }
    }
    return itemset;
}

/// A number from 0 to `bound` - 1.
inline Bits random_below(Bits bound, std::mt19937& random) {
    return static_cast<Bits>(random()) % bound;
}

/// Up to `draws` sets of `items` items at most, not empty, with unions and intersections among them, which
/// make deeper lattices than chance.
inline std::set<Bits> random_family(Bits items, Bits draws, std::mt19937& random) {
    std::set<Bits> family;
    for (Bits i = 0; i < draws; ++i) {
        Bits bits = 1 + random_below((Bits{1} << items) - 1, random);
        if (!family.empty() && random_below(2, random) == 0) {
            const Bits earlier =
                *std::next(family.begin(), random_below(static_cast<Bits>(family.size()), random));
            bits = random_below(2, random) == 0 ? (bits | earlier) : (bits & earlier);
        }
        if (bits != 0) {
            family.insert(bits);
        }
    }
    return family;
}

}  // namespace korv::test
