#include "check/rule_check.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
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

/// The group of not(D)-->B.
constexpr std::size_t not_to_plain = 4;

/// Whether korv prints an upper end of the confidence that is no bound: not(D)-->B between nodes.
bool has_no_upper_bound(const RuleRecord& record) {
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
        : recount_(database), transactions_(database.transactions), file_(file), findings_(findings) {}

    void check(const RuleRecord& record) {
        const Contingency counted = count(record);
        if (!is_within(counted.both, record.support)) {
            add(FindingKind::wrong_rule_support, record, "the support " + support_text(record.support),
                std::to_string(counted.both) + ", as counted");
        }
        check_confidence(record, counted);
    }

    /// Adds the fault that ends a rule file. `record`: what was read of the rule that has it.
    void add_fault(const RuleFileFault& fault, const RuleRecord& record) {
        findings_.add({.kind = FindingKind::rule_file_fault,
                       .severity = Severity::error,
                       .file = file_,
                       .place = fault.place(),
                       .found = fault.found(),
                       .expected = fault.expected() + hint(record),
                       .effect = "the rules from here on are not counted"});
    }

private:
    /// How many transactions korv was told of, as the support of not(D)-->not(B) tells, which is their number
    /// without those with an item of a side, or the confidence of not(D)-->B. Nothing for other rules.
    std::optional<std::int64_t> told_transactions(const RuleRecord& record,
                                                  const Contingency& counted) const {
        constexpr std::size_t not_to_not = 2;
        if (!record.support.is_known) {
            return std::nullopt;
        }
        if (record.group() == not_to_not) {
            // A support below 0 wraps.
            return transactions_ + std::int64_t{static_cast<std::int32_t>(record.support.low - counted.both)};
        }
        const double confidence = record.confidence.value_or(known(1.0)).low;
        if (record.group() != not_to_plain || confidence <= 0 || !std::isfinite(confidence)) {
            return std::nullopt;
        }
        return std::int64_t{transactions_} - counted.premise +
               std::llround(static_cast<double>(record.support.low) / confidence);
    }

    /// ", from 1800 transactions rather than the 2201 of the database", where a confidence is above 1.
    std::string hint(const RuleRecord& record) {
        if (!record.confidence || record.confidence->low <= 1) {
            return "";
        }
        const auto told = told_transactions(record, count(record));
        return told ? ", from " + std::to_string(*told) + " transactions rather than the " +
                          std::to_string(transactions_) + " of the database"
                    : "";
    }

    Contingency count(const RuleRecord& record) {
        return recount_.count({record.premise.items, record.premise.is_negated},
                              {record.conclusion.items, record.conclusion.is_negated});
    }

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
    Count transactions_;
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
    try {
        for (; reader.next(); ++rules) {
            check.check(reader.record());
        }
    } catch (const RuleFileFault& fault) {
        check.add_fault(fault, reader.record());
    }
    return rules;
}

}  // namespace korv::tools
