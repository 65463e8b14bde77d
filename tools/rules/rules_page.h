#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "rules/exclusion_search.h"
#include "rules/rule_input.h"
#include "rules/rule_request.h"
#include "rules/rule_search.h"
#include "rules/rule_writer.h"

namespace korv::tools {

/// How many exclusions a page takes, the strongest first.
inline constexpr std::size_t most_exclusions_of_page = 2000;

/// What a page says besides rules and their lattice.
struct PageOrigin {
    const RuleInput& input;
    std::string names_of_inputs;  ///< without their directories
    std::string options;          ///< as they were typed
    /// What is said of the input, a line each, with the names of files instead of their paths.
    std::vector<std::string> notes;
    const RuleRequest& request;
    std::optional<ExclusionResult> exclusions;  ///< pairs only; nothing where they were not counted
};

/// Throws Error, which says what to do, where the program was built without zlib.
void require_rules_page();

/// Writes rules, and of the classes that they are derived from (SearchResult::lattice) those that there is
/// room for, as one HTML file that needs nothing else. Returns how many classes these are. The same rules
/// give the same bytes by the same version of zlib.
///
/// docs/page.md describes the data in it. Takes memory for the data as it is before it is compressed: some 20
/// bytes a rule, and one for each item of a side or class.
std::size_t write_rules_page(const SearchResult& found, const RuleBook& book, const PageOrigin& origin,
                             const TextSink& sink);

}  // namespace korv::tools
