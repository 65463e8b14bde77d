#include "base/number_text.h"

#include <array>

namespace korv {

void append_number(Count number, std::string& text) {
    std::array<char, most_digits> digits;
    text.append(digits.data(), write_number(number, digits.data()));
}

void append_items(const Itemset& itemset, std::string& text) {
    std::string_view before_item;
    for (const Item item : itemset) {
        text += before_item;
        append_number(item, text);
        before_item = " ";
    }
}

}  // namespace korv
