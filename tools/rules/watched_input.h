#pragma once

#include "common/text_input.h"
#include "rules/rule_input.h"

namespace korv::tools {

/// Reads an input, of which open_input opened the first file, as read_input does, shows on standard error how
/// far mining is, unless `is_quiet`, and keeps the phase in the statistics of the program. Throws Error,
/// besides, where mining takes longer than the request allows.
RuleInput read_watched_input(TextStream first, const InputRequest& request, bool is_quiet);

}  // namespace korv::tools
