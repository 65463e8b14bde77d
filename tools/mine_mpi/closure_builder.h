#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/bit_words.h"
#include "base/itemset.h"
#include "mine/mined_classes.h"
#include "mine/rank_order.h"
#include "mine/ranked_items.h"

namespace korv::tools {

/// Makes closures of ranks, as classes keep them. What it returns is valid until the next one is made.
class ClosureBuilder {
public:
    /// `order`: that of these items. Both must outlive the builder. Items in less than `least_frequent`
    /// transactions count as rare.
    ClosureBuilder(const RankedItems& items, const RankOrder& order, Count least_frequent);

    /// Adds a rank, which is not there yet, to the next closure.
    void add(Rank rank) { added_.push_back(order_.places[rank]); }

    /// The closure of the ranks that were added.
    EncodedClosure finish();

    /// The closure of the ranks whose bits, by place, are 0. `outside` has as many words as there must be for
    /// all ranks.
    EncodedClosure without(std::span<const BitWord> outside);

    /// The closure from which append_encoded made some bytes, as far as ranks stand for its items: it has all
    /// or none of a rank.
    EncodedClosure decoded(std::string_view bytes);

private:
    /// What a rank adds to a closure.
    struct OfRank {
        Item first;
        std::uint32_t text_bytes;
        std::uint32_t rare_bytes;
        bool has_others;
    };

    /// Puts a rank behind those before it in place.
    void put(std::size_t place) {
        const OfRank& of = of_places_[place];
        closure_[size_++] = of.first;
        text_bytes_ += of.text_bytes;
        rare_bytes_ += of.rare_bytes;
        if (of.has_others) {
            put_others(place);
        }
    }

    void put_others(std::size_t place);
    void insert_others();
    EncodedClosure encoded();

    const RankedItems& items_;
    const RankOrder& order_;
    std::vector<OfRank> of_places_;
    std::vector<Rank> added_;  ///< the places of what was added

    // Of the closure that is being made:
    Itemset closure_;       ///< the first items of its ranks, ascending; with room for all items
    std::size_t size_ = 0;  ///< so many of them are put there
    Itemset others_ = {};   ///< the other items of these ranks, in any order
    std::size_t text_bytes_ = 0;
    std::size_t rare_bytes_ = 0;
    std::string bytes_;  ///< set when it is done
};

}  // namespace korv::tools
