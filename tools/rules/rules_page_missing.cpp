// What stands in for rules_page.cpp where there is no zlib.

#include "common/error.h"
#include "rules/rules_page.h"

namespace korv::tools {

void require_rules_page() {
    throw Error(
        "--to html: korv-rules was built without zlib (zlib1g-dev); expected another format, such as csv");
}

std::size_t write_rules_page(const SearchResult& /*found*/, const RuleBook& /*book*/,
                             const PageOrigin& /*origin*/, const TextSink& /*sink*/) {
    require_rules_page();
    return 0;
}

}  // namespace korv::tools
