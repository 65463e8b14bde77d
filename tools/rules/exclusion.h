#pragma once

#include <algorithm>
#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>

#include "base/itemset.h"

namespace korv::tools {

/// The most items that an exclusion has.
inline constexpr std::size_t most_excluding_items = 3;

/// Two or three items that are together in fewer transactions than chance would have it. Of three items, each
/// two meet, and what is rare is that a third one joins them.
struct Exclusion {
    std::size_t size;                                ///< 2 or 3
    std::array<Item, most_excluding_items> numbers;  ///< of the items, ascending; the first `size` count
    std::array<Count, most_excluding_items> counts;  ///< how many transactions hold each item
    Count together;                                  ///< how many hold all items
    Count covered;                                   ///< how many hold at least one of them
    /// The number of transactions with all items that chance would give, times N: of two items the product of
    /// their counts; of three the smallest product of the count of one and that of both others.
    std::uint64_t expected_times_all;
    double p;  ///< how rarely chance gives so few, as -log10; of three items the least of the three ways

    ItemSpan items() const { return {numbers.data(), size}; }
    double expected(Count transactions) const {
        return static_cast<double>(expected_times_all) / transactions;
    }
};

/// Whether an exclusion comes before another one: by p, the largest first, then by what is expected, then by
/// their items, lexicographically.
inline bool comes_before(const Exclusion& one, const Exclusion& other) {
    if (one.p != other.p) {
        return one.p > other.p;
    }
    if (one.expected_times_all != other.expected_times_all) {
        return one.expected_times_all > other.expected_times_all;
    }
    return std::ranges::lexicographical_compare(one.items(), other.items());
}

}  // namespace korv::tools
