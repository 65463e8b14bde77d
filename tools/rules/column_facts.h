#pragma once

#include <unordered_map>
#include <vector>

#include "base/itemset.h"
#include "engine/classes.h"
#include "mine/database.h"
#include "rules/item_names.h"
#include "rules/item_supports.h"

namespace korv::tools {

/// An itemset that is read plain or negated.
struct WordedSide {
    ItemSpan items;
    bool is_negated;
};

/// How the sides of an itemset are worded: by its items or by the rest of a column.
struct WordedItemset {
    ItemSpan items;
    Itemset rest = {};  ///< empty where the items are not a part of one exhaustive column

    /// The side that reads the itemset so. By fewer items, or else plain.
    WordedSide side(bool is_negated) const;

    /// Whether the rest stands for the itemset and for itself where both count as one: the shorter, or else
    /// the lexicographically smaller of the two.
    bool is_turned() const;
};

/// What the columns of a table say of sides, whatever the transactions are.
///
/// A column is exclusive when no two of its items meet in a transaction, as far as is known, and exhaustive
/// when, besides, every transaction has one of them. Then a transaction holds one of some of its items
/// exactly if it holds none of the rest.
class ColumnFacts {
public:
    /// Knows no column.
    ColumnFacts() = default;

    /// From classes: the supports of single items are those of keys of one item, and two items of a column
    /// meet when a class around them has less support than they have together. O(items of all classes).
    ColumnFacts(const ItemNames& names, const ClassMap& classes, Count transactions);

    /// From the transactions themselves.
    ColumnFacts(const ItemNames& names, const Database& database);

    /// How the sides of an itemset are worded. Refers to it.
    WordedItemset worded(ItemSpan itemset) const;

    /// The items that a side names where it is said in words: those of each of its columns, or of the rest of
    /// the column where it is said by that. In no order.
    Itemset named_items(const WordedSide& side) const;

    /// Whether a rule between two disjoint itemsets says no more than the columns do: that the values of a
    /// column exclude each other, or that every transaction has one.
    bool imply(const WordedSide& premise, const WordedSide& conclusion) const;

    /// Whether two itemsets have items of the same exclusive column.
    bool share_a_column(ItemSpan one, ItemSpan other) const;

private:
    struct Column {
        Itemset items;
        bool is_exhaustive;
    };

    void add(const Itemset& items, const ItemSupports& supports, Count transactions);
    const Column* column_of(Item item) const;
    const Column* common_column(ItemSpan itemset) const;
    bool cover_a_column(ItemSpan one, ItemSpan other) const;

    std::vector<Column> columns_;  ///< the exclusive ones
    std::unordered_map<Item, std::size_t> column_of_;
};

}  // namespace korv::tools
