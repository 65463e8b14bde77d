#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/itemset.h"
#include "engine/lattice_entries.h"

namespace korv::tools {

/// Finds the shortest itemset that says the same of every transaction as an itemset of a pair, among the keys
/// of the classes: their essential itemsets, or the closed itemset of a class that stores none. Of several
/// shortest ones it is the lexicographically smallest.
class ShortestWording {
public:
    /// `entries` must outlive it unchanged. O(keys * log keys).
    explicit ShortestWording(const LatticeEntries& entries);

    /// The wording of `base`, the closed itemset of a class or one of its essential itemsets: a key of the
    /// class that shares no item with `other`, which shares none with `base`. (Without that, where two items
    /// are always together, 2 => 1 or 3 would be worded 1 => 1 or 3.)
    ItemSpan of_base(const Itemset& base, NodeRef node, ItemSpan other);

    /// The wording of an itemset of known support: a key within it that has this support; where there is
    /// none, the itemset itself. Looks through the keys of this support, shortest first.
    ItemSpan of_itemset(const Itemset& itemset, Count support) const;

private:
    struct Key {
        const Itemset* items;
        std::uint64_t signature;  ///< see signature_of
    };

    static std::uint64_t signature_of(ItemSpan itemset);
    std::span<const Key> keys_of_support(Count support) const;

    std::vector<Key> keys_;                  ///< by support, then size, then lexicographically
    std::vector<Count> supports_;            ///< those of keys, ascending
    std::vector<std::size_t> begins_;        ///< where the keys of each of these supports begin, and the end
    const data* last_class_ = nullptr;       ///< of_base was asked for it last
    const Itemset* last_wording_ = nullptr;  ///< the shortest key of that class
};

}  // namespace korv::tools
