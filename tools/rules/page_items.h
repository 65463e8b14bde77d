#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "base/itemset.h"

namespace korv::tools {

/// The items that a page tells of, known by their positions from 0, in ascending order.
class PageItems {
public:
    PageItems() = default;

    /// `items`: ascending, each once.
    explicit PageItems(Itemset items) : items_(std::move(items)) {}

    const Itemset& all() const { return items_; }

    /// The position of an item, which must be there. O(log items).
    std::uint32_t position(Item item) const {
        return static_cast<std::uint32_t>(std::ranges::lower_bound(items_, item) - items_.begin());
    }

    /// Appends the positions of items.
    void append(ItemSpan items, std::vector<std::uint32_t>& positions) const {
        for (const Item item : items) {
            positions.push_back(position(item));
        }
    }

private:
    Itemset items_;
};

}  // namespace korv::tools
