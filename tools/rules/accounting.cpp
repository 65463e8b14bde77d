#include "rules/accounting.h"

#include <algorithm>
#include <array>
#include <functional>
#include <numeric>
#include <string_view>
#include <vector>

#include "common/quantity.h"
#include "common/shortest_number.h"
#include "rules/found_rule.h"
#include "rules/measures.h"
#include "rules/summary_lines.h"

namespace korv::tools {

namespace {

/// "a", "a or b", "a, b or c".
std::string joined(const std::vector<std::string>& words, const std::string& conjunction) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const bool is_last = i + 1 == words.size();
        text += (i == 0 ? "" : is_last ? " " + conjunction + " " : ", ") + words[i];
    }
    return text;
}

std::string shortest(double number) {
    std::string text;
    append_shortest(number, text);
    return text;
}

/// What a step did to the rules that it left out, and the options without which it would not have.
struct StepWords {
    std::string what;
    std::string options;
};

StepWords words_of_chance(const RuleRequest& request) {
    return {request.min_lift ? "of a lift below " + shortest(*request.min_lift)
                             : "no more often together than by chance",
            "--min-lift 0"};
}

StepWords words_of_kinds(const RuleRequest& request) {
    std::vector<std::string> kinds;
    for (const Certainty kind : request.kinds) {
        kinds.emplace_back(name_of(kind));
    }
    return {"not " + joined(kinds, "or"), "without --kinds"};
}

StepWords words_of_items(const RuleRequest& request) {
    std::vector<std::string> options;
    for (const PatternWord& pattern : request.patterns) {
        if (std::ranges::find(options, pattern.option) == options.end()) {
            options.push_back(pattern.option);
        }
    }
    return {"without the items asked for", "without " + joined(options, "and")};
}

StepWords words_of_size(const RuleRequest& request) {
    struct Limit {
        std::size_t most;
        std::string place;
        std::string option;
    };
    const std::array<Limit, 3> limits = {{
        {request.max_items, "", "--max-items 0"},
        {request.max_premise_items, " in the premise", "--max-if 0"},
        {request.max_conclusion_items, " in the conclusion", "--max-then 0"},
    }};
    std::vector<std::string> what;
    std::vector<std::string> options;
    for (const Limit& limit : limits) {
        if (limit.most == 0) {
            continue;
        }
        what.push_back(counted(limit.most, "item") + limit.place);
        options.push_back(limit.option);
    }
    std::string all_options;
    for (const std::string& option : options) {
        all_options += (all_options.empty() ? "" : " ") + option;
    }
    return {"of more than " + joined(what, "or"), all_options};
}

StepWords words_of_weaker(Prune prune) {
    return prune == Prune::same ? StepWords{"weaker than one of the same conclusion", "--prune none"}
                                : StepWords{"weaker than another rule", "--prune none"};
}

StepWords words_of(Step step, const Accounting& accounting, const RuleRequest& request) {
    switch (step) {
        case Step::chance:
            return words_of_chance(request);
        case Step::forms:
            return {"of another form", "without --forms"};
        case Step::kinds:
            return words_of_kinds(request);
        case Step::columns:
            return {"true by the columns of the table alone", "--wording full"};
        case Step::items:
            return words_of_items(request);
        case Step::size:
            return words_of_size(request);
        case Step::where:
            return {"not as --where asks", "without --where"};
        case Step::one_column:
            return {"with a column on both sides, which --test cannot judge", "without --test"};
        case Step::insignificant:
            return {"that could be chance", "without --test"};
        case Step::same_fact:
            return accounting.rule_files > 0 ? StepWords{"the same rule again", ""}
                                             : StepWords{"the same fact in other words", "--wording full"};
        case Step::reading:
            return {"another reading of an association", "--readings all"};
        case Step::turned_round:
            return {"the contrapositive of another rule", "--prune none"};
        case Step::weaker:
            return words_of_weaker(accounting.prune);
        case Step::unproductive:
            return {"hardly better than a rule of fewer items", "--prune full"};
        case Step::per_conclusion:
            return {"beyond the best " + with_commas(request.per_conclusion) + " of a conclusion",
                    "--per-conclusion 0"};
        case Step::top:
            return {"beyond the best " + with_commas(request.most_told()),
                    request.is_limited_by_page() ? beyond_text(accounting, request) : "--top 0"};
        case Step::not_confirmed:
            break;
    }
    return {"not confirmed by the other transactions", "without --holdout"};
}

/// Whether the rules that are shown are the first of those that are left.
bool ends_with_top(const RuleRequest& request) {
    return !request.is_confirmed;
}

SummaryLine last_line(const Accounting& accounting, const RuleRequest& request) {
    return {accounting.left(),
            "shown, by " + std::string(name_of(request.sort)) +
                (request.is_ascending ? ", the smallest first" : ""),
            ends_with_top(request) ? beyond_text(accounting, request) : ""};
}

/// Says that less was pruned than is usual.
std::string note_on_pruning(const Accounting& accounting, const RuleRequest& request) {
    const bool is_usual = request.prune || accounting.prune == Prune::productive;
    if (is_usual) {
        return "";
    }
    const auto* const done =
        std::ranges::find(prunes, accounting.prune, [](auto each) { return each.second; });
    return "There are too many rules to compare them all in seconds, so this is --prune " +
           std::string(done->first) + "; --prune productive goes on.\n";
}

std::string why_none_was_derived(const RuleRequest& request) {
    return "No rule reaches the minimum support of " + text_of(request.min_support) +
           " and the minimum confidence of " + shortest(request.min_confidence) +
           ": a lower --min-confidence or --min-support brings more.\n";
}

/// Says which step took the last rules, and what brings them back.
std::string why_none_is_left(const Accounting& accounting, const RuleRequest& request) {
    std::size_t last = number_of_steps;
    while (last > 0 && accounting.left_out[last - 1] == 0) {
        --last;
    }
    if (last == 0) {
        return why_none_was_derived(request);
    }
    const auto step = static_cast<Step>(last - 1);
    const std::uint64_t taken = accounting[step];
    const StepWords words = words_of(step, accounting, request);
    return "No rule is left: the last " + (taken == 1 ? "one was " : with_commas(taken) + " were ") +
           words.what + "; " + keeps(words.options, taken) + ".\n";
}

}  // namespace

void Accounting::add(const Accounting& others) {
    pairs += others.pairs;
    derived += others.derived;
    std::ranges::transform(left_out, others.left_out, left_out.begin(), std::plus());
}

std::uint64_t Accounting::left() const {
    return derived - std::accumulate(left_out.begin(), left_out.end(), std::uint64_t{0});
}

std::string origin_text(const Accounting& accounting) {
    return (accounting.rule_files > 0 ? counted(accounting.rule_files, "rule file")
                                      : counted(accounting.classes, "class", "es")) +
           (accounting.transactions > 0 ? ", " + counted(accounting.transactions, "transaction") : "");
}

std::vector<SummaryLine> step_lines(const Accounting& accounting, const RuleRequest& request) {
    std::vector<SummaryLine> lines;
    for (std::size_t i = 0; i < number_of_steps; ++i) {
        const auto step = static_cast<Step>(i);
        if (accounting[step] > 0 && (step != Step::top || !ends_with_top(request))) {
            const StepWords words = words_of(step, accounting, request);
            const bool is_first = step == Step::chance;  // which shows what the others mean
            lines.push_back({accounting[step], words.what,
                             is_first ? keeps(words.options, accounting[step]) : words.options});
        }
    }
    return lines;
}

std::string beyond_text(const Accounting& accounting, const RuleRequest& request) {
    const std::uint64_t beyond = accounting[Step::top];
    if (beyond == 0) {
        return "";
    }
    const std::uint64_t all = accounting.left() + accounting[Step::not_confirmed] + beyond;
    if (!request.is_limited_by_page()) {
        return "--top 0 shows all " + with_commas(all);
    }
    if (all <= most_page_limit) {
        return "--page-limit " + std::to_string(all) + " shows all " + with_commas(all);
    }
    const std::string other_format = "another format has all " + with_commas(all);
    return request.page_limit == most_page_limit
               ? other_format
               : "--page-limit " + std::to_string(most_page_limit) + " shows more, " + other_format;
}

std::string closing_note(const Accounting& accounting, const RuleRequest& request) {
    return accounting.left() == 0 ? why_none_is_left(accounting, request)
                                  : note_on_pruning(accounting, request);
}

std::string accounting_text(const Accounting& accounting, const RuleRequest& request) {
    const std::string first = counted(accounting.derived, "rule") + " from " + origin_text(accounting) + '\n';
    std::vector<SummaryLine> lines = step_lines(accounting, request);
    if (accounting.left() > 0) {
        lines.push_back(last_line(accounting, request));
    }
    return first + aligned(lines, with_commas(accounting.derived).size()) + closing_note(accounting, request);
}

}  // namespace korv::tools
