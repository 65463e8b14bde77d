#pragma once

#include <cstdint>
#include <random>

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

}  // namespace korv::test
