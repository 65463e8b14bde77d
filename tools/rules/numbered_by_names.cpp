#include "rules/numbered_by_names.h"

#include <algorithm>
#include <unordered_map>
#include <utility>
#include <vector>

namespace korv::tools {

void number_by_names(const std::map<Item, std::string>& names, Database& database) {
    std::unordered_map<std::string, Item> numbers;
    for (const auto& [item, name] : names) {
        numbers.emplace(name, item);
    }
    const auto is_known = [&numbers](const std::string& name) { return numbers.contains(name); };
    if (std::ranges::none_of(database.names, is_known)) {
        return;
    }
    Item last = names.rbegin()->first;
    const auto next_number = [&] {
        while (names.contains(++last)) {  // behind the largest number comes 0
        }
        return last;
    };
    std::map<Item, std::pair<Database::ItemColumn, std::string>> numbered;
    for (std::size_t i = 0; i < database.items.size(); ++i) {
        const auto found = numbers.find(database.names[i]);
        const Item item = found == numbers.end() ? next_number() : found->second;
        numbered.emplace(item,
                         std::pair(Database::ItemColumn{item, std::move(database.items[i].transactions)},
                                   std::move(database.names[i])));
    }
    database.items.clear();
    database.names.clear();
    for (auto& [item, each] : numbered) {
        database.items.push_back(std::move(each.first));
        database.names.push_back(std::move(each.second));
    }
}

}  // namespace korv::tools
