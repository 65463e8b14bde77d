#pragma once

#include "rules/measures.h"
#include "rules/rule_arguments.h"
#include "rules/rule_input.h"
#include "rules/rule_request.h"

namespace korv::tools {

/// Throws UsageError where the command line asks for what no rule file holds, whatever comes with it.
void require_rule_files_suffice(const RuleArguments& arguments);

/// What is known of rules from rule files: their forms never are, and conclusions only where the transactions
/// are at hand.
Knowledge knowledge_of_rule_files(const RuleInput& input);

/// The request as it is for rule files: with what goes without saying of them. The files were made with
/// thresholds, so there are none but those that are given; sides are worded as the files have them. Without
/// transactions, any lift will do, the order is by confidence, and nothing is left out as another reading or
/// as weaker.
///
/// Throws UsageError where an option needs what the files do not hold.
RuleRequest request_for_rule_files(RuleRequest request, const RuleInput& input);

}  // namespace korv::tools
