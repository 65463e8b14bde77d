#pragma once

#include <cstddef>
#include <string>

#include "rules/page_arrays.h"
#include "rules/page_items.h"
#include "rules/page_rules.h"
#include "rules/rule_search.h"
#include "rules/rule_writer.h"
#include "rules/rules_page.h"

namespace korv::tools {

/// The version of the data of the page, which programs of other versions do not show.
inline constexpr unsigned page_format = 1;

/// What the header of a page tells.
struct PageContents {
    const SearchResult& found;
    const RuleBook& book;
    const PageOrigin& origin;
    const PageSides& sides;
    const PageItems& items;
    std::size_t items_left_out;  ///< of the input
    std::size_t classes_shown;   ///< of SearchResult::lattice
    const PageArrays& arrays;    ///< all that are behind the header
};

/// The header as JSON: what the arrays do not hold, and where each of them is. docs/page.md describes it.
std::string page_header(const PageContents& page);

}  // namespace korv::tools
