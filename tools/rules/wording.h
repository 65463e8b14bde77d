#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/itemset.h"
#include "engine/lattice_entries.h"

namespace korv::tools {

// Both find the shortest itemset that says the same of every transaction as an itemset of a pair, among the
// keys of the classes: their essential itemsets, or the closed itemset of a class that stores none. Of
// several shortest ones it is the lexicographically smallest.

/// The wording of bases, which looks at the keys of their class. It remembers that of the last class.
class BaseWording {
public:
    /// The wording of `base`, the closed itemset of a class or one of its essential itemsets: a key of the
    /// class that shares no item with `other`, which shares none with `base`. (Without that, where two items
    /// are always together, 2 => 1 or 3 would be worded 1 => 1 or 3.)
    ItemSpan of(const Itemset& base, NodeRef node, ItemSpan other);

private:
    const data* last_class_ = nullptr;       ///< was asked for last
    const Itemset* last_wording_ = nullptr;  ///< the shortest key of that class
};

/// The wording of itemsets of any class.
class ShortestWording {
public:
    /// `entries` must outlive it unchanged. O(keys * log keys).
    explicit ShortestWording(const LatticeEntries& entries);

    /// The wording of an itemset of known support: a key within it that has this support; where there is
    /// none, the itemset itself. Looks through the keys of this support, shortest first, and passes over
    /// those of which the first items are not all in the itemset.
    ItemSpan of_itemset(const Itemset& itemset, Count support) const;

private:
    /// The keys of one support and one size, in lexicographic order, one behind the other.
    struct Group {
        Count support;
        std::size_t size;
        std::vector<Item> items = {};
    };

    /// Some keys of a group that have their first items in common.
    struct Keys {
        const Group& group;
        std::size_t begin;
        std::size_t end;

        std::size_t count() const { return end - begin; }
        ItemSpan operator[](std::size_t key) const {
            return ItemSpan(group.items).subspan(key * group.size, group.size);
        }
    };

    static ItemSpan first_within(Keys keys, ItemSpan itemset, std::size_t depth);
    static std::size_t first_not_below(const Keys& keys, std::uint64_t item, std::size_t depth);

    std::vector<Group> groups_;  ///< by support, then size; without the empty itemset
};

}  // namespace korv::tools
