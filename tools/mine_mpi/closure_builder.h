#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/bit_words.h"
#include "mine/item_order.h"
#include "mine/mined_classes.h"
#include "mine/ranked_items.h"

namespace korv::tools {

/// Makes closures of ranks, as classes keep them. What it returns is valid until the next one is made.
class ClosureBuilder {
public:
    /// `order`: of the items; it must outlive the builder. Items in less than `least_frequent` transactions
    /// count as rare.
    ClosureBuilder(const RankedItems& items, const ItemOrder& order, Count least_frequent);

    /// Adds a rank, which is not there yet, to the next closure. Fastest where ranks come in the order of
    /// their items.
    void add(Rank rank);

    /// The closure of the ranks that were added.
    EncodedClosure finish();

    /// The closure of the items whose bits, by place, are 0.
    EncodedClosure without(std::span<const BitWord> outside);

    /// The closure from which append_encoded made some bytes, as far as ranks stand for its items.
    EncodedClosure decoded(std::string_view bytes);

private:
    /// What the item at a place adds to a closure.
    struct OfPlace {
        Item item;
        std::uint32_t text_bytes;
        std::uint32_t rare_bytes;
    };

    /// Puts the next item into `closure_`.
    void put(ItemOrder::Place place) {
        const OfPlace& of = of_places_[place];
        closure_[size_++] = of.item;
        text_bytes_ += of.text_bytes;
        rare_bytes_ += of.rare_bytes;
    }

    EncodedClosure encoded();

    const ItemOrder& order_;
    std::vector<OfPlace> of_places_;
    std::vector<ItemOrder::Place> added_;  ///< the places of what was added

    // Of the closure that is being made:
    Itemset closure_;       ///< with room for all items
    std::size_t size_ = 0;  ///< so many of them are put there
    std::size_t text_bytes_ = 0;
    std::size_t rare_bytes_ = 0;
    std::string bytes_;  ///< set when it is done
};

}  // namespace korv::tools
