#include "mine/column_dictionary.h"

#include <algorithm>
#include <functional>

namespace korv::tools {

ColumnDictionary::Entry ColumnDictionary::number_of(std::string_view text) {
    if (last_ != none && this->text(last_) == text) {
        return {last_, false};
    }
    const auto hash = static_cast<std::uint32_t>(std::hash<std::string_view>{}(text));
    const std::size_t mask = slots_.size() - 1;
    if (!slots_.empty()) {
        for (std::size_t i = hash & mask; slots_[i].number != none; i = (i + 1) & mask) {
            if (slots_[i].hash == hash && this->text(slots_[i].number) == text) {
                last_ = slots_[i].number;
                return {last_, false};
            }
        }
    }
    if ((ends_.size() + 1) * 4 > slots_.size() * 3) {
        grow();
    }
    last_ = size();
    bytes_ += text;
    ends_.push_back(bytes_.size());
    slots_[free_slot(hash)] = {hash, last_};
    return {last_, true};
}

std::size_t ColumnDictionary::free_slot(std::uint32_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t i = hash & mask;
    while (slots_[i].number != none) {
        i = (i + 1) & mask;
    }
    return i;
}

void ColumnDictionary::grow() {
    std::vector<Slot> earlier(std::max<std::size_t>(4, slots_.size() * 2));
    earlier.swap(slots_);
    for (const Slot& slot : earlier) {
        if (slot.number != none) {
            slots_[free_slot(slot.hash)] = slot;
        }
    }
}

}  // namespace korv::tools
