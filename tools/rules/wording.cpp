#include "rules/wording.h"

#include <algorithm>
#include <iterator>

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
        const bool begins_group = groups_.empty() || groups_.back().support != support ||
                                  keys_.back().items->size() != key.items->size();
        if (begins_group) {
            groups_.push_back({support, keys_.size()});
        }
        keys_.push_back(key);
    }
    groups_.push_back({0, keys_.size()});
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
    const std::uint64_t signature = signature_of(itemset);
    const auto groups = std::span(groups_).first(groups_.size() - 1);
    for (auto group = std::ranges::lower_bound(groups, support, {}, &Group::support);
         group != groups.end() && group->support == support; ++group) {
        const Keys keys = Keys(keys_).subspan(group->begin, std::next(group)->begin - group->begin);
        if (const Itemset* const found = first_within(keys, itemset, signature, 0)) {
            return *found;
        }
    }
    return itemset;
}

/// The first of some keys of one size, in lexicographic order, that lies within an itemset of this signature;
/// nullptr where there is none. The first `depth` items of the keys are the same, and lie before `itemset`.
const Itemset* ShortestWording::first_within(Keys keys, ItemSpan itemset, std::uint64_t signature,
                                             std::size_t depth) {
    constexpr std::size_t few = 16;  // are faster looked at one by one
    const auto item_of = [depth](const Key& key) { return (*key.items)[depth]; };
    while (keys.size() > few && depth < keys.front().items->size()) {
        const Item wanted = item_of(keys.front());
        itemset = itemset.subspan(
            static_cast<std::size_t>(std::ranges::lower_bound(itemset, wanted) - itemset.begin()));
        if (itemset.empty()) {
            return nullptr;
        }
        if (itemset.front() == wanted) {
            const auto end = std::ranges::upper_bound(keys, wanted, {}, item_of);
            const Itemset* const found =
                first_within({keys.begin(), end}, itemset.subspan(1), signature, depth + 1);
            if (found != nullptr) {
                return found;
            }
            keys = {end, keys.end()};
        } else {
            keys = {std::ranges::lower_bound(keys, itemset.front(), {}, item_of), keys.end()};
        }
    }
    const auto found = std::ranges::find_if(keys, [&](const Key& key) {
        return (key.signature & ~signature) == 0 &&
               is_contained(ItemSpan(*key.items).subspan(depth), itemset);
    });
    return found == keys.end() ? nullptr : found->items;
}

}  // namespace korv::tools
