#include "rules/wording.h"

#include <algorithm>
#include <utility>

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
    std::vector<std::pair<Count, const Itemset*>> keys;
    for (const LatticeEntry& entry : entries) {
        for (const Itemset& key : keys_of(entry.node)) {
            if (!key.empty()) {
                keys.emplace_back(entry.support(), &key);
            }
        }
    }
    std::ranges::sort(keys, [](const auto& one, const auto& other) {
        return one.first != other.first ? one.first < other.first : is_before(*one.second, *other.second);
    });
    for (const auto& [support, key] : keys) {
        if (groups_.empty() || groups_.back().support != support || groups_.back().size != key->size()) {
            groups_.push_back({support, key->size()});
        }
        std::vector<Item>& items = groups_.back().items;
        items.insert(items.end(), key->begin(), key->end());
    }
}

ItemSpan BaseWording::of(const Itemset& base, NodeRef node, ItemSpan other) {
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
    for (auto group = std::ranges::lower_bound(groups_, support, {}, &Group::support);
         group != groups_.end() && group->support == support; ++group) {
        const ItemSpan found = first_within({*group, 0, group->items.size() / group->size}, itemset, 0);
        if (!found.empty()) {
            return found;
        }
    }
    return itemset;
}

/// The first of some keys, in lexicographic order, of which the items from `depth` on lie within an itemset;
/// empty where there is none. The items before `depth` are the same for all.
ItemSpan ShortestWording::first_within(Keys keys, ItemSpan itemset, std::size_t depth) {
    while (keys.count() > 0) {
        const Item wanted = keys[keys.begin][depth];
        itemset = itemset.subspan(
            static_cast<std::size_t>(std::ranges::lower_bound(itemset, wanted) - itemset.begin()));
        if (itemset.empty()) {
            return {};
        }
        if (itemset.front() != wanted) {
            keys.begin = first_not_below(keys, itemset.front(), depth);
            continue;
        }
        if (depth + 1 == keys.group.size) {
            return keys[keys.begin];
        }
        const std::size_t end = first_not_below(keys, std::uint64_t{wanted} + 1, depth);
        const ItemSpan found = first_within({keys.group, keys.begin, end}, itemset.subspan(1), depth + 1);
        if (!found.empty()) {
            return found;
        }
        keys.begin = end;
    }
    return {};
}

/// The first of some keys whose item at `depth` is not below `item`, or their end. It is looked for in steps
/// that double, since it is seldom far.
std::size_t ShortestWording::first_not_below(const Keys& keys, std::uint64_t item, std::size_t depth) {
    std::size_t below = keys.begin;  // the key before it is below, if there is one
    std::size_t step = 1;
    while (below + step <= keys.end && keys[below + step - 1][depth] < item) {
        below += step;
        step *= 2;
    }
    std::size_t end = std::min(keys.end, below + step - 1);
    while (below < end) {
        const std::size_t middle = below + (end - below) / 2;
        if (keys[middle][depth] < item) {
            below = middle + 1;
        } else {
            end = middle;
        }
    }
    return below;
}

}  // namespace korv::tools
