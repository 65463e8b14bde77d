#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "item_index.h"
#include "itemset_table.h"

namespace korv {

/// The keys of all classes: their essential itemsets, or the closed itemset of a class that stores none.
/// Whatever contains a key has at least the support of its class.
///
/// Invariant: keys stand by descending support, so the first key within an itemset gives its best lower
/// bound. They are searched among those within a selected itemset, which are found once for all queries about
/// it, and only as far as the queries look.
class KeyIndex {
public:
    /// `keys` by descending support, `supports` theirs, `items` the bound of the item numbers. Both must
    /// outlive the index unchanged.
    KeyIndex(const ItemsetTable& keys, const std::vector<Count>& supports, std::size_t items);

    /// Selects the itemset that the following queries are about. No key within it may have more support than
    /// `support`: keys that have are passed over.
    void select(ItemSpan itemset, Count support);

    /// The largest support of a key within `part`, a subset of the selected itemset, if it is at least
    /// `lowest`; otherwise 0.
    Count largest_support_within(ItemSpan part, Count lowest);

private:
    void find_all_by_rarest_item(ItemSpan itemset);
    void find_more();
    bool lies_within_selected(Column key) const;

    const ItemsetTable& keys_;
    const std::vector<Count>& supports_;
    ItemIndex index_;
    std::vector<std::size_t> filed_begins_;  ///< by item
    std::vector<Column> filed_;              ///< the keys under their rarest items, ascending for each

    std::vector<char> selected_;  ///< by item: whether the selected itemset holds it
    std::vector<Item> selected_items_;
    std::vector<char> wanted_;                           ///< by item: whether the part asked for holds it
    std::vector<Column> inside_;                         ///< keys within the selected itemset, found so far
    Column first_ = 0;                                   ///< first key that may lie within it
    Column searched_to_ = 0;                             ///< keys before this are found
    std::vector<const std::uint64_t*> outside_bitmaps_;  ///< of the items that it does not hold
};

}  // namespace korv
