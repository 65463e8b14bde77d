#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "base/bit_words.h"
#include "base/itemset.h"
#include "mine/ranked_items.h"

namespace korv::tools {

/// Puts the items for which ranks stand into one itemset.
class RankItems {
public:
    /// `items`: by rank, ascending; no item twice.
    explicit RankItems(const std::vector<Itemset>& items);

    /// The items of these ranks, ascending, until the next call. No rank is there twice.
    const Itemset& of(std::span<const Rank> ranks);

private:
    void sort_items(std::span<const Rank> ranks);
    void mark_items(std::span<const Rank> ranks);

    const std::vector<Itemset>& items_;
    Itemset sorted_;                                   ///< all items, ascending
    std::vector<std::vector<std::size_t>> positions_;  ///< by rank: where its items are in `sorted_`
    std::vector<BitWord> marked_;                      ///< by position: set and used in one call, otherwise 0
    Itemset together_;                                 ///< what of() returns
};

}  // namespace korv::tools
