#include "check/known_supports.h"

#include <bit>

namespace korv::tools {

namespace {

/// A hash of an item. Those of the items of an itemset are added, so that parts need no pass over the items.
std::uint64_t hash_of_item(Item item) {
    std::uint64_t value = (item + std::uint64_t{1}) * 0x9E3779B97F4A7C15;
    value = (value ^ value >> 32) * 0xD6E8FEB86659FD93;
    return value ^ value >> 32;
}

/// Whether an itemset is another one without the items at two positions, or at one.
bool is_part(const Itemset& part, const Itemset& whole, std::size_t without, std::size_t without_too) {
    if (part.size() + (without_too == KnownSupports::none ? 1 : 2) != whole.size()) {
        return false;
    }
    std::size_t next = 0;
    for (std::size_t i = 0; i < whole.size(); ++i) {
        if (i != without && i != without_too && part[next++] != whole[i]) {
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
    auto line = checked.lines.begin();
    for (NodeRef node = checked.classes.begin(); node != checked.classes.end(); ++node, ++line) {
        add({&node->first, node, *line, true});
    }
    line = checked.lines.begin();
    for (NodeRef node = checked.classes.begin(); node != checked.classes.end(); ++node, ++line) {
        for (const Itemset& essential : node->second.essentials) {
            add({&essential, node, *line, false});
        }
    }
}

std::uint64_t KnownSupports::hash_of_items(const Itemset& itemset) {
    std::uint64_t hash = 0;
    for (const Item item : itemset) {
        hash += hash_of_item(item);
    }
    return hash;
}

/// The slot of an itemset that is wanted, or the empty one where it belongs.
template <typename IsWanted>
std::size_t KnownSupports::slot_of(std::uint64_t hash, IsWanted is_wanted) const {
    const std::size_t mask = slots_.size() - 1;
    const auto tag = static_cast<std::uint32_t>(hash >> 32);
    std::size_t slot = (hash ^ hash >> 32) & mask;
    while (slots_[slot].position != empty_slot &&
           (slots_[slot].tag != tag || !is_wanted(*known_[slots_[slot].position].itemset))) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

void KnownSupports::add(const Known& known) {
    const std::uint64_t hash = hash_of_items(*known.itemset);
    Slot& slot = slots_[slot_of(hash, [&known](const Itemset& each) { return each == *known.itemset; })];
    if (slot.position == empty_slot) {
        slot = {static_cast<std::uint32_t>(hash >> 32), static_cast<std::uint32_t>(known_.size())};
        known_.push_back(known);
    }
}

const KnownSupports::Known* KnownSupports::find(const Itemset& itemset) const {
    const std::size_t slot =
        slot_of(hash_of_items(itemset), [&itemset](const Itemset& each) { return each == itemset; });
    const std::uint32_t position = slots_[slot].position;
    return position == empty_slot ? nullptr : &known_[position];
}

const KnownSupports::Known* KnownSupports::find_part(const Itemset& itemset, std::uint64_t hash,
                                                     std::size_t without, std::size_t without_too) const {
    hash -= hash_of_item(itemset[without]);
    hash -= without_too == none ? 0 : hash_of_item(itemset[without_too]);
    const std::size_t slot =
        slot_of(hash, [&](const Itemset& each) { return is_part(each, itemset, without, without_too); });
    const std::uint32_t position = slots_[slot].position;
    return position == empty_slot ? nullptr : &known_[position];
}

}  // namespace korv::tools
