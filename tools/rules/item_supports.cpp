#include "rules/item_supports.h"

#include "mine/ranked_items.h"

namespace korv::tools {

ItemSupports supports_of_items(const ClassMap& classes) {
    ItemSupports supports;
    for (const auto& [itemset, of_class] : classes) {
        if (of_class.essentials.empty() && itemset.size() == 1) {
            supports[itemset.front()] = of_class.support;
        }
        for (const Itemset& essential : of_class.essentials) {
            if (essential.size() == 1) {
                supports[essential.front()] = of_class.support;
            }
        }
    }
    return supports;
}

ItemSupports supports_of_items(const Database& database) {
    ItemSupports supports;
    for (const Database::ItemColumn& column : database.items) {
        supports[column.item] = support_of(column, database);
    }
    return supports;
}

}  // namespace korv::tools
