#include "mine_mpi/closure_builder.h"

#include <algorithm>
#include <span>

#include "mine/mined_classes.h"

namespace korv::tools {

namespace {

/// Numbers that look random, the same ones in each process: the steps of SplitMix64.
std::uint32_t scattered(std::uint64_t number) {
    number = (number + 1) * 0x9E3779B97F4A7C15U;
    number = (number ^ number >> 30U) * 0xBF58476D1CE4E5B9U;
    number = (number ^ number >> 27U) * 0x94D049BB133111EBU;
    return static_cast<std::uint32_t>(number >> 32U);
}

}  // namespace

ClosureBuilder::ClosureBuilder(const RankedItems& items, Count least_frequent)
    : items_(items.items), first_items_(items.size()) {
    const MinedClasses classes(items.items);
    for (Rank rank = 0; rank < items.size(); ++rank) {
        const auto bytes = static_cast<std::uint32_t>(classes.closure_bytes(rank));
        of_ranks_.push_back({items_[rank].front(), bytes, items.supports[rank] < least_frequent ? bytes : 0,
                             scattered(rank), items_[rank].size() > 1});
    }
}

void ClosureBuilder::add_other_items(Rank rank) {
    const Itemset& items = items_[rank];
    other_items_.insert(other_items_.end(), items.begin() + 1, items.end());
}

ClosureSizes ClosureBuilder::finish(std::string& bytes) {
    const std::span<Item> first_items = std::span(first_items_).first(ranks_);
    if (!std::ranges::is_sorted(first_items)) {
        std::ranges::sort(first_items);
    }
    std::span<const Item> closure = first_items;
    if (!other_items_.empty()) {
        std::ranges::sort(other_items_);
        closure_.resize(first_items.size() + other_items_.size());
        std::ranges::merge(first_items, other_items_, closure_.begin());
        closure = closure_;
    }
    const std::size_t before = bytes.size();
    append_encoded(closure, bytes);
    const ClosureSizes sizes = {static_cast<std::uint32_t>(bytes.size() - before),
                                static_cast<std::uint32_t>(closure.size()), text_bytes_, rare_bytes_};
    ranks_ = 0;
    other_items_.clear();
    text_bytes_ = 0;
    rare_bytes_ = 0;
    hash_ = 0;
    return sizes;
}

}  // namespace korv::tools
