#include "common/class_record.h"

#include <array>
#include <charconv>
#include <string_view>

namespace korv::tools {

namespace {

void append_number(Count number, std::string& text) {
    std::array<char, 10> digits;
    text.append(digits.begin(), std::to_chars(digits.begin(), digits.end(), number).ptr);
}

void append_items(const Itemset& itemset, std::string& text) {
    std::string_view before_item;
    for (const Item item : itemset) {
        text += before_item;
        append_number(item, text);
        before_item = " ";
    }
}

}  // namespace

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

}  // namespace korv::tools
