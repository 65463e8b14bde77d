#include "check/known_supports.h"

#include <bit>

#include "base/itemset_hash.h"

namespace korv::tools {

KnownSupports::KnownSupports(const CheckedClasses& checked) {
    std::size_t itemsets = checked.classes.size();
    for (const auto& [closed_itemset, of_class] : checked.classes) {
        itemsets += of_class.essentials.size();
    }
    known_.reserve(itemsets);
    slots_.assign(std::bit_ceil(itemsets * 2 + 1), empty_slot);
    auto line = checked.lines.begin();
    for (const auto& [closed_itemset, of_class] : checked.classes) {
        add({&closed_itemset, of_class.support, *line++, true});
    }
    line = checked.lines.begin();
    for (const auto& [closed_itemset, of_class] : checked.classes) {
        for (const Itemset& essential : of_class.essentials) {
            add({&essential, of_class.support, *line, false});
        }
        ++line;
    }
}

/// The slot of an itemset, or the empty one where it belongs.
std::size_t KnownSupports::slot_of(const Itemset& itemset) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = hash_of(itemset) & mask;
    while (slots_[slot] != empty_slot && *known_[slots_[slot]].itemset != itemset) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

void KnownSupports::add(const Known& known) {
    std::uint32_t& slot = slots_[slot_of(*known.itemset)];
    if (slot == empty_slot) {
        slot = static_cast<std::uint32_t>(known_.size());
        known_.push_back(known);
    }
}

const KnownSupports::Known* KnownSupports::find(const Itemset& itemset) const {
    const std::uint32_t position = slots_[slot_of(itemset)];
    return position == empty_slot ? nullptr : &known_[position];
}

}  // namespace korv::tools
