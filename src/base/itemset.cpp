#include "base/itemset.h"

#include <algorithm>
#include <iterator>

namespace korv {

bool is_contained(ItemSpan inner, ItemSpan outer) {
    return std::ranges::includes(outer, inner);
}

Itemset intersection(const Itemset& a, const Itemset& b) {
    Itemset common;
    std::set_intersection(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(common));
    return common;
}

bool intersects(const Itemset& a, const Itemset& b) {
    auto in_a = a.begin();
    auto in_b = b.begin();
    while (in_a != a.end() && in_b != b.end()) {
        if (*in_a == *in_b) {
            return true;
        }
        ++(*in_a < *in_b ? in_a : in_b);
    }
    return false;
}

Itemset difference(const Itemset& a, const Itemset& b) {
    Itemset rest;
    rest.reserve(a.size());
    std::set_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(rest));
    return rest;
}

std::uint64_t beginning(ItemSpan itemset, unsigned item_bits) {
    constexpr unsigned bits = 64;
    const std::uint64_t too_large = (std::uint64_t{1} << item_bits) - 2;
    std::uint64_t number = 0;  // of a missing item, too
    unsigned shift = bits;
    for (const Item each : itemset) {
        if (shift < item_bits) {
            break;
        }
        shift -= item_bits;
        const std::uint64_t item = std::min<std::uint64_t>(each, too_large);
        number |= (item + 1) << shift;
        if (item == too_large) {
            break;  // equal here to other large items, whatever follows
        }
    }
    return number;
}

}  // namespace korv
