#include "check/rule_check.h"

#include <array>
#include <charconv>
#include <utility>

#include "base/number_text.h"
#include "common/text_input.h"
#include "rules/recount.h"
#include "rules/rule_file.h"

namespace korv::tools {

namespace {

/// A confidence as korv prints it, with six digits.
std::string printed(double confidence) {
    constexpr int digits = 6;
    std::array<char, 32> text = {};
    const auto result =
        std::to_chars(text.data(), text.data() + text.size(), confidence, std::chars_format::general, digits);
    return {text.data(), result.ptr};
}

double as_printed(double confidence) {
    return parse_number<double>(printed(confidence)).value_or(confidence);
}

template <typename Number>
bool is_within(Number number, const Estimate<Number>& bounds) {
    return bounds.low <= number && number <= bounds.high;
}

/// Whether korv prints an upper end of the confidence that is no bound: not(D)-->B between nodes.
bool has_no_upper_bound(const RuleRecord& record) {
    constexpr std::size_t not_to_plain = 4;
    return record.group() == not_to_plain && record.is_between_nodes && !record.support.is_known;
}

std::string support_text(const Estimate<Count>& support) {
    return support.low == support.high
               ? std::to_string(support.low)
               : "from " + std::to_string(support.low) + " to " + std::to_string(support.high);
}

std::string confidence_text(const Estimate<double>& confidence) {
    return confidence.low == confidence.high
               ? printed(confidence.low)
               : "from " + printed(confidence.low) + " to " + printed(confidence.high);
}

class RuleCheck {
public:
    RuleCheck(const Database& database, std::size_t file, Findings& findings)
        : recount_(database), file_(file), findings_(findings) {}

    void check(const RuleRecord& record) {
        const Contingency counted = recount_.count({record.premise.items, record.premise.is_negated},
                                                   {record.conclusion.items, record.conclusion.is_negated});
        if (!is_within(counted.both, record.support)) {
            add(FindingKind::wrong_rule_support, record, "the support " + support_text(record.support),
                std::to_string(counted.both) + ", as counted");
        }
        check_confidence(record, counted);
    }

private:
    void check_confidence(const RuleRecord& record, const Contingency& counted) {
        const Estimate<double> confidence = record.confidence.value_or(known(1.0));
        // Without a transaction that meets the premise, the rule has no exception.
        const double quotient =
            counted.premise == 0 ? 1 : static_cast<double>(counted.both) / counted.premise;
        const double rounded = as_printed(quotient);
        if (is_within(rounded, confidence)) {
            return;
        }
        if (has_no_upper_bound(record) && rounded >= confidence.low) {
            add(FindingKind::no_upper_bound, record, "the confidence " + confidence_text(confidence),
                printed(quotient) + ", as counted: for not(D)-->B between nodes, the upper end is no bound");
            return;
        }
        add(FindingKind::wrong_rule_confidence, record,
            record.confidence ? "the confidence " + confidence_text(confidence)
                              : std::string("a rule without exception"),
            "the confidence " + printed(quotient) + ", " + std::to_string(counted.both) + " of " +
                std::to_string(counted.premise) + " as counted");
    }

    void add(FindingKind kind, const RuleRecord& record, std::string found, std::string expected) {
        findings_.add({.kind = kind,
                       .severity = description(kind).severity,
                       .file = file_,
                       .place = {record.line, 1},
                       .found = std::move(found),
                       .expected = std::move(expected)});
    }

    Recount recount_;
    std::size_t file_;
    Findings& findings_;
};

}  // namespace

std::size_t check_rules(const std::string& path, const Database& database, std::size_t file,
                        Findings& findings) {
    TextStream stream(path);
    RuleFileReader reader([&stream](char* out, std::size_t size) { return stream.read(out, size); },
                          stream.name());
    RuleCheck check(database, file, findings);
    std::size_t rules = 0;
    for (; reader.next(); ++rules) {
        check.check(reader.record());
    }
    return rules;
}

}  // namespace korv::tools
