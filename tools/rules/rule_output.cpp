#include "rules/rule_output.h"

#include <memory>

namespace korv::tools {

void RuleOutput::write_rules(const std::vector<FoundRule>& rules, const RuleBook& book) {
    const std::unique_ptr<RuleWriter> writer =
        rule_writer(format_, book, style_, [this](std::string_view text) { output_.write(text); });
    for (const FoundRule& rule : rules) {
        writer->write(rule);
    }
    writer->finish();
    output_.commit();
}

void RuleOutput::write_report(std::string_view report) {
    output_.write(report);
    output_.commit();
}

}  // namespace korv::tools
