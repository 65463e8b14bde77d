#pragma once

#include <cstddef>
#include <string>

#include "rules/exclusion_search.h"
#include "rules/rule_arguments.h"
#include "rules/rule_input.h"
#include "rules/rule_request.h"
#include "rules/rules_database.h"
#include "rules/rules_page.h"

namespace korv::tools {

/// What a database says of where its rules come from: files by their names, without their directories.
RulesOrigin database_origin(const RuleInput& input, const RuleArguments& arguments);

/// The same of a page, with the exclusions that it shows: those of `request`, but as many as a page takes,
/// and none where there are no transactions to count them in. `request` is what the rules were chosen by,
/// which the page refers to, as it does to `input`. Throws UsageError as find_exclusions does.
PageOrigin page_origin(const RuleInput& input, const RuleArguments& arguments, const RuleRequest& request,
                       const ExclusionProgress& progress);

/// What the summary says where a page has room for some of the classes only: a line; else nothing.
std::string note_on_classes(std::size_t on_page, std::size_t all);

}  // namespace korv::tools
