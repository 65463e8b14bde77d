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

/// "and 12 more (--max 0 shows them): no-tab 10, no-comma 2"; empty where there are none. `is_wanted`: asked
/// for each kind.
template <typename IsWanted>
std::string text_of_others(const CountsByKind& counts, const std::string& noun, const std::string& option,
                           IsWanted is_wanted) {
    std::size_t sum = 0;
    std::string text;
    for (const auto& [kind, count] : counts) {
        if (!is_wanted(kind)) {
            continue;
        }
        sum += count;
        text.append(text.empty() ? "" : ", ").append(description(kind).code);
        text.append(" ").append(with_commas(count));
    }
    return sum == 0 ? ""
                    : counted(sum, noun) + " not shown (" + option +
                          (sum == 1 ? " shows it): " : " shows them): ") + text + "\n";
}

/// What is not shown, by code: notes apart, where these are only counted.
std::string text_of_others(const CountsByKind& counts, const Findings& findings) {
    const auto is_counted_note = [&findings](FindingKind kind) {
        return !findings.keeps_notes() && description(kind).severity == Severity::note;
    };
    return text_of_others(counts, "finding", "--max 0",
                          [&](FindingKind kind) { return !is_counted_note(kind); }) +
           text_of_others(counts, "note", "--notes", is_counted_note);
}

/// What the findings come to: that there are none that matter, or what --fix would do.
std::string text_of_outcome(const Findings& findings, const ReportTotals& totals) {
    if (findings.count(Severity::error) + findings.count(Severity::warning) == 0) {
        return "; the file is as it should be";
    }
    return totals.mendable == 0 ? ""
                                : "; " + with_commas(totals.mendable) + " of them " +
                                      (totals.mendable == 1 ? "is" : "are") + " mended by --fix";
}

std::string text_of_totals(const Findings& findings, const ReportTotals& totals) {
    const StoredTotals& stored = totals.stored;
    const std::string classes =
        with_commas(stored.classes) + (stored.classes == 1 ? " class, " : " classes, ");
    const std::string sample =
        totals.sample ? with_commas(*totals.sample) + " of the classes counted again; " : "";
    return classes + counted(stored.essentials, "essential itemset") + ", " + counted(stored.items, "item") +
           "; " + sample + counted(findings.count(Severity::error), "error") + ", " +
           counted(findings.count(Severity::warning), "warning") + ", " +
           counted(findings.count(Severity::note), "note") + text_of_outcome(findings, totals) + "\n";
}

std::string text_report(const Findings& findings, const ReportTotals& totals) {
    const std::vector<Finding> shown = findings.in_order();
    std::string text;
    for (const Finding& each : shown) {
        text += text_line(each, findings);
    }
    return text + text_of_others(counts_besides(shown, findings), findings) +
           text_of_totals(findings, totals);
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
    if (!finding.more_lines.empty()) {
        add_key("more_lines", json);
        json.StartArray();
        for (const std::size_t line : finding.more_lines) {
            json.Uint64(line);
        }
        json.EndArray();
    }
    json.EndObject();
    return taken_line(buffer);
}

std::string json_of_totals(const Findings& findings, const ReportTotals& totals) {
    rapidjson::StringBuffer buffer;
    JsonWriter json(buffer);
    json.StartObject();
    add_number("classes", totals.stored.classes, json);
    add_number("essentials", totals.stored.essentials, json);
    add_number("items", totals.stored.items, json);
    if (totals.sample) {
        add_number("sample", *totals.sample, json);
    }
    add_number("errors", findings.count(Severity::error), json);
    add_number("warnings", findings.count(Severity::warning), json);
    add_number("notes", findings.count(Severity::note), json);
    add_number("mendable", totals.mendable, json);
    add_key("by_code", json);
    json.StartObject();
    for (const auto& [kind, count] : all_counts(findings)) {
        add_number(description(kind).code, count, json);
    }
    json.EndObject();
    json.EndObject();
    return taken_line(buffer);
}

std::string json_report(const Findings& findings, const ReportTotals& totals) {
    std::string text;
    for (const Finding& each : findings.in_order()) {
        text += json_line(each, findings);
    }
    return text + json_of_totals(findings, totals);
}

}  // namespace

std::string finding_report(const Findings& findings, const ReportTotals& totals, FindingFormat format) {
    return format == FindingFormat::json ? json_report(findings, totals) : text_report(findings, totals);
}

}  // namespace korv::tools
