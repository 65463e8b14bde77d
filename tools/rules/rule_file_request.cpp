#include "rules/rule_file_request.h"

#include <algorithm>
#include <array>
#include <string>

#include "common/error.h"
#include "engine/rule_catalogue.h"
#include "rules/where.h"

namespace korv::tools {

namespace {

[[noreturn]] void refuse(const std::string& option, const std::string& what) {
    throw UsageError(option + ": needs " + what +
                     ", which rule files do not hold; expected --database FILE besides, or no such option");
}

/// Throws UsageError for forms that only parts of groups have.
void require_whole_groups(const std::vector<Form>& forms) {
    std::array<std::size_t, rule_catalogue.size() / forms_in_a_group> found = {};
    for (const Form form : forms) {
        ++found.at(group(form) - 1);
    }
    if (std::ranges::any_of(found, [](std::size_t each) { return each % forms_in_a_group != 0; })) {
        throw UsageError(
            "--forms: found labels, which rule files do not hold; expected or-or, none-none, or-none or "
            "none-or");
    }
}

void require_known(const RuleRequest& request, const Knowledge& known) {
    if (request.where.empty()) {
        return;
    }
    if (const auto name = parse_where(request.where).untold(known)) {
        refuse("--where", std::string(*name));
    }
}

/// Whether the order by a measure is that by a count, so that N does not matter.
bool is_of_counts(Measure measure) {
    return measure == Measure::support || measure == Measure::coverage;
}

/// Where the transactions are not at hand.
void settle_without_conclusions(RuleRequest& request, const Knowledge& known) {
    if (request.min_lift && *request.min_lift > 0) {
        refuse("--min-lift", "the support of conclusions");
    }
    if (request.given.sort && !known.tells(request.sort) && !is_of_counts(request.sort)) {
        refuse("--sort", std::string(name_of(request.sort)));
    }
    if (request.prune == Prune::productive) {
        refuse("--prune", "the leverage of rules");
    }
    if (request.given.readings && request.readings == Readings::one) {
        refuse("--readings", "the support of conclusions");
    }
    request.min_lift = 0;
    request.sort = request.given.sort ? request.sort : Measure::confidence;
    request.readings = Readings::all;
    request.prune = request.prune.value_or(Prune::none);
}

}  // namespace

void require_rule_files_suffice(const RuleArguments& arguments) {
    if (arguments.is_count) {
        throw UsageError(
            "--count: counts forms, which rule files do not hold; expected classes or transactions");
    }
    if (arguments.rules.is_tested) {
        throw UsageError(
            "--test: counts the items that rules could have been made of, which rule files do not hold; "
            "expected classes or transactions");
    }
    if (!arguments.input.holdout.empty()) {
        throw UsageError(
            "--holdout: does not go with rule files, whose rules --database FILE counts; expected classes or "
            "transactions");
    }
    if (arguments.format == RuleFormat::sqlite) {
        throw UsageError(
            "--to sqlite: needs the classes behind the rules, which rule files do not hold; expected another "
            "format, or classes or transactions");
    }
    if (arguments.format == RuleFormat::dot && arguments.graph == GraphKind::lattice) {
        throw UsageError(
            "--graph lattice: needs the classes behind the rules, which rule files do not hold; expected "
            "--graph rules, or classes or transactions");
    }
    if (arguments.format == RuleFormat::html && arguments.input.database.empty()) {
        throw UsageError(
            "--to html: needs the support of conclusions, which rule files do not hold; expected "
            "--database FILE besides, or another format");
    }
    if (arguments.format == RuleFormat::dot && arguments.input.database.empty()) {
        throw UsageError(
            "--graph rules: needs the support of conclusions, which rule files do not hold; expected "
            "--database FILE besides, or another format");
    }
}

Knowledge knowledge_of_rule_files(const RuleInput& input) {
    return {input.database.has_value(), input.transactions > 0, false};
}

RuleRequest request_for_rule_files(RuleRequest request, const RuleInput& input) {
    const Knowledge known = knowledge_of_rule_files(input);
    if (request.given.wording && request.wording == Wording::shortest) {
        throw UsageError(
            "--wording: found shortest, for which classes are needed; expected full, as the rule files have "
            "it, "
            "or no such option");
    }
    request.wording = Wording::full;
    require_whole_groups(request.forms);
    require_known(request, known);
    if (!known.has_conclusion) {
        settle_without_conclusions(request, known);
    }
    if (!request.given.min_support) {
        request.min_support = {0, false};
    }
    if (!request.given.min_confidence) {
        request.min_confidence = 0;
    }
    if (request.min_support.is_percentage && !known.has_transactions) {
        throw UsageError(
            "--min-support: found " + text_of(request.min_support) +
            ", a share of transactions whose number rule files do not hold; expected a count, or "
            "--database-size N (-n N) or --database FILE besides");
    }
    return request;
}

}  // namespace korv::tools
