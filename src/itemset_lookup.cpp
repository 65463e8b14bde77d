#include "itemset_lookup.h"

#include <algorithm>
#include <bit>

namespace korv {

ItemsetLookup::ItemsetLookup(const ItemsetTable& itemsets)
    : itemsets_(itemsets), slots_(std::bit_ceil(2 * itemsets.size() + 1), free) {
    for (std::uint32_t position = 0; position < itemsets.size(); ++position) {
        std::size_t slot = hash(itemsets[position]) & (slots_.size() - 1);
        while (slots_[slot] != free) {
            slot = (slot + 1) & (slots_.size() - 1);
        }
        slots_[slot] = position;
    }
}

std::optional<std::uint32_t> ItemsetLookup::find(ItemSpan itemset) const {
    for (std::size_t slot = hash(itemset) & (slots_.size() - 1); slots_[slot] != free;
         slot = (slot + 1) & (slots_.size() - 1)) {
        if (std::ranges::equal(itemsets_[slots_[slot]], itemset)) {
            return slots_[slot];
        }
    }
    return std::nullopt;
}

/// FNV-1a over the items, then the finalizer of MurmurHash3: the low bits alone choose the slot.
std::uint64_t ItemsetLookup::hash(ItemSpan itemset) {
    std::uint64_t value = 0xCBF29CE484222325;
    for (const Item item : itemset) {
        value = (value ^ item) * 0x100000001B3;
    }
    value = (value ^ value >> 33) * 0xFF51AFD7ED558CCD;
    return value ^ value >> 33;
}

}  // namespace korv
