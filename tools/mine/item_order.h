#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "mine/ranked_items.h"

namespace korv::tools {

/// The items for which ranks stand, ascending, whatever their ranks are. Where an item is among them is its
/// place.
class ItemOrder {
public:
    using Place = std::uint32_t;

    /// `items`: by rank, each ascending, as RankedItems has them.
    explicit ItemOrder(const std::vector<Itemset>& items);

    /// The number of items.
    std::size_t size() const { return items_.size(); }
    /// Ascending.
    const Itemset& items() const { return items_; }
    /// The rank that stands for the item at a place.
    Rank rank(Place place) const { return ranks_[place]; }
    /// The places of all items for which a rank stands, ascending; at least one.
    std::span<const Place> places(Rank rank) const {
        return std::span(places_).subspan(begins_[rank], begins_[rank + 1] - begins_[rank]);
    }

private:
    Itemset items_;                    ///< by place
    std::vector<Rank> ranks_;          ///< by place
    std::vector<Place> places_;        ///< of one rank behind those of the other
    std::vector<std::size_t> begins_;  ///< by rank: where its places begin; and the end
};

}  // namespace korv::tools
