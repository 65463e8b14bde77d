#include "rules/wording.h"

#include <algorithm>
#include <tuple>

#include "base/bit_words.h"

namespace korv::tools {

namespace {

/// The order among wordings: shorter, then lexicographically smaller.
bool is_before(const Itemset& one, const Itemset& other) {
    return one.size() != other.size() ? one.size() < other.size() : one < other;
}

bool share_items(ItemSpan one, ItemSpan other) {
    return std::ranges::any_of(one, [other](Item item) { return std::ranges::binary_search(other, item); });
}

/// The keys of a class.
std::span<const Itemset> keys_of(NodeRef node) {
    const auto& essentials = node->second.essentials;
    return essentials.empty() ? std::span(&node->first, 1) : std::span(essentials);
}

}  // namespace

ShortestWording::ShortestWording(const LatticeEntries& entries) {
    std::vector<std::pair<Count, Key>> keys;
    for (const LatticeEntry& entry : entries) {
        for (const Itemset& key : keys_of(entry.node)) {
            keys.push_back({entry.support(), {&key, signature_of(key)}});
        }
    }
    std::ranges::sort(keys, [](const auto& one, const auto& other) {
        return one.first != other.first ? one.first < other.first
                                        : is_before(*one.second.items, *other.second.items);
    });
    keys_.reserve(keys.size());
    for (const auto& [support, key] : keys) {
        if (supports_.empty() || supports_.back() != support) {
            supports_.push_back(support);
            begins_.push_back(keys_.size());
        }
        keys_.push_back(key);
    }
    begins_.push_back(keys_.size());
}

/// A bit for each item modulo 64: an itemset lies within another only if its bits do.
std::uint64_t ShortestWording::signature_of(ItemSpan itemset) {
    std::uint64_t signature = 0;
    for (const Item item : itemset) {
        signature |= bit_of(item);
    }
    return signature;
}

ItemSpan ShortestWording::of_base(const Itemset& base, NodeRef node, ItemSpan other) {
    const std::span<const Itemset> keys = keys_of(node);
    if (&node->second != last_class_) {
        last_class_ = &node->second;
        last_wording_ = &*std::ranges::min_element(keys, is_before);
    }
    if (!share_items(*last_wording_, other)) {
        return *last_wording_;
    }
    const Itemset* best = &base;
    for (const Itemset& key : keys) {
        if (is_before(key, *best) && !share_items(key, other)) {
            best = &key;
        }
    }
    return *best;
}

ItemSpan ShortestWording::of_itemset(const Itemset& itemset, Count support) const {
    const std::uint64_t within = signature_of(itemset);
    for (const Key& key : keys_of_support(support)) {
        if ((key.signature & ~within) == 0 && is_contained(*key.items, itemset)) {
            return *key.items;
        }
    }
    return itemset;
}

std::span<const ShortestWording::Key> ShortestWording::keys_of_support(Count support) const {
    const auto found = std::ranges::lower_bound(supports_, support);
    if (found == supports_.end() || *found != support) {
        return {};
    }
    const auto number = static_cast<std::size_t>(found - supports_.begin());
    return std::span(keys_).subspan(begins_[number], begins_[number + 1] - begins_[number]);
}

}  // namespace korv::tools
