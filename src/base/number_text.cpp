#include "base/number_text.h"

#include <array>

namespace korv {

void append_number(Count number, std::string& text) {
    std::array<char, most_digits> digits;
    text.append(digits.data(), write_number(number, digits.data()));
}

void append_items(const Itemset& itemset, std::string& text) {
    const std::size_t before = text.size();
    text.resize(before + itemset.size() * (most_digits + 1));
    char* const begin = text.data() + before;
    char* end = begin;
    for (const Item item : itemset) {
        if (end != begin) {
            *end++ = ' ';
        }
        end = write_number(item, end);
    }
    text.resize(static_cast<std::size_t>(end - text.data()));
}

}  // namespace korv
