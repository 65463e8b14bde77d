#include "rules/exclusion_report.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "common/quantity.h"
#include "rules/summary_lines.h"

namespace korv::tools {

namespace {

/// "--with and --without": those that were given.
std::string options_of_items(const RuleRequest& request) {
    std::vector<std::string> options;
    std::string text;
    for (const PatternWord& pattern : request.patterns) {
        if (std::ranges::find(options, pattern.option) == options.end()) {
            options.push_back(pattern.option);
            text += (text.empty() ? "" : " and ") + pattern.option;
        }
    }
    return text;
}

/// What a step left out, with the option that undoes it, or none.
SummaryLine line_of(ExclusionStep step, std::uint64_t number, const RuleRequest& request) {
    switch (step) {
        case ExclusionStep::columns:
            return {number, "of two values of a column", ""};
        case ExclusionStep::chance:
            return {number, "together as often as by chance", ""};
        case ExclusionStep::uncertain:
            return {number, "could be chance", keeps("--alpha 1", number)};
        case ExclusionStep::items:
            return {number, "without the items asked for", "without " + options_of_items(request)};
        case ExclusionStep::top:
            break;
    }
    return {number, "beyond the best " + with_commas(request.top), "--top 0"};
}

std::string what_was_looked_at(const ExclusionAccounting& accounting) {
    const std::string triples =
        accounting.triples == 0 ? "" : " and " + counted(accounting.triples, "triple");
    return counted(accounting.pairs, "pair") + triples + " of " + counted(accounting.items, "item") + ", " +
           counted(accounting.transactions, "transaction") + '\n';
}

SummaryLine last_line(const ExclusionAccounting& accounting) {
    const std::uint64_t shown = accounting.left();
    const std::uint64_t beyond = accounting[ExclusionStep::top];
    return {shown, "shown, by how surprising they are",
            beyond == 0 ? "" : "--top 0 shows all " + with_commas(shown + beyond)};
}

std::string why_none_is_left(const ExclusionAccounting& accounting, const RuleRequest& request) {
    if (accounting.pairs == 0) {
        return "No exclusion is left: fewer than two items reach the minimum support of " +
               text_of(request.min_support) + "; a lower --min-support brings more.\n";
    }
    std::size_t last = number_of_exclusion_steps - 1;
    while (last > 0 && accounting.left_out[last] == 0) {
        --last;
    }
    const auto step = static_cast<ExclusionStep>(last);
    const SummaryLine line = line_of(step, accounting[step], request);
    const std::string options = step == ExclusionStep::items ? keeps(line.option, line.number) : line.option;
    return "No exclusion is left: the last " +
           (line.number == 1 ? "one was " : with_commas(line.number) + " were ") +
           (step == ExclusionStep::uncertain ? "such as chance could give" : line.what) +
           (options.empty() ? "" : "; " + options) + ".\n";
}

}  // namespace

std::uint64_t ExclusionAccounting::left() const {
    return pairs + triples - std::accumulate(left_out.begin(), left_out.end(), std::uint64_t{0});
}

std::string exclusion_report(const ExclusionAccounting& accounting, const RuleRequest& request) {
    std::vector<SummaryLine> lines;
    for (std::size_t i = 0; i < static_cast<std::size_t>(ExclusionStep::top); ++i) {
        if (accounting.left_out[i] > 0) {
            lines.push_back(line_of(static_cast<ExclusionStep>(i), accounting.left_out[i], request));
        }
    }
    const bool is_none_left = accounting.left() == 0;
    if (!is_none_left) {
        lines.push_back(last_line(accounting));
    }
    const std::string note = accounting.has_too_many_triples
                                 ? "Triples would take more than seconds, so these are pairs; --max-items 3 "
                                   "looks at triples, too.\n"
                                 : "";
    return what_was_looked_at(accounting) +
           aligned(lines, with_commas(accounting.pairs + accounting.triples).size()) +
           (is_none_left ? why_none_is_left(accounting, request) : "") + note;
}

}  // namespace korv::tools
