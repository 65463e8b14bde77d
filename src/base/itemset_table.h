#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "base/itemset.h"

namespace korv {

/// Itemsets one behind the other in one buffer. An itemset is known by its position.
class ItemsetTable {
public:
    /// Appends an itemset.
    void push_back(ItemSpan itemset) {
        items_.insert(items_.end(), itemset.begin(), itemset.end());
        ends_.push_back(items_.size());
    }

    /// Takes all itemsets out; keeps the memory.
    void clear() {
        items_.clear();
        ends_.clear();
    }

    /// Makes room for so many itemsets, and items of all of them.
    void reserve(std::size_t itemsets, std::size_t items) {
        items_.reserve(items);
        ends_.reserve(itemsets);
    }

    std::size_t size() const { return ends_.size(); }

    /// Number of items of all itemsets.
    std::size_t items() const { return items_.size(); }

    /// Valid until the next push_back.
    ItemSpan operator[](std::size_t position) const {
        return ItemSpan(items_).subspan(begin(position), ends_[position] - begin(position));
    }

    /// The items of an itemset, to be changed: their number stays. Valid until the next push_back.
    std::span<Item> mutable_items(std::size_t position) {
        return std::span(items_).subspan(begin(position), ends_[position] - begin(position));
    }

private:
    std::size_t begin(std::size_t position) const { return position == 0 ? 0 : ends_[position - 1]; }

    std::vector<Item> items_;
    std::vector<std::size_t> ends_;
};

}  // namespace korv
