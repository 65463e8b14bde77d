#pragma once

#include <cstddef>
#include <cstdint>

#include "base/itemset.h"

namespace korv {

/// A hash of an itemset whose every bit depends on every item: FNV-1a over the items, then the finalizer of
/// MurmurHash3, which mixes the high bits into the low ones. O(items).
inline std::uint64_t hash_of(ItemSpan itemset) {
    std::uint64_t value = 0xCBF29CE484222325;
    for (const Item item : itemset) {
        value = (value ^ item) * 0x100000001B3;
    }
    value = (value ^ value >> 33) * 0xFF51AFD7ED558CCD;
    return value ^ value >> 33;
}

/// For unordered containers of itemsets.
struct ItemsetHash {
    std::size_t operator()(const Itemset& itemset) const {
        return static_cast<std::size_t>(hash_of(itemset));
    }
};

}  // namespace korv
