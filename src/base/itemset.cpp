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

}  // namespace korv
