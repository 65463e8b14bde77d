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
    /// none, the itemset itself. Looks through the keys of this support, shortest first, and passes over
    /// those of which the first items are not all in the itemset.
    ItemSpan of_itemset(const Itemset& itemset, Count support) const;

private:
    struct Key {
        const Itemset* items;
        std::uint64_t signature;  ///< see signature_of
    };
    using Keys = std::span<const Key>;

    /// Where the keys begin that have one support and one size; those of the next group follow them.
    struct Group {
        Count support;
        std::size_t begin;
    };

    static std::uint64_t signature_of(ItemSpan itemset);
    static const Itemset* first_within(Keys keys, ItemSpan itemset, std::uint64_t signature,
                                       std::size_t depth);

    std::vector<Key> keys_;                  ///< by support, then size, then lexicographically
    std::vector<Group> groups_;              ///< in the order of the keys, and the end
    const data* last_class_ = nullptr;       ///< of_base was asked for it last
    const Itemset* last_wording_ = nullptr;  ///< the shortest key of that class
};

}  // namespace korv::tools
