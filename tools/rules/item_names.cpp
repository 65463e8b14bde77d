#include "rules/item_names.h"

#include <utility>

namespace korv::tools {

ItemNames::ItemNames(std::map<Item, std::string> names) : names_(std::move(names)) {
    std::map<std::string_view, Itemset> by_column;
    for (const auto& [item, name] : names_) {
        const std::size_t sign = name.find('=');
        if (sign != std::string::npos && sign > 0) {
            by_column[std::string_view(name).substr(0, sign)].push_back(item);
        }
    }
    for (auto& [name, items] : by_column) {
        if (items.size() < 2) {
            continue;
        }
        for (const Item item : items) {
            column_of_[item] = columns_.size();
        }
        columns_.push_back({std::string(name), std::move(items)});
    }
}

std::string ItemNames::name(Item item) const {
    const auto found = names_.find(item);
    return found == names_.end() ? std::to_string(item) : found->second;
}

const ItemNames::Column* ItemNames::column_of(Item item) const {
    const auto found = column_of_.find(item);
    return found == column_of_.end() ? nullptr : &columns_[found->second];
}

std::string_view ItemNames::value(Item item) const {
    const std::string_view name = names_.at(item);
    return name.substr(name.find('=') + 1);
}

}  // namespace korv::tools
