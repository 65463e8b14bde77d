#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/atomic_output.h"
#include "rules/found_rule.h"
#include "rules/rule_writer.h"

namespace korv::tools {

/// Where rules go: a file, or an open stream, in one of the formats. A file is there only when it is
/// complete.
class RuleOutput {
public:
    /// Opens the output, so that a path that cannot be written is found before the work begins. Throws Error
    /// as AtomicOutput does.
    RuleOutput(const std::string& path, RuleFormat format, const TerminalStyle& style)
        : output_(path), format_(format), style_(style) {}

    /// Writes all rules. Call this, or write_report, once. Throws Error, or BrokenPipe, as AtomicOutput does.
    void write_rules(const std::vector<FoundRule>& rules, const RuleBook& book);

    /// Writes a text in place of rules. Throws likewise.
    void write_report(std::string_view report);

private:
    AtomicOutput output_;
    RuleFormat format_;
    TerminalStyle style_;
};

}  // namespace korv::tools
