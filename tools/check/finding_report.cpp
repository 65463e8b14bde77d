#include "check/finding_report.h"

#include <cstddef>
#include <map>
#include <vector>

#include "common/printable.h"
#include "common/quantity.h"
#include "rules/json_values.h"

namespace korv::tools {

namespace {

using CountsByKind = std::map<FindingKind, std::size_t>;

/// "1 error", "2 errors".
std::string counted(std::size_t number, const std::string& noun) {
    return with_commas(number) + " " + noun + (number == 1 ? "" : "s");
}

/// How many findings there are of each kind.
CountsByKind all_counts(const Findings& findings) {
    CountsByKind counts;
    for (const FindingDescription& each : finding_catalogue()) {
        if (const std::size_t count = findings.count(each.kind); count > 0) {
            counts[each.kind] = count;
        }
    }
    return counts;
}

/// How many of each kind are not shown.
CountsByKind counts_besides(const std::vector<Finding>& shown, const Findings& findings) {
    CountsByKind counts = all_counts(findings);
    for (const Finding& each : shown) {
        if (--counts[each.kind] == 0) {
            counts.erase(each.kind);
        }
    }
    return counts;
}

std::string text_line(const Finding& finding, const Findings& findings) {
    std::string line = findings.name_of(finding) + ":" + std::to_string(finding.place.line) + ":" +
                       std::to_string(finding.place.column) + ": ";
    line.append(word_for(finding.severity)).append(": found ").append(finding.found);
    if (!finding.expected.empty()) {
        line.append("; expected ").append(finding.expected);
    }
    if (!finding.effect.empty()) {
        line.append("; ").append(finding.effect);
    }
    line.append(" [").append(description(finding.kind).code).append("]");
    return printable(line) + "\n";
}

/// "and 12 more: no-tab 10, no-comma 2"; empty where all are shown.
std::string text_of_others(const CountsByKind& counts) {
    std::size_t sum = 0;
    std::string text;
    for (const auto& [kind, count] : counts) {
        sum += count;
        text.append(text.empty() ? "" : ", ").append(description(kind).code);
        text.append(" ").append(with_commas(count));
    }
    return sum == 0 ? "" : "and " + with_commas(sum) + " more: " + text + "\n";
}

std::string text_of_totals(const Findings& findings, const StoredTotals& totals) {
    const std::string classes =
        with_commas(totals.classes) + (totals.classes == 1 ? " class, " : " classes, ");
    return classes + counted(totals.essentials, "essential itemset") + ", " + counted(totals.items, "item") +
           "; " + counted(findings.count(Severity::error), "error") + ", " +
           counted(findings.count(Severity::warning), "warning") + ", " +
           counted(findings.count(Severity::note), "note") + "\n";
}

std::string text_report(const Findings& findings, const StoredTotals& totals) {
    const std::vector<Finding> shown = findings.in_order();
    std::string text;
    for (const Finding& each : shown) {
        text += text_line(each, findings);
    }
    return text + text_of_others(counts_besides(shown, findings)) + text_of_totals(findings, totals);
}

void add_text(std::string_view key, const std::string& text, JsonWriter& json) {
    add_key(key, json);
    add_string(printable(text), json);
}

void add_number(std::string_view key, std::size_t number, JsonWriter& json) {
    add_key(key, json);
    json.Uint64(number);
}

std::string taken_line(rapidjson::StringBuffer& buffer) {
    std::string line(buffer.GetString(), buffer.GetSize());
    return line + "\n";
}

std::string json_line(const Finding& finding, const Findings& findings) {
    rapidjson::StringBuffer buffer;
    JsonWriter json(buffer);
    json.StartObject();
    add_text("file", findings.name_of(finding), json);
    add_number("line", finding.place.line, json);
    add_number("column", finding.place.column, json);
    add_text("severity", std::string(word_for(finding.severity)), json);
    add_text("code", std::string(description(finding.kind).code), json);
    add_text("found", finding.found, json);
    add_text("expected", finding.expected, json);
    add_text("effect", finding.effect, json);
    if (finding.other_line > 0) {
        add_number("other_line", finding.other_line, json);
    }
    json.EndObject();
    return taken_line(buffer);
}

std::string json_of_totals(const Findings& findings, const StoredTotals& totals) {
    rapidjson::StringBuffer buffer;
    JsonWriter json(buffer);
    json.StartObject();
    add_number("classes", totals.classes, json);
    add_number("essentials", totals.essentials, json);
    add_number("items", totals.items, json);
    add_number("errors", findings.count(Severity::error), json);
    add_number("warnings", findings.count(Severity::warning), json);
    add_number("notes", findings.count(Severity::note), json);
    add_key("by_code", json);
    json.StartObject();
    for (const auto& [kind, count] : all_counts(findings)) {
        add_number(description(kind).code, count, json);
    }
    json.EndObject();
    json.EndObject();
    return taken_line(buffer);
}

std::string json_report(const Findings& findings, const StoredTotals& totals) {
    std::string text;
    for (const Finding& each : findings.in_order()) {
        text += json_line(each, findings);
    }
    return text + json_of_totals(findings, totals);
}

}  // namespace

std::string finding_report(const Findings& findings, const StoredTotals& totals, FindingFormat format) {
    return format == FindingFormat::json ? json_report(findings, totals) : text_report(findings, totals);
}

}  // namespace korv::tools
