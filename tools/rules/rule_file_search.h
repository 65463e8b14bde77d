#pragma once

#include <functional>
#include <string>
#include <vector>

#include "common/text_input.h"
#include "rules/phase.h"
#include "rules/rule_input.h"
#include "rules/rule_request.h"
#include "rules/rule_search.h"

namespace korv::tools {

/// Reads the rules of rule files, chooses and ranks them. `first`: the first of `paths`, open. `request`: as
/// request_for_rule_files returns it; `input`: the context of the files. Rules that are in the files several
/// times, with the same counts, are one. With transactions, the rules that pass the filter as far as it looks
/// at sides are counted there.
///
/// Memory grows with the rules that are kept: with request.top where nothing has to be compared, whatever the
/// files hold.
///
/// Throws Error for a file that is none or is damaged (see rule_file.h), and where the transactions have
/// other counts than a record; UsageError for a pattern of items that matches none, and where patterns need a
/// second look at standard input.
SearchResult search_rule_files(TextStream first, const std::vector<std::string>& paths,
                               const RuleInput& input, const RuleRequest& request,
                               const std::function<void(Phase)>& begin);

}  // namespace korv::tools
