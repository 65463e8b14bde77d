// Any bytes as a pattern of items: the parser ends with some of the items or an Error. The same bytes as the
// name of an item are found by the pattern in which each special character has a backslash before it.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "common/error.h"
#include "rules/item_pattern.h"

namespace {

using korv::Item;
using korv::Itemset;
using korv::tools::ItemNames;

constexpr Item of_any_name = 1;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

std::string escaped(const std::string& name) {
    std::string pattern;
    for (const char c : name) {
        if (std::string_view("*?|#/\\").find(c) != std::string_view::npos) {
            pattern += '\\';
        }
        pattern += c;
    }
    return pattern;
}

Itemset found(const std::string& pattern, const ItemNames& names) {
    const Itemset items = {of_any_name, 2, 3, 4, 5, 17};
    Itemset result = korv::tools::matching_items({"--with", pattern, korv::tools::PatternPlace::either, true},
                                                 items, names);
    require(!result.empty());
    require(std::ranges::is_sorted(result));
    require(std::ranges::includes(items, result));
    return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string text(bytes, bytes + size);
    const ItemNames names(
        {{of_any_name, text}, {2, "class=1st"}, {3, "class=crew"}, {4, "a|b"}, {5, "gr\xC3\xBCn*"}});
    if (!text.empty()) {
        require(std::ranges::binary_search(found(text, names), of_any_name));
        require(std::ranges::binary_search(found(escaped(text), names), of_any_name));
    }
    try {
        found(text, ItemNames({{2, "class=1st"}, {3, "class=crew"}, {4, "a|b"}, {5, "gr\xC3\xBCn*"}}));
    } catch (const korv::tools::Error&) {
        return 0;
    }
    return 0;
}
