#pragma once

#include "rules/rule_input.h"

namespace korv::tools {

/// Reads an input as read_input does, shows on standard error how far mining is, unless `is_quiet`, and keeps
/// the phase in the statistics of the program. Throws Error, besides, where mining takes longer than the
/// request allows.
RuleInput read_watched_input(const InputRequest& request, bool is_quiet);

}  // namespace korv::tools
