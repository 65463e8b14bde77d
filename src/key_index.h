#pragma once

#include <array>
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
    KeyIndex(const KeyIndex&) = delete;
    KeyIndex& operator=(const KeyIndex&) = delete;

    /// Selects the itemset that the following queries are about. No key within it may have more support than
    /// `support`: keys that have are passed over.
    void select(ItemSpan itemset, Count support);

    /// The largest support of a key within `part`, a subset of the selected itemset, if it is at least
    /// `lowest`; otherwise 0.
    Count largest_support_within(ItemSpan part, Count lowest);

private:
    /// Bits of 512 keys.
    using Block = std::array<std::uint64_t, 8>;
    static constexpr std::size_t word_bits = 64;
    static constexpr std::size_t block_bits = 512;
    static constexpr std::uint32_t no_bitmap = 0xFFFFFFFF;

    static bool has_few_keys(const Block& block);

    void file_by_rarest_item();
    void make_bitmaps();
    void find_all_by_rarest_item(ItemSpan itemset);
    void find_more();
    bool lies_within_selected(Column key) const;

    const ItemsetTable& keys_;
    const std::vector<Count>& supports_;

    std::vector<std::size_t> filed_begins_;  ///< by item
    std::vector<Column> filed_;              ///< the keys under their rarest items, ascending for each

    std::vector<std::uint32_t> bitmap_of_;  ///< by item: number of its bitmap; frequent items have one
    std::size_t bitmaps_ = 0;
    /// First blocks of all bitmaps, then their second blocks and so on: they are read so.
    std::vector<Block> blocks_;

    // About the selected itemset.
    Itemset selected_;
    std::vector<char> is_selected_;               ///< by item
    Column searched_to_ = 0;                      ///< the keys within it are found before this one
    std::vector<Column> inside_;                  ///< the keys within it, found so far
    std::vector<std::uint32_t> outside_bitmaps_;  ///< of the items that it does not hold

    std::vector<char> is_wanted_;  ///< by item: whether the part asked for holds it
};

}  // namespace korv
