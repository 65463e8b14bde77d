#include "check/class_mending.h"

#include <cstddef>
#include <vector>

#include "common/quantity.h"
#include "io/class_record.h"

namespace korv::tools {

namespace {

/// Whether a kind is about how lines are written, rather than about what they say.
bool is_of_form(FindingKind kind) {
    return kind < FindingKind::zero_support;
}

/// "no-comma 2, no-tab 1": the kinds of which there are findings.
template <typename IsWanted>
std::string counted(const Findings& findings, IsWanted is_wanted) {
    std::string text;
    for (const FindingDescription& each : finding_catalogue()) {
        if (findings.count(each.kind) > 0 && is_wanted(each)) {
            text.append(text.empty() ? "" : ", ").append(each.code).append(" ");
            text += with_commas(findings.count(each.kind));
        }
    }
    return text;
}

}  // namespace

std::string what_is_not_mended(const Findings& findings) {
    return counted(findings,
                   [](const FindingDescription& each) { return is_of_form(each.kind) && !each.is_mended; });
}

std::size_t mendable(const CheckedClasses& checked, const Findings& findings) {
    if (!what_is_not_mended(findings).empty() || checked.unclear_lines > 0) {
        return 0;
    }
    std::size_t count = 0;
    for (const FindingDescription& each : finding_catalogue()) {
        count += each.is_mended ? findings.count(each.kind) : 0;
    }
    return count;
}

CheckStatus status_of_mended(const Findings& findings) {
    CheckStatus status = CheckStatus::clean;
    for (const FindingDescription& each : finding_catalogue()) {
        if (each.is_mended || findings.count(each.kind) == 0 || each.severity == Severity::note) {
            continue;
        }
        status =
            std::max(status, each.severity == Severity::error ? CheckStatus::errors : CheckStatus::warnings);
    }
    return status;
}

std::string mended_text(const CheckedClasses& checked) {
    std::vector<NodeRef> by_line;
    std::uint32_t last_line = 0;
    for (const std::uint32_t line : checked.lines) {
        last_line = std::max(last_line, line);
    }
    by_line.assign(std::size_t{last_line} + 1, checked.classes.end());
    auto line = checked.lines.begin();
    for (NodeRef node = checked.classes.begin(); node != checked.classes.end(); ++node, ++line) {
        by_line[*line] = node;
    }
    std::string text;
    for (const NodeRef node : by_line) {
        if (node == checked.classes.end()) {
            continue;
        }
        const auto& [closed_itemset, of_class] = *node;
        append_class_record(
            closed_itemset, of_class.support,
            of_class.essentials.empty() ? std::vector<Itemset>{closed_itemset} : of_class.essentials, text);
    }
    return text;
}

std::string mending_report(const Findings& findings, const CheckedClasses& checked,
                           const std::string& output) {
    const std::string mended =
        counted(findings, [](const FindingDescription& each) { return each.is_mended; });
    const std::size_t classes = checked.classes.size();
    return output + ": " + with_commas(classes) + (classes == 1 ? " class; " : " classes; ") +
           (mended.empty() ? "there was nothing to mend" : "mended: " + mended) + "\n";
}

}  // namespace korv::tools
