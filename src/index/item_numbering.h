#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "base/itemset.h"

namespace korv {

/// Numbers the items of a family of itemsets from 0, so that multisets become sets: the k-th occurrence of an
/// item in an itemset is an item of its own.
///
/// Invariant: rarer items have smaller numbers. So the first number of an itemset is its rarest item, and a
/// walk in ascending order meets the items first that exclude most. Inclusion and difference are the same in
/// numbers as in items; the order is not.
class ItemNumbering {
public:
    /// Numbers the items of the itemsets given.
    explicit ItemNumbering(const std::vector<const Itemset*>& family);

    /// How many numbers there are.
    std::size_t size() const { return size_; }

    /// Replaces `numbers` by those of the items of `itemset`, ascending. The itemset must lie within one of
    /// the family. O(items * log items).
    void translate(const Itemset& itemset, Itemset& numbers) const;

private:
    /// Which occurrence of an item it is within an itemset, counted from 0.
    struct Occurrence {
        Item item;
        Item repetition;
        auto operator<=>(const Occurrence&) const =
            default;  // NOLINT(modernize-use-nullptr): no pointer here
    };

    Item number_of(const Occurrence& occurrence) const;

    std::size_t size_ = 0;
    /// Numbers of first occurrences, by item: items are small numbers as a rule.
    std::vector<Item> direct_;
    /// Those of all other occurrences, ascending.
    std::vector<std::pair<Occurrence, Item>> searched_;
};

}  // namespace korv
