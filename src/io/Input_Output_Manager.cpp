#include "io/Input_Output_Manager.h"

#include <iostream>
#include <utility>

namespace korv {

bool Input_Output_Manager::read_in_a_line(Itemset& itemset, Count& support,
                                          std::vector<Itemset>& essentials) {
    if (reader_.is_at_end()) {
        std::cout << "fin de fichier" << std::endl;
        return false;
    }
    data of_class;
    const bool has_items = reader_.read(itemset, of_class);
    support = of_class.support;
    essentials = std::move(of_class.essentials);
    return has_items;
}

}  // namespace korv
