#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "rules/itemset_pool.h"

namespace korv::tools {

/// For each short itemset of a pool that is wanted, those wanted ones that lie within it.
///
/// Invariant: the parts of an itemset are distinct, wanted and short, and itself is among them. The empty
/// itemset is a part of itself alone.
class ItemsetParts {
public:
    /// The most items of a short itemset.
    static constexpr std::size_t most_items = 8;

    /// `is_wanted`: for each itemset of the pool, whether it is. Each wanted one of k <= most_items items
    /// costs 2^k look-ups in the pool; longer ones have no parts. The pool is not needed afterwards.
    ItemsetParts(const ItemsetPool& itemsets, const std::vector<char>& is_wanted);

    /// The parts of an itemset; none where it is long or not wanted.
    std::span<const ItemsetId> operator[](ItemsetId id) const {
        return std::span(parts_).subspan(begins_[id], begins_[id + std::size_t{1}] - begins_[id]);
    }

private:
    void add_parts(const ItemsetPool& itemsets, const std::vector<char>& is_wanted, ItemsetId id);

    std::vector<ItemsetId> parts_;     ///< of all itemsets, one behind the other
    std::vector<std::size_t> begins_;  ///< by itemset, and the end
};

}  // namespace korv::tools
