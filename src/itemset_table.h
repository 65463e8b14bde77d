#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "itemset.h"

namespace korv {

/// Items of an itemset, ascending, in somebody else's storage.
using ItemSpan = std::span<const Item>;

/// Itemsets one behind the other in one buffer. An itemset is known by its position.
class ItemsetTable {
public:
    void reserve(std::size_t itemsets, std::size_t items) {
        ends_.reserve(itemsets);
        items_.reserve(items);
    }

    /// Appends an itemset.
    void push_back(ItemSpan itemset) {
        items_.insert(items_.end(), itemset.begin(), itemset.end());
        ends_.push_back(items_.size());
    }

    std::size_t size() const { return ends_.size(); }

    /// Number of items of all itemsets together.
    std::size_t total_items() const { return items_.size(); }

    /// Valid until the next push_back.
    ItemSpan operator[](std::size_t position) const {
        const std::size_t begin = position == 0 ? 0 : ends_[position - 1];
        return ItemSpan(items_).subspan(begin, ends_[position] - begin);
    }

private:
    std::vector<Item> items_;
    std::vector<std::size_t> ends_;
};

}  // namespace korv
