#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "base/bit_words.h"
#include "base/itemset.h"
#include "mine/bit_rows.h"
#include "mine/database.h"

namespace korv::tools {

/// Counts supports, closures and essential itemsets in transactions, each of them by going over the
/// transactions of its items. Nothing is remembered, and nothing follows from anything else.
class TransactionCounter {
public:
    /// `database` must outlive it. O(occurrences of items); takes as much memory as the lists of the database
    /// at most.
    explicit TransactionCounter(const Database& database);

    /// Whether a transaction holds the item.
    bool knows(Item item) const;

    /// How many transactions hold an item of the itemset.
    /// O(items * lines / 64 + occurrences of rare items).
    Count support(ItemSpan itemset);

    /// The items that are not in the itemset, ascending, of which each transaction holds an item of it.
    /// O(all items * lines / 64) at worst.
    Itemset missing_in_closure(ItemSpan itemset);

    /// An item without which the itemset has the same support; nothing where it is essential.
    /// O(items * lines / 64 + occurrences of rare items).
    std::optional<Item> needless_item(ItemSpan itemset);

private:
    std::optional<std::size_t> position_of(Item item) const;
    void meet(ItemSpan itemset);
    template <typename Visit>
    void for_each_word(std::size_t position, Visit visit) const;
    bool is_covered(std::size_t position) const;

    const Database& database_;
    Itemset items_;                 ///< of the database, ascending: an item is known by its position
    std::vector<std::size_t> row_;  ///< by position: the row of the item in `rows_`, or no_row
    BitRows rows_;                  ///< of the items that are in many lines
    std::vector<BitWord> met_;      ///< the lines that hold an item of the itemset
    std::vector<BitWord> twice_;    ///< the lines that hold two of them
};

}  // namespace korv::tools
