#include "check/known_supports.h"

#include <bit>

namespace korv::tools {

namespace {

/// A hash of an item. Those of the items of an itemset are added, so that a part needs no pass over the
/// items.
std::uint64_t hash_of_item(Item item) {
    std::uint64_t value = (item + std::uint64_t{1}) * 0x9E3779B97F4A7C15;
    value = (value ^ value >> 32) * 0xD6E8FEB86659FD93;
    return value ^ value >> 32;
}

std::uint64_t hash_of_items(const Itemset& itemset) {
    std::uint64_t hash = 0;
    for (const Item item : itemset) {
        hash += hash_of_item(item);
    }
    return hash;
}

/// Whether an itemset is another one without the item at a position.
bool is_part(const Itemset& part, const Itemset& whole, std::size_t without) {
    if (part.size() + 1 != whole.size()) {
        return false;
    }
    for (std::size_t i = 0; i < part.size(); ++i) {
        if (part[i] != whole[i < without ? i : i + 1]) {
            return false;
        }
    }
    return true;
}

}  // namespace

KnownSupports::KnownSupports(const CheckedClasses& checked) {
    std::size_t itemsets = checked.classes.size();
    for (const auto& [closed_itemset, of_class] : checked.classes) {
        itemsets += of_class.essentials.size();
    }
    known_.reserve(itemsets);
    slots_.resize(std::bit_ceil(itemsets + itemsets / 2 + 1));
    Position closed = 0;
    for (NodeRef node = checked.classes.begin(); node != checked.classes.end(); ++node, ++closed) {
        add({&node->first, node, checked.lines[closed], closed});
    }
    closed = 0;
    for (NodeRef node = checked.classes.begin(); node != checked.classes.end(); ++node, ++closed) {
        for (const Itemset& essential : node->second.essentials) {
            add({&essential, node, checked.lines[closed], closed});
        }
    }
    part_begins_.reserve(known_.size() + 1);
    for (Position position = 0; position < known_.size(); ++position) {
        part_begins_.push_back(parts_.size());
        add_parts(position);
    }
    part_begins_.push_back(parts_.size());
}

/// The slot of an itemset that is wanted, or the empty one where it belongs.
template <typename IsWanted>
std::size_t KnownSupports::slot_of(std::uint64_t hash, IsWanted is_wanted) const {
    const std::size_t mask = slots_.size() - 1;
    const auto tag = static_cast<std::uint32_t>(hash >> 32);
    std::size_t slot = (hash ^ hash >> 32) & mask;
    while (slots_[slot].position != unknown &&
           (slots_[slot].tag != tag || !is_wanted(*known_[slots_[slot].position].itemset))) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

void KnownSupports::add(const Known& known) {
    const std::uint64_t hash = hash_of_items(*known.itemset);
    Slot& slot = slots_[slot_of(hash, [&known](const Itemset& each) { return each == *known.itemset; })];
    if (slot.position != unknown) {
        shared_.push_back(known);
        return;
    }
    slot = {static_cast<std::uint32_t>(hash >> 32), static_cast<Position>(known_.size())};
    known_.push_back(known);
}

void KnownSupports::add_parts(Position position) {
    const Itemset& itemset = *known_[position].itemset;
    if (!is_key(position) || itemset.size() < 2 || itemset.size() > most_items_of_parts) {
        return;
    }
    const std::uint64_t hash = hash_of_items(itemset);
    for (std::size_t i = 0; i < itemset.size(); ++i) {
        parts_.push_back(find_part(itemset, hash, i));
    }
}

/// What is known of an itemset without one of its items. `hash`: of the whole.
KnownSupports::Position KnownSupports::find_part(const Itemset& itemset, std::uint64_t hash,
                                                 std::size_t without) const {
    hash -= hash_of_item(itemset[without]);
    return slots_[slot_of(hash, [&](const Itemset& each) { return is_part(each, itemset, without); })]
        .position;
}

KnownSupports::Position KnownSupports::find(const Itemset& itemset) const {
    return slots_[slot_of(hash_of_items(itemset),
                          [&itemset](const Itemset& each) { return each == itemset; })]
        .position;
}

}  // namespace korv::tools
