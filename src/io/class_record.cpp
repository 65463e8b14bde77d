#include "io/class_record.h"

#include "base/number_text.h"

namespace korv {

void append_class_record(const Itemset& closed_itemset, Count support, const std::vector<Itemset>& essentials,
                         std::string& text) {
    append_items(closed_itemset, text);
    text += '\t';
    append_number(support, text);
    text += '\t';
    for (const Itemset& essential : essentials) {
        text += ' ';
        append_items(essential, text);
        text += ',';
    }
    text += '\n';
}

}  // namespace korv
