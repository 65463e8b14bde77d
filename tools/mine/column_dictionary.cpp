#include "mine/column_dictionary.h"

#include <algorithm>
#include <functional>

namespace korv::tools {

ColumnDictionary::Entry ColumnDictionary::number_of(std::string_view text) {
    if ((ends_.size() + 1) * 4 > slots_.size() * 3) {
        grow();
    }
    const auto hash = static_cast<std::uint32_t>(std::hash<std::string_view>{}(text));
    const std::size_t mask = slots_.size() - 1;
    std::size_t i = hash & mask;
    for (; slots_[i].number != none; i = (i + 1) & mask) {
        if (slots_[i].hash == hash && this->text(slots_[i].number) == text) {
            return {slots_[i].number, false};
        }
    }
    slots_[i] = {hash, size()};
    bytes_ += text;
    ends_.push_back(bytes_.size());
    return {slots_[i].number, true};
}

void ColumnDictionary::grow() {
    std::vector<Slot> earlier(std::max<std::size_t>(4, slots_.size() * 2));
    earlier.swap(slots_);
    const std::size_t mask = slots_.size() - 1;
    for (const Slot& slot : earlier) {
        if (slot.number == none) {
            continue;
        }
        std::size_t i = slot.hash & mask;
        while (slots_[i].number != none) {
            i = (i + 1) & mask;
        }
        slots_[i] = slot;
    }
}

}  // namespace korv::tools
